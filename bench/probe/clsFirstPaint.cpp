// A Qt plugin that the benchmarks load into an unchanged program: it notes when the first table
// has been painted with its rows, and what memory that took, and ends the process.
//
// Environment: WORKLOG_FIRST_PAINT  the file to write: milliseconds on the monotonic clock, then
//                                   the peak of the resident memory in kilobytes
//              WORKLOG_FIRST_ROWS   rows that the table has to have
//              WORKLOG_STAY         set: the process goes on

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QApplication>
#include <QFile>
#include <QGenericPlugin>

#include <chrono>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

QByteArray PeakMemory()
{
    QFile status(u"/proc/self/status"_s);
    if (status.open(QIODevice::ReadOnly)) {
        for (const QByteArray &line : status.readAll().split('\n')) {
            if (line.startsWith("VmHWM:"))
                return line.mid(6).simplified().split(' ').first();
        }
    }
    return "0";
}

class clsFirstPaint : public QObject
{
public:
    clsFirstPaint()
        : m_rows(qEnvironmentVariableIntValue("WORKLOG_FIRST_ROWS"))
    {
        qApp->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() != QEvent::Paint || m_seen)
            return false;
        const auto *view = qobject_cast<QAbstractItemView *>(watched->parent());
        if (view == nullptr || view->model() == nullptr || watched != view->viewport()
            || view->model()->rowCount() < m_rows)
            return false;
        m_seen = true;
        // What is queued comes after the painting that has just begun.
        QMetaObject::invokeMethod(
            this, [this] { Note(); }, Qt::QueuedConnection);
        return false;
    }

private:
    void Note()
    {
        const auto now = std::chrono::steady_clock::now().time_since_epoch();
        QFile file(qEnvironmentVariable("WORKLOG_FIRST_PAINT"));
        if (file.open(QIODevice::WriteOnly))
            file.write(
                QByteArray::number(std::chrono::duration<double, std::milli>(now).count(), 'f')
                + ' ' + PeakMemory() + '\n');
        file.close();
        if (!qEnvironmentVariableIsSet("WORKLOG_STAY"))
            std::_Exit(0);
    }

    int m_rows = 0;
    bool m_seen = false;
};

class clsFirstPaintPlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "clsFirstPaint.json")

public:
    QObject *create(const QString &, const QString &) override { return new clsFirstPaint; }
};

} // namespace

#include "clsFirstPaint.moc"
