#pragma once

#include <QElapsedTimer>
#include <QWidget>

#include <memory>

namespace Ui {
class frmProgress;
}

/// Whether somebody could see a window.
bool HasDisplay();

/// A small window that shows which table of which company is at work. It only reports: closing it
/// does not interrupt anything. Without a display there is no window.
class frmProgress : public QWidget
{
    Q_OBJECT

public:
    explicit frmProgress(bool hasDisplay, QWidget *parent = nullptr);
    ~frmProgress() override;

    /// Draws, and lets the window answer, at most twenty times a second: the work must not wait
    /// for its picture. Cheap in between.
    void ShowProgress(const QString &company, const QString &table, qint64 done, qint64 all);

private:
    std::unique_ptr<Ui::frmProgress> ui;
    bool m_hasDisplay;
    QElapsedTimer m_sinceDrawn;
};
