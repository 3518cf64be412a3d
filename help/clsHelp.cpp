#include "help/clsHelp.h"

#include <QApplication>
#include <QFileInfo>
#include <QKeyEvent>
#include <QResource>
#include <QTextBrowser>

using namespace Qt::StringLiterals;

namespace {

const QString MapRoot = QStringLiteral("/help");

QString PageFile(const QString &page)
{
    return u":/help/pages/"_s + page + u".md"_s;
}

} // namespace

clsHelp::clsHelp(const QString &helpFile, clsMessageBox &messages)
    : m_helpFile(helpFile)
    , m_messages(messages)
{
    qApp->installEventFilter(this);
}

clsHelp::~clsHelp()
{
    delete m_viewer;
    if (m_loaded)
        QResource::unregisterResource(m_helpFile, MapRoot);
}

bool clsHelp::Load()
{
    if (!m_loaded)
        m_loaded = QResource::registerResource(m_helpFile, MapRoot);
    return m_loaded;
}

void clsHelp::Show(const QString &windowName)
{
    if (!Load()) {
        m_messages.Tell(u"The help file cannot be opened: "_s + m_helpFile);
        return;
    }
    if (!m_viewer) {
        m_viewer = new QTextBrowser;
        m_viewer->setObjectName(u"frmHelp"_s);
        m_viewer->setWindowTitle(u"Worklog Remote Help"_s);
        m_viewer->setOpenExternalLinks(false);
        m_viewer->resize(640, 560);
    }
    const QString page = QFileInfo::exists(PageFile(windowName)) ? windowName : u"contents"_s;
    m_viewer->setSource(QUrl(u"qrc"_s + PageFile(page)), QTextDocument::MarkdownResource);
    m_viewer->show();
    m_viewer->raise();
    m_viewer->activateWindow();
}

bool clsHelp::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType()
        || static_cast<QKeyEvent *>(event)->key() != Qt::Key_F1)
        return false;
    Show(static_cast<QWidget *>(watched)->window()->objectName());
    return true;
}
