// A Qt plugin that the tests load into the unchanged program: it tells what its windows show and
// where, so that real key and mouse events can be sent there. It never acts on the program.
//
// Protocol: one JSON object a line in each direction over a local socket whose name stands in the
// environment variable WORKLOG_PROBE.

#include <QAbstractButton>
#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QGenericPlugin>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QLocalServer>
#include <QLocalSocket>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QTableView>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

/// The entry that Enter would choose.
QString TextOf(const QAction *entry)
{
    return entry == nullptr ? QString() : entry->text();
}

QString TextOf(const QWidget &control)
{
    if (const auto *label = qobject_cast<const QLabel *>(&control))
        return label->text();
    if (const auto *box = qobject_cast<const QLineEdit *>(&control))
        return box->text();
    if (const auto *report = qobject_cast<const QPlainTextEdit *>(&control))
        return report->toPlainText();
    if (const auto *list = qobject_cast<const QComboBox *>(&control))
        return list->currentText();
    if (const auto *button = qobject_cast<const QAbstractButton *>(&control))
        return button->text();
    if (const auto *date = qobject_cast<const QDateTimeEdit *>(&control))
        return date->text();
    if (const auto *progress = qobject_cast<const QProgressBar *>(&control))
        return progress->text();
    if (const auto *message = qobject_cast<const QMessageBox *>(&control))
        return message->text();
    if (const auto *bar = qobject_cast<const QMenuBar *>(&control))
        return TextOf(bar->activeAction());
    if (const auto *menu = qobject_cast<const QMenu *>(&control))
        return TextOf(menu->activeAction());
    return {};
}

/// In the display's pixels, which at a scale of 200 % are twice as many as the toolkit counts.
QJsonObject RectOf(const QWidget &control, const QRect &rectangle)
{
    const qreal scale = control.devicePixelRatioF();
    const QPointF corner = QPointF(control.mapToGlobal(rectangle.topLeft())) * scale;
    const QSizeF size = QSizeF(rectangle.size()) * scale;
    return {{u"x"_s, qRound(corner.x())}, {u"y"_s, qRound(corner.y())},
        {u"width"_s, qRound(size.width())}, {u"height"_s, qRound(size.height())}};
}

QJsonObject Describe(const QWidget &control)
{
    QJsonObject object = RectOf(control, control.rect());
    object[u"found"_s] = true;
    object[u"name"_s] = control.objectName();
    object[u"class"_s] = QString::fromLatin1(control.metaObject()->className());
    object[u"title"_s] = control.windowTitle();
    object[u"text"_s] = TextOf(control);
    object[u"visible"_s] = control.isVisible();
    object[u"enabled"_s] = control.isEnabled();
    object[u"active"_s] = control.isActiveWindow();
    object[u"window"_s] = QString::number(control.window()->winId());
    object[u"focused"_s] = QApplication::focusWidget() == &control;
    if (const auto *button = qobject_cast<const QAbstractButton *>(&control)) {
        object[u"checked"_s] = button->isChecked();
        object[u"picture"_s] = !button->icon().isNull();
    }
    if (const auto *list = qobject_cast<const QComboBox *>(&control)) {
        QJsonArray items;
        for (int i = 0; i < list->count(); ++i)
            items.append(list->itemText(i));
        object[u"items"_s] = items;
    }
    return object;
}

QWidget *Find(const QString &name)
{
    // The window that takes the input comes first: a dialog's control, not the one behind it.
    QWidgetList windows = QApplication::topLevelWidgets();
    if (QWidget *modal = QApplication::activeModalWidget())
        windows.prepend(modal);
    for (QWidget *window : windows) {
        if (!window->isVisible())
            continue;
        if (window->objectName() == name)
            return window;
        if (auto *control = window->findChild<QWidget *>(name))
            return control;
    }
    return nullptr;
}

QJsonObject Windows()
{
    QJsonArray windows;
    for (const QWidget *window : QApplication::topLevelWidgets()) {
        if (window->isVisible())
            windows.append(Describe(*window));
    }
    const QWidget *modal = QApplication::activeModalWidget();
    return {
        {u"windows"_s, windows}, {u"modal"_s, modal == nullptr ? QJsonObject() : Describe(*modal)}};
}

QJsonObject Button(const QString &text)
{
    const QWidget *window = QApplication::activeModalWidget();
    if (window == nullptr)
        return {{u"found"_s, false}};
    for (const QAbstractButton *button : window->findChildren<QAbstractButton *>()) {
        if (QString(button->text()).remove(u'&') == text && button->isVisible())
            return Describe(*button);
    }
    return {{u"found"_s, false}};
}

QJsonObject Table(const QString &name)
{
    const auto *view = qobject_cast<QTableView *>(Find(name));
    if (view == nullptr)
        return {{u"found"_s, false}};
    const QAbstractItemModel &model = *view->model();
    QJsonArray headers;
    for (int column = 0; column < model.columnCount(); ++column)
        headers.append(model.headerData(column, Qt::Horizontal).toString());
    QJsonArray rows;
    QJsonArray places;
    for (int row = 0; row < model.rowCount(); ++row) {
        QJsonArray cells;
        for (int column = 0; column < model.columnCount(); ++column)
            cells.append(model.index(row, column).data().toString());
        rows.append(cells);
        const QModelIndex visible = model.index(row, view->columnAt(0));
        places.append(RectOf(*view->viewport(), view->visualRect(visible)));
    }
    return {{u"found"_s, true}, {u"headers"_s, headers}, {u"rows"_s, rows}, {u"places"_s, places}};
}

QJsonObject Answer(const QJsonObject &question)
{
    const QString verb = question[u"ask"_s].toString();
    const QString name = question[u"name"_s].toString();
    if (verb == "control"_L1) {
        const QWidget *control = Find(name);
        return control == nullptr ? QJsonObject{{u"found"_s, false}} : Describe(*control);
    }
    if (verb == "button"_L1)
        return Button(name);
    if (verb == "focus"_L1) {
        const QWidget *control = QApplication::focusWidget();
        return control == nullptr ? QJsonObject{{u"found"_s, false}} : Describe(*control);
    }
    if (verb == "table"_L1)
        return Table(name);
    return Windows();
}

class clsProbe : public QObject
{
public:
    explicit clsProbe(const QString &socketName)
    {
        QLocalServer::removeServer(socketName);
        connect(&m_server, &QLocalServer::newConnection, this, [this] { Accept(); });
        m_server.listen(socketName);
    }

private:
    void Accept()
    {
        QLocalSocket *socket = m_server.nextPendingConnection();
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QLocalSocket::readyRead, socket, [socket] {
            while (socket->canReadLine()) {
                const QJsonObject question = QJsonDocument::fromJson(socket->readLine()).object();
                socket->write(
                    QJsonDocument(Answer(question)).toJson(QJsonDocument::Compact) + '\n');
                socket->flush();
            }
        });
    }

    QLocalServer m_server;
};

class clsProbePlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "clsProbe.json")

public:
    QObject *create(const QString &, const QString &) override
    {
        return new clsProbe(qEnvironmentVariable("WORKLOG_PROBE"));
    }
};

} // namespace

#include "clsProbe.moc"
