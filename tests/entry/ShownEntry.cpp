#include "tests/entry/ShownEntry.h"

#include "platform/clsGrid.h"
#include "tests/support/Windows.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QStatusBar>

using namespace Qt::StringLiterals;

namespace {

QString TextOf(const frmEntryList &window, const char *name)
{
    return Control<QLineEdit>(window, name).text();
}

QString ItemOf(const frmEntryList &window, const char *name)
{
    return Control<QComboBox>(window, name).currentText();
}

bool IsShown(const frmEntryList &window, const char *name)
{
    return Control<QWidget>(window, name).isVisible();
}

bool IsTicked(const frmEntryList &window, const char *name)
{
    return Control<QCheckBox>(window, name).isChecked();
}

void LookAtList(const clsGrid &grid, ShownEntry &shown)
{
    shown.Rows = grid.TextMatrix(1, 0).isEmpty() ? 0 : grid.Rows() - 1;
    const QModelIndexList marked = grid.selectionModel()->selectedRows(grid.columnAt(0));
    if (marked.isEmpty() || shown.Rows == 0)
        return;
    shown.MarkedRow = marked.size() == 1 ? marked.front().row() + 1 : -1;
    if (shown.MarkedRow > 0)
        shown.MarkedId = grid.TextMatrix(shown.MarkedRow, 0).toInt();
}

} // namespace

bool ShownEntry::SameEntry(const ShownEntry &other) const
{
    const auto entry = [](const ShownEntry &shown) {
        return std::tie(shown.Customer, shown.Project, shown.Activity, shown.Date, shown.Status,
            shown.Option, shown.Multiplier, shown.Factor, shown.Hours, shown.Rate, shown.Amount,
            shown.Description, shown.Reimburse, shown.Approved, shown.OnHold);
    };
    return entry(*this) == entry(other);
}

ShownEntry LookAt(frmEntryList &window)
{
    ShownEntry shown;
    shown.Company = ItemOf(window, "cboCompany");
    shown.Customer = TextOf(window, "txtCustomer");
    shown.Project = TextOf(window, "txtProject");
    shown.Activity = TextOf(window, "txtActivity");
    const auto &picker = Control<QDateEdit>(window, "dtpDate");
    shown.Date = picker.date();
    shown.DateIsBeingTyped = picker.text() != shown.Date.toString(u"MM/dd/yy"_s);
    shown.Status = ItemOf(window, "cboBStatus");
    shown.Option = ItemOf(window, "cboBOption");
    shown.Multiplier = TextOf(window, "txtMultiplierCode");
    shown.Factor = TextOf(window, "txtMultiplierFactor");
    shown.Hours = TextOf(window, "txtHours");
    shown.HoursCaption = Control<QLabel>(window, "lblHours").text();
    shown.Rate = TextOf(window, "txtRate");
    shown.Amount = TextOf(window, "txtAmount");
    shown.Description = TextOf(window, "txtDescription");
    shown.ShowsOption = IsShown(window, "cboBOption");
    shown.ShowsMultiplier = IsShown(window, "txtMultiplierCode");
    shown.ShowsRate = IsShown(window, "txtRate");
    shown.ShowsReimburse = IsShown(window, "chkReimburse");
    shown.ShowsApproved = IsShown(window, "chkApproved");
    shown.ShowsOnHold = IsShown(window, "chkOnHold");
    shown.Reimburse = IsTicked(window, "chkReimburse");
    shown.Approved = IsTicked(window, "chkApproved");
    shown.OnHold = IsTicked(window, "chkOnHold");
    shown.Changed = window.isWindowModified();
    QStringList panels;
    for (int i = 1; i <= 4; ++i)
        panels.append(Control<QLabel>(window, qPrintable(u"Panel%1"_s.arg(i))).text());
    shown.Panels = panels.join(u'|');
    shown.FirstPanel = panels.first();
    shown.Notice = Control<QStatusBar>(window, "StatusBar1").currentMessage();
    shown.IsRecord = shown.FirstPanel.startsWith(u"Record "_s);
    LookAtList(Control<clsGrid>(window, "msgEntryList"), shown);
    if (const QWidget *focus = window.focusWidget())
        shown.Focus = focus->objectName();
    return shown;
}
