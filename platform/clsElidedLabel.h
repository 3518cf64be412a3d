#pragma once

#include <QLabel>

/// A label that gives way: in a window with too little room it shows the beginning of its text and
/// dots, and the whole of it as a tool tip. Its text is the whole one all the time.
class clsElidedLabel : public QLabel
{
    Q_OBJECT

public:
    explicit clsElidedLabel(QWidget *parent = nullptr);

    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    bool event(QEvent *event) override;

private:
    QString Elided() const;
    QString Shown() const; ///< the text without the signs of a shortcut
};
