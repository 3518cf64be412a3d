#include "platform/clsWindowFolderBrowser.h"

#include "platform/Paths.h"

#include <QApplication>
#include <QDir>
#include <QWidget>

#include <memory>
#include <string>

#include <windows.h>

#include <shlobj.h>

namespace {

struct FreeItem
{
    void operator()(ITEMIDLIST *item) const { ::CoTaskMemFree(item); }
};

/// Called by the browser when it is there: selects the folder to begin with.
int CALLBACK SelectStart(HWND browser, UINT message, LPARAM, LPARAM start)
{
    if (message == BFFM_INITIALIZED)
        ::SendMessageW(browser, BFFM_SETSELECTIONW, TRUE, start);
    return 0;
}

/// As far as paths go where long ones are allowed.
constexpr DWORD LongestPath = 32768;

} // namespace

QString clsWindowFolderBrowser::Browse(const QString &prompt, const QString &start)
{
    const QWidget *owner = QApplication::activeWindow();
    const std::wstring title = prompt.toStdWString();
    const std::wstring folder = QDir::toNativeSeparators(NearestFolder(start)).toStdWString();

    BROWSEINFOW browse = {};
    browse.hwndOwner = owner == nullptr ? nullptr : reinterpret_cast<HWND>(owner->winId());
    browse.lpszTitle = title.c_str();
    browse.ulFlags = BIF_RETURNONLYFSDIRS | BIF_NEWDIALOGSTYLE | BIF_NONEWFOLDERBUTTON;
    browse.lpfn = SelectStart;
    browse.lParam = reinterpret_cast<LPARAM>(folder.c_str());
    const std::unique_ptr<ITEMIDLIST, FreeItem> item(::SHBrowseForFolderW(&browse));
    std::wstring path(LongestPath, L'\0');
    if (item == nullptr
        || !::SHGetPathFromIDListEx(item.get(), path.data(), LongestPath, GPFIDL_DEFAULT))
        return {};
    return QString::fromWCharArray(path.c_str());
}
