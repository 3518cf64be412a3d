#include "tests/endtoend/driver/ProgramUnderTest.h"

#include "tests/endtoend/driver/System.h"

#include <QDir>
#include <QJsonArray>
#include <QProcessEnvironment>
#include <QTest>

#include <stdexcept>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int DeadlineMilliseconds = 30000;

/// In how many looks a control has not moved.
constexpr int LooksAtRest = 5;

QPoint MiddleOf(const QJsonObject &rectangle)
{
    return {rectangle[u"x"_s].toInt() + rectangle[u"width"_s].toInt() / 2,
        rectangle[u"y"_s].toInt() + rectangle[u"height"_s].toInt() / 2};
}

QMap<QString, QString> Together(QMap<QString, QString> one, const QMap<QString, QString> &other)
{
    one.insert(other);
    return one;
}

QStringList TextsOf(const QJsonArray &array)
{
    QStringList texts;
    for (const QJsonValue &value : array)
        texts.append(value.toString());
    return texts;
}

} // namespace

ProgramUnderTest::ProgramUnderTest(
    const QString &folder, const VirtualDisplay &display, const QMap<QString, QString> &environment)
    : ProgramUnderTest(Command{folder + u'/' + FileNameOf(u"WorklogRemote"_s),
                           Together(UserOf(folder), environment)},
        display)
{
}

ProgramUnderTest::ProgramUnderTest(const Command &command, const VirtualDisplay &display)
    : m_display(display)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QMap<QString, QString> &part :
        {display.Environment(), m_probe.Environment(), command.Environment}) {
        for (auto it = part.begin(); it != part.end(); ++it)
            environment.insert(it.key(), it.value());
    }
    m_process.setProcessEnvironment(environment);
    m_process.setProcessChannelMode(QProcess::ForwardedChannels);
    m_process.setWorkingDirectory(QDir::homePath()); // where a desktop starts programs
    m_process.start(command.Path, command.Arguments);
    if (!m_process.waitForStarted(DeadlineMilliseconds))
        throw std::runtime_error("the program does not start");
}

ProgramUnderTest::~ProgramUnderTest()
{
    Kill();
}

void ProgramUnderTest::Kill()
{
    m_process.kill();
    m_process.waitForFinished(DeadlineMilliseconds);
}

void ProgramUnderTest::WaitUntil(const QString &what, const std::function<bool()> &condition)
{
    if (!QTest::qWaitFor(condition, DeadlineMilliseconds))
        throw std::runtime_error("waited in vain for: " + what.toStdString());
}

QJsonObject ProgramUnderTest::Ask(const QString &verb, const QString &name)
{
    return IsRunning() ? m_probe.Ask(ProcessId(), verb, name) : QJsonObject();
}

QString ProgramUnderTest::Text(const QString &control)
{
    return Ask(u"control"_s, control)[u"text"_s].toString();
}

bool ProgramUnderTest::IsEnabled(const QString &control)
{
    return Ask(u"control"_s, control)[u"enabled"_s].toBool();
}

bool ProgramUnderTest::HasFocus(const QString &control)
{
    return Ask(u"control"_s, control)[u"focused"_s].toBool();
}

bool ProgramUnderTest::IsChecked(const QString &button)
{
    return Ask(u"control"_s, button)[u"checked"_s].toBool();
}

bool ProgramUnderTest::IsOpen(const QString &window)
{
    return Ask(u"control"_s, window)[u"visible"_s].toBool();
}

QString ProgramUnderTest::Title(const QString &window)
{
    return Ask(u"control"_s, window)[u"title"_s].toString();
}

QString ProgramUnderTest::MessageText()
{
    return Ask(u"windows"_s)[u"modal"_s].toObject()[u"text"_s].toString();
}

bool ProgramUnderTest::HasPicture(const QString &button)
{
    const QJsonObject found = Ask(u"button"_s, button);
    if (!found[u"found"_s].toBool())
        throw std::runtime_error("no such button: " + button.toStdString());
    return found[u"picture"_s].toBool();
}

QList<QStringList> ProgramUnderTest::Rows(const QString &grid)
{
    QList<QStringList> rows;
    for (const QJsonValue &row : Ask(u"table"_s, grid)[u"rows"_s].toArray())
        rows.append(TextsOf(row.toArray()));
    return rows;
}

void ProgramUnderTest::Click(const QString &control)
{
    // A window that has just opened may still be moved to its place by the window manager.
    QPoint middle;
    int looks = 0;
    WaitUntil(control + u" to be there, enabled and at rest"_s, [&] {
        const QJsonObject found = Ask(u"control"_s, control);
        const QPoint before = std::exchange(middle, MiddleOf(found));
        const bool isReady = found[u"enabled"_s].toBool() && found[u"active"_s].toBool();
        looks = isReady && middle == before ? looks + 1 : 0;
        return looks == LooksAtRest;
    });
    m_display.Click(middle.x(), middle.y());
}

void ProgramUnderTest::ClickRow(const QString &grid, int row)
{
    const QPoint middle = MiddleOf(Ask(u"table"_s, grid)[u"places"_s].toArray().at(row).toObject());
    m_display.Click(middle.x(), middle.y());
}

void ProgramUnderTest::Answer(const QString &button)
{
    const QString message = MessageText();
    // The window manager may still be placing the box; a click that missed the button because it
    // was moved away is made again where the button then stands.
    QPoint clicked;
    WaitUntil(u"the message to go: "_s + message, [&] {
        if (MessageText() != message)
            return true;
        const QJsonObject found = Ask(u"button"_s, button);
        const QPoint middle = MiddleOf(found);
        if (found[u"active"_s].toBool() && middle != clicked) {
            m_display.Click(middle.x(), middle.y());
            clicked = middle;
        }
        return false;
    });
}

