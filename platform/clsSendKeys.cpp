#include "platform/clsSendKeys.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMetaObject>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace {

int KeyNamed(const QString &keys)
{
    if (keys == u"{TAB}"_s)
        return Qt::Key_Tab;
    if (keys == u"{F1}"_s)
        return Qt::Key_F1;
    if (keys == u"{UP}"_s)
        return Qt::Key_Up;
    if (keys == u"{LEFT}"_s)
        return Qt::Key_Left;
    qFatal("no such key: %s", qPrintable(keys));
}

void Deliver(int key)
{
    QWidget *receiver = QApplication::focusWidget();
    if (receiver == nullptr)
        receiver = QApplication::activeWindow();
    if (receiver == nullptr)
        return;
    const QString text = key == Qt::Key_Tab ? u"\t"_s : QString();
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
    QApplication::sendEvent(receiver, &press);
    QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, text);
    if (QWidget *now = QApplication::focusWidget())
        QApplication::sendEvent(now, &release);
}

} // namespace

void clsProgramKeys::SendKeys(const QString &keys)
{
    const int key = KeyNamed(keys);
    QMetaObject::invokeMethod(
        qApp, [key] { Deliver(key); }, Qt::QueuedConnection);
}
