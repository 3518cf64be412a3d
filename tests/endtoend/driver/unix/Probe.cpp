// A plugin that the toolkit loads into the program, because its environment says so, answers.

#include "tests/endtoend/driver/Probe.h"

#include <QJsonDocument>
#include <QLocalSocket>
#include <QUuid>

using namespace Qt::StringLiterals;

namespace {

constexpr int ConnectMilliseconds = 1000;
constexpr int AnswerMilliseconds = 30000;

} // namespace

class Probe::Line
{
public:
    bool Connect()
    {
        if (Socket.state() == QLocalSocket::ConnectedState)
            return true;
        Socket.connectToServer(Name);
        return Socket.waitForConnected(ConnectMilliseconds);
    }

    const QString Name = u"worklog-"_s + QUuid::createUuid().toString(QUuid::Id128);
    QLocalSocket Socket;
};

Probe::Probe()
    : m_line(std::make_unique<Line>())
{
}

Probe::~Probe() = default;

QMap<QString, QString> Probe::Environment() const
{
    return {{u"QT_PLUGIN_PATH"_s, QStringLiteral(WORKLOG_PROBE_PLUGINS)},
        {u"QT_QPA_GENERIC_PLUGINS"_s, u"worklogprobe"_s}, {u"WORKLOG_PROBE"_s, m_line->Name}};
}

QJsonObject Probe::Ask(qint64, const QString &verb, const QString &name)
{
    if (!m_line->Connect())
        return {};
    QLocalSocket &socket = m_line->Socket;
    const QJsonObject question{{u"ask"_s, verb}, {u"name"_s, name}};
    socket.write(QJsonDocument(question).toJson(QJsonDocument::Compact) + '\n');
    socket.flush();
    while (!socket.canReadLine()) {
        if (!socket.waitForReadyRead(AnswerMilliseconds))
            return {}; // it has ended meanwhile
    }
    return QJsonDocument::fromJson(socket.readLine()).object();
}
