#pragma once

#include "platform/clsSendKeys.h"
#include "summary/modHrsSumm.h"

#include <QDialog>

#include <array>
#include <memory>

class QLineEdit;

namespace Ui {
class frmHrsSumm;
}

/// The hours summary: one row a day, the totals below. modHrsSumm fills it.
class frmHrsSumm : public QDialog
{
    Q_OBJECT

public:
    frmHrsSumm(modHrsSumm &module, clsSendKeys &keys, QWidget *parent = nullptr); // both outlive it
    ~frmHrsSumm() override;

    /// Builds the summary; to be called before the dialog is shown.
    /// Errors: those of modHrsSumm; the dialog is then not to be shown.
    void Load();

    void done(int result) override;

protected:
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    std::array<QLineEdit *, 5> TotalBoxes() const; ///< in the order of their columns
    void DrawArrows();
    void PrepareTotals();
    int PutTotalsUnderTheirColumns(); ///< where the last one ends
    void FitSize();
    void Render();
    void MarkRow(int row);

    std::unique_ptr<Ui::frmHrsSumm> ui;
    modHrsSumm &m_module;
    clsSendKeys &m_keys;
};
