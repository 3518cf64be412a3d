#pragma once

#include <QLabel>
#include <QStatusBar>

#include <array>

/// A status bar of four text panels, counted from 1. The texts are shown as they are, never as
/// markup; the panels' object names are Panel1 to Panel4.
class clsStatusBar : public QStatusBar
{
    Q_OBJECT

public:
    static constexpr int Panels = 4;

    explicit clsStatusBar(QWidget *parent = nullptr);

    void SetPanelText(int panel, const QString &text);
    /// A line in the place of the panels, which screen readers say; it takes no focus. An empty
    /// one gives the panels back.
    void ShowNotice(const QString &text);

protected:
    void paintEvent(QPaintEvent *event) override; ///< with one line between two panels

private:
    std::array<QLabel *, Panels> m_panels;
};
