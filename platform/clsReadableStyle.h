#pragma once

#include <QPalette>
#include <QProxyStyle>

/// The widget set's own style, Fusion, with lines around boxes and around the control with the keys
/// that everybody can see: as it draws them they are too faint in a light palette, and the focus in
/// a dark one. So are the lines of grids and groups in a dark palette. Buttons have no pictures, as
/// everywhere in the program, and message boxes have some that are sharp at every resolution.
class clsReadableStyle : public QProxyStyle
{
    Q_OBJECT

public:
    clsReadableStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
        const QWidget *widget) const override;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
        const QWidget *widget = nullptr) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
        QPainter *painter, const QWidget *widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption *option = nullptr,
        const QWidget *widget = nullptr) const override;
    int styleHint(StyleHint hint, const QStyleOption *option = nullptr,
        const QWidget *widget = nullptr, QStyleHintReturn *data = nullptr) const override;
    QIcon standardIcon(StandardPixmap picture, const QStyleOption *option = nullptr,
        const QWidget *widget = nullptr) const override;
    using QProxyStyle::polish;
    void polish(QWidget *widget) override;
    using QProxyStyle::unpolish;
    void unpolish(QWidget *widget) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
};

/// Gives the application readable colours and lines. A desktop that brings a style of its own keeps
/// it, its colours are put right all the same. Safe to call again, as after a change of the theme.
void UseReadableLook();
