#include "help/clsHelp.h"

#include "platform/HelpPage.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMessageBox>
#include <QScreen>
#include <QWindow>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// The place at the side of the screen where more of the window stays free.
QPoint PlaceBeside(const QWidget &window, QSize size)
{
    const QRect screen = window.screen()->availableGeometry();
    const QRect frame = window.frameGeometry();
    size += frame.size() - window.size(); // its frame will be as wide
    const bool moreAtTheRight = screen.right() - frame.right() > frame.left() - screen.left();
    const int left = moreAtTheRight ? screen.right() - size.width() : screen.left();
    const int top = std::min(frame.top(), screen.bottom() - size.height());
    return {std::max(left, screen.left()), std::max(top, screen.top())};
}

} // namespace

clsHelp::clsHelp(const QString &helpFile, clsMessageBox &messages)
    : m_pages(helpFile)
    , m_messages(messages)
{
    qApp->installEventFilter(this);
}

clsHelp::~clsHelp() = default;

void clsHelp::CloseViewer()
{
    if (m_viewer)
        m_viewer->close();
}

QString clsHelp::PageOf(const QWidget &window) const
{
    if (const auto *box = qobject_cast<const QMessageBox *>(&window))
        return modHelp::PageOfMessage(box->text());
    if (const QString page = window.property(HelpPageProperty).toString(); m_pages.HasPage(page))
        return page;
    if (m_pages.HasPage(window.objectName()))
        return window.objectName();
    const QWidget *opener = window.parentWidget();
    return opener == nullptr ? modHelp::FirstPage() : PageOf(*opener->window());
}

void clsHelp::ShowFor(QWidget &window)
{
    if (!m_pages.Load()) {
        m_messages.Tell(m_pages.Failure());
        return;
    }
    if (!m_viewer) {
        m_viewer = std::make_unique<frmHelp>(m_pages);
        m_viewer->move(PlaceBeside(window, m_viewer->size()));
    }
    m_viewer->ShowPage(PageOf(window));
    BringInFrontOf(window);
}

void clsHelp::BringInFrontOf(const QWidget &window)
{
    // A modal dialog shuts out every window but those that belong to it.
    const QWidget *modal = QApplication::activeModalWidget();
    if (&window != m_viewer.get() && modal != nullptr) {
        m_viewer->winId();
        QWindow *owner = modal->windowHandle();
        if (m_viewer->windowHandle()->transientParent() != owner) {
            m_viewer->hide(); // whose window it is counts from when it is shown
            m_viewer->windowHandle()->setTransientParent(owner);
        }
    }
    m_viewer->show();
    m_viewer->raise();
    m_viewer->activateWindow();
}

bool clsHelp::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress || !watched->isWidgetType())
        return false;
    const auto &key = static_cast<QKeyEvent &>(*event);
    if (key.key() != Qt::Key_F1 || (key.modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier)
        return false;
    auto *window = static_cast<QWidget *>(watched)->window();
    while (QWidget *menu = QApplication::activePopupWidget()) {
        window = menu->parentWidget() != nullptr ? menu->parentWidget()->window() : window;
        menu->close();
    }
    ShowFor(*window);
    return true;
}
