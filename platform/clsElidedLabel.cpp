#include "platform/clsElidedLabel.h"

#include "platform/PlainToolTip.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int LeastLetters = 10; // that are left of a long text

} // namespace

clsElidedLabel::clsElidedLabel(QWidget *parent)
    : QLabel(parent)
{
}

QString clsElidedLabel::Shown() const
{
    // As the label itself reads it: a field's caption has "&&" for "&", other texts are as they
    // are.
    return buddy() == nullptr ? text() : QString(text()).replace("&&"_L1, "&"_L1);
}

QString clsElidedLabel::Elided() const
{
    return fontMetrics().elidedText(Shown(), Qt::ElideRight, contentsRect().width());
}

QSize clsElidedLabel::minimumSizeHint() const
{
    const QSize whole = QLabel::minimumSizeHint();
    return {
        std::min(whole.width(), fontMetrics().averageCharWidth() * LeastLetters), whole.height()};
}

void clsElidedLabel::paintEvent(QPaintEvent *event)
{
    if (Elided() == Shown()) {
        QLabel::paintEvent(event);
        return;
    }
    QPainter painter(this);
    const int flags = static_cast<int>(alignment()) | Qt::TextSingleLine;
    style()->drawItemText(
        &painter, contentsRect(), flags, palette(), isEnabled(), Elided(), foregroundRole());
}

void clsElidedLabel::resizeEvent(QResizeEvent *event)
{
    QLabel::resizeEvent(event);
    update();
}

bool clsElidedLabel::event(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QLabel::event(event);
    const auto &help = static_cast<QHelpEvent &>(*event);
    if (Elided() == Shown())
        QToolTip::hideText();
    else
        QToolTip::showText(help.globalPos(), PlainToolTip(Shown()), this);
    return true;
}
