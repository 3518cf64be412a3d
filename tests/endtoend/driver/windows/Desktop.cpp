// What belongs to the desktop around the program's own windows.

#include "tests/endtoend/driver/ProgramUnderTest.h"

#include <QDir>
#include <QFileInfo>

#include <windows.h>

#include <commctrl.h>

#include <array>
#include <functional>
#include <stdexcept>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

/// The system's browser for folders, a dialog with a tree in the program's process.
class FolderBrowser
{
public:
    explicit FolderBrowser(qint64 process)
        : m_process(static_cast<DWORD>(process))
    {
    }

    /// Whether it stands in front of the user and says so.
    bool Asks(const QString &prompt)
    {
        m_dialog = GetForegroundWindow();
        DWORD process = 0;
        GetWindowThreadProcessId(m_dialog, &process);
        if (process != m_process)
            return false;
        m_tree = nullptr;
        m_texts.clear();
        EnumChildWindows(m_dialog, &Take, reinterpret_cast<LPARAM>(this));
        return m_tree != nullptr && m_texts.contains(prompt);
    }

    bool IsGone() const { return !IsWindow(m_dialog); }

    QString Selected() const { return TextOf(Item(TVGN_CARET, 0)); }
    bool IsOpened() const
    {
        const LRESULT selected = Item(TVGN_CARET, 0);
        const LRESULT state
            = SendMessageW(m_tree, TVM_GETITEMSTATE, static_cast<WPARAM>(selected), TVIS_EXPANDED);
        return (state & TVIS_EXPANDED) != 0 && Item(TVGN_CHILD, selected) != 0;
    }

private:
    static BOOL CALLBACK Take(HWND part, LPARAM parameter)
    {
        auto &browser = *reinterpret_cast<FolderBrowser *>(parameter);
        std::array<wchar_t, 512> text{};
        GetClassNameW(part, text.data(), static_cast<int>(text.size()));
        if (QString::fromWCharArray(text.data()) == QString::fromWCharArray(WC_TREEVIEWW))
            browser.m_tree = part;
        SendMessageW(part, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
        browser.m_texts.append(QString::fromWCharArray(text.data()));
        return TRUE;
    }

    LRESULT Item(WPARAM which, LRESULT from) const
    {
        return SendMessageW(m_tree, TVM_GETNEXTITEM, which, from);
    }

    /// The tree writes it into memory of its own process.
    QString TextOf(LRESULT item) const
    {
        constexpr SIZE_T letters = 260;
        struct Page
        {
            TVITEMW Item;
            std::array<wchar_t, letters> Text;
        };
        const HANDLE process = OpenProcess(
            PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, m_process);
        auto *there = static_cast<Page *>(VirtualAllocEx(
            process, nullptr, sizeof(Page), MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE));
        Page page{};
        page.Item.mask = TVIF_TEXT;
        page.Item.hItem = reinterpret_cast<HTREEITEM>(item);
        page.Item.pszText = there->Text.data();
        page.Item.cchTextMax = letters;
        WriteProcessMemory(process, there, &page, sizeof page, nullptr);
        SendMessageW(m_tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(there));
        ReadProcessMemory(process, there, &page, sizeof page, nullptr);
        VirtualFreeEx(process, there, 0, MEM_RELEASE);
        CloseHandle(process);
        return QString::fromWCharArray(page.Text.data());
    }

    DWORD m_process;
    HWND m_dialog = nullptr;
    HWND m_tree = nullptr;
    QStringList m_texts;
};

/// Until what is seen is one of those; tells what was seen instead.
void WaitFor(const QString &what, const std::function<QString()> &look, const QStringList &sought)
{
    QString seen;
    try {
        ProgramUnderTest::WaitUntil(what, [&] {
            seen = look();
            return sought.contains(seen);
        });
    } catch (const std::runtime_error &error) {
        throw std::runtime_error(error.what() + (", but saw: " + seen.toStdString()));
    }
}

} // namespace

void ProgramUnderTest::ComeBackTo(const QString &window)
{
    const auto handle
        = reinterpret_cast<HWND>(Ask(u"control"_s, window)[u"window"_s].toString().toULongLong());
    SwitchToThisWindow(handle, TRUE); // as the task bar does for a click on its button
    WaitUntilActive(window);
}

void ProgramUnderTest::ChooseFolder(const QString &folder, const QString &prompt)
{
    FolderBrowser browser(ProcessId());
    WaitUntil(prompt, [&] { return browser.Asks(prompt); });
    // It begins at the folder in the box, else at the user's own; from there on by name.
    const QString name = QFileInfo(folder).fileName();
    const QString home = QDir(QDir::homePath()).dirName();
    WaitFor(u"a folder to begin with"_s, [&] { return browser.Selected(); }, {name, home});
    if (browser.Selected() == home) {
        Key(u"Right"_s);
        WaitUntil(u"what is in "_s + home, [&] { return browser.IsOpened(); });
        Type(name);
        WaitFor(name, [&] { return browser.Selected(); }, {name});
    }
    Key(u"Return"_s);
    WaitUntil(u"the folder browser to close"_s, [&] { return browser.IsGone(); });
}
