#include "tests/endtoend/driver/VirtualDisplay.h"

#include <QProcess>
#include <QProcessEnvironment>

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

constexpr int StartMilliseconds = 20000;
constexpr int CommandMilliseconds = 30000;

QProcessEnvironment On(const QString &display)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DISPLAY"_s, display);
    return environment;
}

} // namespace

class VirtualDisplay::Screen
{
public:
    explicit Screen(QSize size)
    {
        // The server writes the number of the display that it found free when it is ready.
        m_server.start(u"Xvfb"_s,
            {u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s,
                u"%1x%2x24"_s.arg(size.width()).arg(size.height()), u"-nolisten"_s, u"tcp"_s});
        while (!m_server.canReadLine()) {
            if (!m_server.waitForReadyRead(StartMilliseconds))
                throw std::runtime_error("no virtual display");
        }
        m_name = u":"_s + QString::fromLatin1(m_server.readLine().trimmed());
        m_windowManager.setProcessEnvironment(On(m_name));
        // It complains about menus that nobody opens here.
        m_windowManager.setStandardErrorFile(QProcess::nullDevice());
        // A window that opens before the manager is at work gets no focus; it says when it is.
        m_windowManager.start(u"openbox"_s, {u"--sm-disable"_s, u"--startup"_s, u"echo ready"_s});
        while (!m_windowManager.canReadLine()) {
            if (!m_windowManager.waitForReadyRead(StartMilliseconds))
                throw std::runtime_error("no window manager");
        }
    }
    ~Screen()
    {
        for (QProcess *process : {&m_windowManager, &m_server}) {
            process->terminate();
            if (!process->waitForFinished(StartMilliseconds))
                process->kill();
        }
    }

    const QString &Name() const { return m_name; } ///< ":99"

    void Run(const QString &program, const QStringList &arguments) const
    {
        QProcess command;
        command.setProcessEnvironment(On(m_name));
        command.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        command.start(program, arguments);
        if (!command.waitForFinished(CommandMilliseconds) || command.exitCode() != 0)
            throw std::runtime_error(program.toStdString() + " failed");
    }

private:
    QProcess m_server;
    QProcess m_windowManager;
    QString m_name;
};

VirtualDisplay::VirtualDisplay(QSize size)
    : m_screen(std::make_unique<Screen>(size))
{
}

VirtualDisplay::~VirtualDisplay() = default;

QMap<QString, QString> VirtualDisplay::Environment() const
{
    return {{u"DISPLAY"_s, m_screen->Name()}, {u"QT_QPA_PLATFORM"_s, u"xcb"_s}};
}

void VirtualDisplay::Type(const QString &text) const
{
    m_screen->Run(u"xdotool"_s, {u"type"_s, u"--delay"_s, u"2"_s, u"--"_s, text});
}

void VirtualDisplay::Key(const QString &keys) const
{
    m_screen->Run(u"xdotool"_s, {u"key"_s, u"--delay"_s, u"2"_s, keys});
}

void VirtualDisplay::Click(int x, int y) const
{
    // Without --sync, which waits in vain when the pointer stands there already.
    m_screen->Run(
        u"xdotool"_s, {u"mousemove"_s, QString::number(x), QString::number(y), u"click"_s, u"1"_s});
}

qulonglong VirtualDisplay::WindowWithKeyboard() const
{
    QProcess command;
    command.setProcessEnvironment(On(m_screen->Name()));
    command.start(u"xdotool"_s, {u"getwindowfocus"_s, u"-f"_s});
    // Between two windows there is a moment when it is none's.
    return command.waitForFinished(CommandMilliseconds)
        ? command.readAllStandardOutput().trimmed().toULongLong()
        : 0;
}

void VirtualDisplay::Screenshot(const QString &fileName) const
{
    m_screen->Run(u"import"_s, {u"-window"_s, u"root"_s, fileName});
}

void VirtualDisplay::Screenshot(const QString &fileName, qulonglong window) const
{
    m_screen->Run(
        u"import"_s, {u"-silent"_s, u"-window"_s, QString::number(window), u"-frame"_s, fileName});
}
