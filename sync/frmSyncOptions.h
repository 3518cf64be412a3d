#pragma once

#include "platform/clsMessageBox.h"
#include "platform/clsSendKeys.h"
#include "sync/modSyncOptions.h"

#include <QDialog>

#include <array>
#include <functional>
#include <memory>

class QRadioButton;

namespace Ui {
class frmSyncOptions;
}

/// The synchronisation options. modSyncOptions decides, this draws.
class frmSyncOptions : public QDialog
{
    Q_OBJECT

public:
    /// All outlive it.
    frmSyncOptions(modSyncOptions &module, clsMessageBox &messages, clsSendKeys &keys,
        QWidget *parent = nullptr);
    ~frmSyncOptions() override;

    /// Reads the stored option; to be called before the dialog is shown. What goes wrong is told.
    void Load();

private:
    void ConnectControls();
    void FitDescription();
    /// Runs what an event asks for, reports its run-time error and draws the dialog.
    void Handle(const std::function<void()> &action);
    void Render(); ///< the one place that writes controls

    void cmdAccept_Click();

    std::unique_ptr<Ui::frmSyncOptions> ui;
    modSyncOptions &m_module;
    clsMessageBox &m_messages;
    clsSendKeys &m_keys;
    std::array<QRadioButton *, modSyncOptions::Options> m_options;
};
