#pragma once

#include "lookup/modLookup.h"
#include "platform/clsMessageBox.h"
#include "platform/clsSendKeys.h"

#include <QDialog>

#include <functional>
#include <memory>

class QComboBox;
class QKeyEvent;
class QMouseEvent;

namespace Ui {
class frmLookup;
}

/// The lookup's window. It hands what the user does to modLookup and draws what that decides.
class frmLookup : public QDialog
{
    Q_OBJECT

public:
    /// The module, the messages and the keys outlive it.
    frmLookup(
        modLookup &module, clsMessageBox &messages, clsSendKeys &keys, QWidget *parent = nullptr);
    ~frmLookup() override;

    /// Opens the list that the request asks for and returns when the window has closed.
    /// Errors: those of the record store, while the window is not yet shown.
    void ShowModal();

    void reject() override; ///< Escape and the title bar: a cancel

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void Form_Load();
    void Form_Activate();
    void SetSmallestSize();
    void ConnectControls();
    void Render(); ///< the one place that writes controls
    void MoveFocus();

    /// Runs what an event asks for, reports its run-time error and draws the window.
    void Handle(const std::function<void()> &action);

    bool HandleSearchEvent(QEvent &event);
    bool HandleListEvent(QEvent &event);
    bool HandleListKey(const QKeyEvent &event);
    bool HandleGridKey(const QKeyEvent &event);
    bool HandleGridMouse(QEvent &event);
    void cboLookupBy_Click();
    void ApplyLookupBy();
    void msgLookup_SelChange();
    void cmdSelect_Click();

    std::unique_ptr<Ui::frmLookup> ui;
    modLookup &m_mod;
    clsMessageBox &m_messages;
    clsSendKeys &m_keys;
    bool m_keyTyped = false; // a key moved the choice that is not applied yet
    bool m_rowPressed = false; // the mouse went down on a data row and is not up yet
};
