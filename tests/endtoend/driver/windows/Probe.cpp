// The program tells what it tells every screen reader; tests/endtoend/reader takes it down.

#include "tests/endtoend/driver/Probe.h"

#include "tests/endtoend/reader/Protocol.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QList>

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

constexpr int AnswerMilliseconds = 30000;

/// Where the system looks for it; in the tests' own Wine it may be replaced.
QString SystemLibrary()
{
    wchar_t folder[MAX_PATH];
    GetSystemDirectoryW(folder, MAX_PATH);
    return QString::fromWCharArray(folder) + u"\\uiautomationcore.dll"_s;
}

QByteArray ContentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void InstallReader()
{
    const HMODULE system = GetModuleHandleW(L"ntdll.dll");
    if (GetProcAddress(system, "wine_get_version") == nullptr)
        throw std::runtime_error("these tests replace a library of the system: only in a Wine");
    const QString reader = QDir::cleanPath(
        QCoreApplication::applicationDirPath() + u"/reader/uiautomationcore.dll"_s);
    const QString installed = SystemLibrary();
    if (ContentOf(installed) == ContentOf(reader))
        return;
    QFile::remove(installed);
    if (!QFile::copy(reader, installed))
        throw std::runtime_error("the reader cannot be installed");
}

struct Search
{
    DWORD Process;
    QList<HWND> Found;
};

BOOL CALLBACK TakeWindow(HWND window, LPARAM parameter)
{
    auto &search = *reinterpret_cast<Search *>(parameter);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    wchar_t name[3] = {};
    GetClassNameW(window, name, 3);
    if (process == search.Process && IsWindowVisible(window) && name[0] == L'Q' && name[1] == L't')
        search.Found.append(window);
    return TRUE;
}

/// The process's windows of the toolkit, the topmost first; behind them those that a modal window
/// keeps from taking input.
QList<HWND> WindowsOf(qint64 process)
{
    Search search{static_cast<DWORD>(process), {}};
    EnumWindows(&TakeWindow, reinterpret_cast<LPARAM>(&search));
    std::stable_partition(search.Found.begin(), search.Found.end(),
        [](HWND window) { return IsWindowEnabled(window); });
    return search.Found;
}

QString TitleOf(HWND window)
{
    wchar_t title[512];
    return QString::fromWCharArray(title, GetWindowTextW(window, title, 512));
}

/// The last of the names in its path.
QString NameOf(const QJsonObject &element)
{
    return element[u"id"_s].toString().section(u'.', -1);
}

bool IsMessage(const QJsonArray &tree)
{
    return tree[0][u"class"_s] == u"QMessageBox"_s;
}

/// What a user reads on the control.
QString TextOf(const QJsonArray &tree, const QJsonObject &element)
{
    const int type = element[u"type"_s].toInt();
    const auto named = [&](const auto &isSought) {
        const auto found = std::find_if(tree.begin(), tree.end(), isSought);
        return found == tree.end() ? QString() : (*found)[u"name"_s].toString();
    };
    if (element[u"class"_s] == u"QMessageBox"_s)
        return named(
            [](const QJsonValue &part) { return NameOf(part.toObject()) == u"qt_msgbox_label"_s; });
    if (type == ControlType::MenuBar || element[u"class"_s] == u"QMenu"_s)
        return named([](const QJsonValue &part) {
            return part[u"type"_s] == ControlType::MenuItem && part[u"focused"_s].toBool();
        });
    if (type == ControlType::ProgressBar) // of a hundred; the bar writes the sign behind it
        return element[u"value"_s].toString() + u'%';
    const bool holdsText = type == ControlType::Edit || type == ControlType::ComboBox
        || type == ControlType::Spinner;
    return element[holdsText ? u"value"_s : u"name"_s].toString();
}

QJsonObject Describe(const QJsonArray &tree, const QJsonObject &element, HWND window)
{
    const bool isActive = GetForegroundWindow() == window;
    QJsonObject object = element;
    object[u"found"_s] = true;
    object[u"name"_s] = NameOf(element);
    object[u"title"_s] = element == tree[0].toObject() ? TitleOf(window) : QString();
    object[u"text"_s] = TextOf(tree, element);
    object[u"visible"_s] = true; // nobody tells of what is not
    object[u"active"_s] = isActive;
    object[u"focused"_s] = isActive && element[u"focused"_s].toBool();
    object[u"window"_s] = QString::number(reinterpret_cast<qulonglong>(window));
    return object;
}

} // namespace

class Probe::Line
{
public:
    ~Line() { Close(); }

