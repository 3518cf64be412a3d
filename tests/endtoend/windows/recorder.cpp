// Stands where the accounting client stands and writes down how it was started, beside itself. When
// the test holds the event "worklog-recorder" it stays until that is set.

#include <windows.h>

#include <string>

namespace {

void Write(const std::wstring &path, const std::wstring &text)
{
    const HANDLE file = CreateFileW(
        path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    DWORD written = 0;
    WriteFile(
        file, text.data(), static_cast<DWORD>(text.size() * sizeof(wchar_t)), &written, nullptr);
    CloseHandle(file);
}

} // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, wchar_t *, int)
{
    STARTUPINFOW start{};
    GetStartupInfoW(&start);
    wchar_t folder[MAX_PATH];
    GetCurrentDirectoryW(MAX_PATH, folder);
    wchar_t program[MAX_PATH];
    GetModuleFileNameW(nullptr, program, MAX_PATH);

    const std::wstring beside(program);
    const bool tellsShow = (start.dwFlags & STARTF_USESHOWWINDOW) != 0;
    Write(beside + L".new",
        std::wstring(GetCommandLineW()) + L'\n' + folder + L'\n'
            + (tellsShow ? std::to_wstring(start.wShowWindow) : L"as it likes") + L'\n');
    MoveFileExW((beside + L".new").c_str(), (beside + L".txt").c_str(), MOVEFILE_REPLACE_EXISTING);

    if (const HANDLE until = OpenEventW(SYNCHRONIZE, FALSE, L"worklog-recorder")) {
        WaitForSingleObject(until, INFINITE);
        CloseHandle(until);
    }
    return 0;
}
