#pragma once

#include "lookup/modLookup.h"
#include "lookup/modTransFilter.h"
#include "platform/clsMessageBox.h"
#include "platform/clsSendKeys.h"

#include <QDialog>

#include <functional>
#include <memory>
#include <optional>

class QFocusEvent;
class QKeyEvent;
class QLabel;
class QLineEdit;
class QPushButton;

namespace Ui {
class frmTransFilter;
}

/// The transaction filter's window. It hands what the user does to modTransFilter and draws what
/// that decides.
class frmTransFilter : public QDialog
{
    Q_OBJECT

public:
    /// The modules, the messages and the keys outlive it; the lookup is opened over this window.
    frmTransFilter(modTransFilter &module, modLookup &lookup, clsMessageBox &messages,
        clsSendKeys &keys, QWidget *parent = nullptr);
    ~frmTransFilter() override;

    /// Starts from the codes in force and returns when the window has closed.
    /// Errors: those of the record store, while the window is not yet shown.
    void ShowModal();

    void reject() override; ///< Escape and the title bar: a cancel

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// The controls of one code.
    struct Row
    {
        FilterField Field;
        QLabel *Label;
        QLineEdit *Box;
        QPushButton *Button;
        QLabel *Name;
    };

    void Form_Load();
    void Form_Activate(std::optional<FilterField> focus);
    void ConnectRow(const Row &row);
    void Render(); ///< the one place that writes controls

    /// Runs what an event asks for, reports its run-time error and draws the window.
    bool Handle(const std::function<void()> &action); ///< false after an error

    const Row &RowOf(FilterField field) const;
    const Row *RowWithBox(const QObject *box) const;
    bool HandleBoxEvent(const Row &row, QEvent &event);
    bool HandleBoxKey(const Row &row, const QKeyEvent &event);
    void GotFocus(const Row &row, bool byMouse);
    void FocusTo(FilterField field);
    /// Checks the box; a code that is put back is named beside it, without taking the focus.
    bool Check(const Row &row); ///< false when the check itself failed
    /// Checks what was typed since: in the box with the focus, and in one that could not notice
    /// that it lost the focus, as in a window that is not the active one. False when a check
    /// failed.
    bool CheckTypedCodes();
    void OpenLookup(FilterField field, LookupStart start);
    void MoveOnAfter(FilterField field);
    void cmdOK_Click();
    void cmdClear_Click();

    std::unique_ptr<Ui::frmTransFilter> ui;
    modTransFilter &m_mod;
    modLookup &m_lookup;
    clsMessageBox &m_messages;
    clsSendKeys &m_keys;
    std::array<Row, FilterFields.size()> m_rows;
};