void ProgramUnderTest::AnswerByKeys(const QString &keys)
{
    const QString message = MessageText();
    WaitUntil(u"the message to take keys: "_s + message,
        [&] { return Ask(u"windows"_s)[u"modal"_s].toObject()[u"active"_s].toBool(); });
    Key(keys);
    WaitUntil(u"the message to go: "_s + message, [&] { return MessageText() != message; });
}

void ProgramUnderTest::EnterTime(const QString &hours, const QString &description)
{
    WaitForFocus(u"dtpDate"_s);
    Key(u"Return"_s);
    Enter(u"txtCustomer"_s, u"0100"_s);
    Key(u"Return"_s);
    Enter(u"txtProject"_s, u"1000"_s);
    Key(u"Return"_s);
    WaitForFocus(u"txtActivity"_s);
    Type(u"consult"_s);
    WaitForText(u"txtActivity"_s, u"CONSULT"_s);
    Key(u"Return"_s);
    Enter(u"txtHours"_s, hours);
    Key(u"Return"_s);
    Enter(u"txtDescription"_s, description);
}

void ProgramUnderTest::Enter(const QString &control, const QString &text)
{
    WaitForFocus(control);
    Type(text);
    WaitForText(control, text);
}

void ProgramUnderTest::MoveFocusTo(const QString &control, const QString &key)
{
    const auto focused = [&] { return Ask(u"focus"_s)[u"name"_s].toString(); };
    for (QString at = focused(); at != control;) {
        const QString before = at;
        Key(key);
        WaitUntil(key + u" to move on from "_s + before, [&] {
            at = focused();
            return !at.isEmpty() && at != before;
        });
    }
}

void ProgramUnderTest::MoveTo(const QString &text, const QString &control, const QString &key)
{
    const QString first = Text(control);
    for (QString at = first; at != text;) {
        const QString before = at;
        Key(key);
        WaitUntil(key + u" to move on in "_s + control, [&] {
            at = Text(control);
            return at != before;
        });
        if (at == first)
            throw std::runtime_error("no such menu entry: " + text.toStdString());
    }
}

void ProgramUnderTest::ChooseByKeys(const QString &menu, const QString &entry)
{
    WaitUntilActive();
    Key(u"alt"_s);
    WaitUntil(u"the menu bar"_s, [&] { return !Text(u"mnuBar"_s).isEmpty(); });
    MoveTo(menu, u"mnuBar"_s, u"Right"_s);
    Key(u"Down"_s);
    const QString opened = u"mnu"_s + menu;
    WaitUntil(menu, [&] { return !Text(opened).isEmpty(); });
    MoveTo(entry, opened, u"Down"_s);
    Key(u"Return"_s);
}

void ProgramUnderTest::WaitForWindow(const QString &window)
{
    WaitUntil(window + u" to open"_s, [&] { return IsOpen(window); });
}

bool ProgramUnderTest::TakesKeys(const QJsonObject &control) const
{
    // The toolkit calls a new window active a moment before the display sends it the keys.
    return control[u"active"_s].toBool()
        && m_display.WindowWithKeyboard() == control[u"window"_s].toString().toULongLong();
}

void ProgramUnderTest::WaitUntilActive(const QString &window)
{
    WaitUntil(window + u" to take the keys"_s, [&] {
        const QJsonObject found = Ask(u"control"_s, window);
        return found[u"name"_s] == window && TakesKeys(found);
    });
}

void ProgramUnderTest::WaitUntilClosed(const QString &window)
{
    WaitUntil(window + u" to close"_s, [&] { return !IsOpen(window); });
}

void ProgramUnderTest::WaitForMessage(const QString &text)
{
    QString seen;
    try {
        WaitUntil(text, [&] {
            seen = MessageText();
            return seen == text && TakesKeys(Ask(u"windows"_s)[u"modal"_s].toObject());
        });
    } catch (const std::runtime_error &error) {
        throw std::runtime_error(error.what() + (", but saw: " + seen.toStdString()));
    }
}

void ProgramUnderTest::WaitForText(const QString &control, const QString &text)
{
    QString seen;
    try {
        WaitUntil(control + u" to show "_s + text, [&] {
            seen = Text(control);
            return seen == text;
        });
    } catch (const std::runtime_error &error) {
        throw std::runtime_error(error.what() + (", but saw: " + seen.toStdString()));
    }
}

void ProgramUnderTest::WaitForTitle(const QString &window, const QString &title)
{
    WaitUntil(window + u" to be titled "_s + title, [&] {
        const QJsonObject found = Ask(u"control"_s, window);
        return found[u"title"_s].toString() == title && TakesKeys(found);
    });
}

void ProgramUnderTest::WaitForFocus(const QString &control)
{
    WaitUntil(control + u" to have the focus"_s, [&] {
        const QJsonObject found = Ask(u"control"_s, control);
        return found[u"focused"_s].toBool() && TakesKeys(found);
    });
}

void ProgramUnderTest::WaitForRows(const QString &grid, int count)
{
    WaitUntil(grid + u" to show "_s + QString::number(count) + u" rows"_s,
        [&] { return Rows(grid).size() == count; });
}

void ProgramUnderTest::Photograph(const QString &fileName, const QString &window)
{
    const QJsonObject found
        = window.isEmpty() ? Ask(u"windows"_s)[u"modal"_s].toObject() : Ask(u"control"_s, window);
    m_display.Screenshot(fileName, found[u"window"_s].toString().toULongLong());
}

int ProgramUnderTest::WaitForEnd()
{
    WaitUntil(u"the program to end"_s, [&] { return m_process.state() == QProcess::NotRunning; });
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}
