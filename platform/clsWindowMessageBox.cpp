#include "platform/clsWindowMessageBox.h"

#include <QApplication>
#include <QGridLayout>
#include <QMessageBox>
#include <QStyle>

using namespace Qt::StringLiterals;

namespace {

/// Enough for every message of ours, whatever stands in the data that it tells about.
constexpr qsizetype MostCharactersTold = 4000;

QMessageBox::Icon BoxIcon(MessageIcon icon)
{
    switch (icon) {
    case MessageIcon::Critical:
        return QMessageBox::Critical;
    case MessageIcon::Question:
        return QMessageBox::Question;
    case MessageIcon::Exclamation:
        break;
    }
    return QMessageBox::Warning;
}

QMessageBox::StandardButtons BoxButtons(MessageButtons buttons)
{
    switch (buttons) {
    case MessageButtons::YesNo:
        return QMessageBox::Yes | QMessageBox::No;
    case MessageButtons::YesNoCancel:
        return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case MessageButtons::OK:
        break;
    }
    return QMessageBox::Ok;
}

QMessageBox::StandardButton BoxButton(MessageAnswer answer)
{
    switch (answer) {
    case MessageAnswer::Yes:
        return QMessageBox::Yes;
    case MessageAnswer::No:
        return QMessageBox::No;
    case MessageAnswer::Cancel:
        return QMessageBox::Cancel;
    case MessageAnswer::OK:
        break;
    }
    return QMessageBox::Ok;
}

MessageAnswer AnswerOf(int button)
{
    switch (button) {
    case QMessageBox::Yes:
        return MessageAnswer::Yes;
    case QMessageBox::No:
        return MessageAnswer::No;
    case QMessageBox::Cancel:
        return MessageAnswer::Cancel;
    default:
        return MessageAnswer::OK;
    }
}

} // namespace

MessageAnswer clsWindowMessageBox::Ask(
    const QString &text, MessageIcon icon, MessageButtons buttons, MessageAnswer preset)
{
    QWidget *modal = QApplication::activeModalWidget();
    QMessageBox box(modal != nullptr ? modal : m_parent.data());
    box.setWindowTitle(u"Worklog Remote"_s);
    box.setTextFormat(Qt::PlainText);
    box.setText(text.left(MostCharactersTold));
    box.setIcon(BoxIcon(icon));
    box.setStandardButtons(BoxButtons(buttons));
    box.setDefaultButton(BoxButton(preset));
    if (buttons == MessageButtons::YesNo)
        box.setEscapeButton(QMessageBox::No);
    // A short text stands beside the middle of the picture.
    if (auto *parts = qobject_cast<QGridLayout *>(box.layout()))
        parts->setRowMinimumHeight(0, box.style()->pixelMetric(QStyle::PM_MessageBoxIconSize));
    return AnswerOf(box.exec());
}