    QJsonArray Ask(qint64 process, HWND window, const QByteArray &question)
    {
        if (process != m_process)
            Open(process);
        std::memcpy(m_page, question.constData(), static_cast<size_t>(question.size()) + 1);
        DWORD_PTR size = 0;
        if (SendMessageTimeoutW(window, WM_GETOBJECT, 0, ReaderObjectId, SMTO_ABORTIFHUNG,
                AnswerMilliseconds, &size)
            == 0)
            return {}; // it has closed meanwhile
        const QByteArray answer(m_page, static_cast<qsizetype>(size));
        return QJsonDocument::fromJson(answer).array();
    }

    /// The element in the first window that has it, and the window.
    QJsonObject Find(qint64 process, const QString &name)
    {
        for (HWND window : WindowsOf(process)) {
            const QJsonArray tree = Ask(process, window, "tree");
            for (const QJsonValue &element : tree) {
                if (NameOf(element.toObject()) == name)
                    return Describe(tree, element.toObject(), window);
            }
        }
        return {{u"found"_s, false}};
    }

    QJsonObject Focus(qint64 process)
    {
        for (HWND window : WindowsOf(process)) {
            const QJsonArray tree = Ask(process, window, "tree");
            const auto focused = std::find_if(std::next(tree.begin(), tree.isEmpty() ? 0 : 1),
                tree.end(), [](const QJsonValue &part) { return part[u"focused"_s].toBool(); });
            if (focused != tree.end() && GetForegroundWindow() == window)
                return Describe(tree, focused->toObject(), window);
        }
        return {{u"found"_s, false}};
    }

    QJsonObject Button(qint64 process, const QString &text)
    {
        const QList<HWND> windows = WindowsOf(process);
        if (windows.isEmpty())
            return {{u"found"_s, false}};
        const QJsonArray tree = Ask(process, windows[0], "tree");
        for (const QJsonValue &element : tree) {
            if (element[u"type"_s] == ControlType::Button && element[u"name"_s] == text)
                return Describe(tree, element.toObject(), windows[0]);
        }
        return {{u"found"_s, false}};
    }

    QJsonObject Modal(qint64 process)
    {
        for (HWND window : WindowsOf(process)) {
            const QJsonArray tree = Ask(process, window, "tree");
            if (IsMessage(tree) && IsWindowEnabled(window))
                return Describe(tree, tree[0].toObject(), window);
        }
        return {};
    }

    QJsonObject Table(qint64 process, const QString &name)
    {
        const QJsonObject grid = Find(process, name);
        if (!grid[u"found"_s].toBool())
            return grid;
        const auto window = reinterpret_cast<HWND>(grid[u"window"_s].toString().toULongLong());
        const QJsonArray rows = Ask(process, window, "grid " + name.toUtf8());
        QJsonArray places;
        for (const QJsonValue &row : Ask(process, window, "shows " + name.toUtf8())) {
            const QJsonArray cells = row.toArray();
            const auto shown = std::find_if(cells.begin(), cells.end(),
                [](const QJsonValue &cell) { return cell[u"width"_s].toInt() > 0; });
            places.append(shown == cells.end() ? QJsonValue() : *shown);
        }
        return {{u"found"_s, true}, {u"rows"_s, rows}, {u"places"_s, places}};
    }

private:
    void Open(qint64 process)
    {
        Close();
        const QString name = QString::fromWCharArray(ReaderPageName) + QString::number(process);
        m_mapping = CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
            ReaderPageBytes, reinterpret_cast<const wchar_t *>(name.utf16()));
        m_page = static_cast<char *>(MapViewOfFile(m_mapping, FILE_MAP_WRITE, 0, 0, 0));
        if (m_page == nullptr)
            throw std::runtime_error("the reader's page cannot be made");
        m_process = process;
    }

    void Close()
    {
        if (m_page != nullptr)
            UnmapViewOfFile(m_page);
        if (m_mapping != nullptr)
            CloseHandle(m_mapping);
        m_page = nullptr;
        m_mapping = nullptr;
    }

    qint64 m_process = 0;
    HANDLE m_mapping = nullptr;
    char *m_page = nullptr;
};

Probe::Probe()
    : m_line(std::make_unique<Line>())
{
    InstallReader();
}

Probe::~Probe() = default;

QMap<QString, QString> Probe::Environment() const
{
    // A Wine takes its own library otherwise, whatever lies in the system's folder.
    return {{u"WINEDLLOVERRIDES"_s, u"uiautomationcore=n"_s}};
}

QJsonObject Probe::Ask(qint64 processId, const QString &verb, const QString &name)
{
    if (verb == "control"_L1)
        return m_line->Find(processId, name);
    if (verb == "button"_L1)
        return m_line->Button(processId, name);
    if (verb == "focus"_L1)
        return m_line->Focus(processId);
    if (verb == "table"_L1)
        return m_line->Table(processId, name);
    return {{u"modal"_s, m_line->Modal(processId)}};
}
