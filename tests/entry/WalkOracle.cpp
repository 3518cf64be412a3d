#include "tests/entry/WalkOracle.h"

#include "platform/clsGrid.h"
#include "tests/entry/WalkHands.h"
#include "tests/support/Recorded.h"
#include "tests/support/Windows.h"

#include <QApplication>
#include <QLabel>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 One = 10000; // currency fields are in units of .0001
const QStringList CodeBoxes
    = {u"txtCustomer"_s, u"txtProject"_s, u"txtActivity"_s, u"txtMultiplierCode"_s};

QString Text(bool flag)
{
    return flag ? u"yes"_s : u"no"_s;
}

QString StatusText(const QString &code)
{
    return code == "1"_L1 ? u"Billable"_s
        : code == "2"_L1  ? u"No Charge"_s
        : code == "3"_L1  ? u"Do Not Bill"_s
                          : QString();
}

QString OptionText(const OptionsRecord &options, const StoredEntry &entry)
{
    const QStringList texts = {u"Application"_s, options.Employee_Term, u"Division"_s,
        options.Customer_Term, options.Project_Term, options.Activity_Term};
    const bool isBilled = entry.Status == "1"_L1 || entry.Status.isEmpty();
    return isBilled ? texts.value(entry.Option.toInt() - 1) : QString();
}

template <class Records, class Matches>
auto FindRecord(const Records &records, Matches &&matches)
{
    const auto at = std::find_if(records.begin(), records.end(), matches);
    return at == records.end() ? nullptr : &*at;
}

const CustomerRecord *CustomerIn(const SampleCompany &company, const QString &code)
{
    return FindRecord(company.Customers, [&](const auto &r) { return r.Customer_Number == code; });
}

const ProjectRecord *ProjectIn(
    const SampleCompany &company, const QString &customer, const QString &code)
{
    return FindRecord(company.Projects,
        [&](const auto &r) { return r.Customer_Number == customer && r.Project_Number == code; });
}

const ActivityRecord *ActivityIn(const SampleCompany &company, const QString &code)
{
    return FindRecord(company.Activities, [&](const auto &r) { return r.Activity_Number == code; });
}

const MultiplierRecord *MultiplierIn(const SampleCompany &company, const QString &code)
{
    return FindRecord(
        company.Multipliers, [&](const auto &r) { return r.Multiplier_Number == code; });
}

bool IsExpense(const SampleCompany &company, const QString &activity)
{
    const ActivityRecord *record = ActivityIn(company, activity);
    return record != nullptr && record->Expense == "Y"_L1;
}

bool Fits(const QString &text, qsizetype integerDigits, qsizetype decimals)
{
    const QStringList parts = text.split(u'.');
    return parts.size() <= 2 && parts.at(0).size() <= integerDigits
        && parts.value(1).size() <= decimals;
}

QString CodeIn(const ShownEntry &shown, const QString &box)
{
    return box == CodeBoxes[0] ? shown.Customer
        : box == CodeBoxes[1]  ? shown.Project
        : box == CodeBoxes[2]  ? shown.Activity
                               : shown.Multiplier;
}

/// As it is stored: without spaces at its end, a multiplier of one digit with a zero before it.
QString StoredCode(QString code, const QString &box)
{
    while (code.endsWith(u' '))
        code.chop(1);
    return box == CodeBoxes[3] && code.size() == 1 && code.at(0).isDigit() ? u'0' + code : code;
}

const QDate Today = clsFixedClock().Time.date();

QDate DateOf(const StoredEntry &entry)
{
    return entry.Date.isEmpty() ? Today : entry.Day();
}

bool IsExpectedMessage(const QString &text)
{
    static const QRegularExpression expected(
        u"^(Do you want to save changes\\?|Delete this Entry\\?"
        "|You are not allowed to enter expenses\\."
        "|Invalid (Customer|Project|Activity) Code\\."
        "|Invalid (Billing Status|Hours|Units|Rate|Amount)\\.)$"_s);
    return expected.match(text).hasMatch();
}

} // namespace

WalkOracle::WalkOracle(
    const QString &folder, const std::vector<SampleCompany> &companies, const char *disk)
    : m_companies(companies)
    , m_folder(folder)
    , m_disk(disk)
{
    for (const SampleCompany &company : m_companies) {
        auto &file = m_files[company.Code];
        file = std::make_unique<EntriesFile>(m_folder, company.Code, m_disk);
        m_tables[company.Code] = file->Read();
    }
}

const SampleCompany *WalkOracle::CompanyOf(const QString &code) const
{
    return FindRecord(m_companies, [&](const SampleCompany &c) { return c.Code == code; });
}

void WalkOracle::Find(const QString &finding)
{
    if (!Findings.contains(finding))
        Findings.append(finding);
}

void WalkOracle::Same(const char *what, const QString &shown, const QString &stored)
{
    if (shown != stored)
        Find(u"%1: shown '%2', stored '%3'"_s.arg(QLatin1String(what), shown, stored));
}

void WalkOracle::ProgramStarts()
{
    m_before = {};
    m_focusBox.clear();
    m_focusEdited = false;
    m_clickedCodes.clear();
    m_isLocked = false;
    m_loadedId = -1;
    m_filter = {QString(), QString(), QString()};
}

void WalkOracle::StepBegins()
{
    m_messages.clear();
    m_errorShown = false;
    m_deletionConfirmed = false;
    m_editsMayGo = false;
    m_storeFailed = false;
    m_mayAskMore = false;
}

ShownEntry WalkOracle::Look(frmEntryList &window) const
{
    ShownEntry shown = LookAt(window);
    if (shown.Focus == "mnuBar"_L1)
        shown.Focus = m_focusBox; // it is left when the menu bar is
    return shown;
}

void WalkOracle::EventComes(frmEntryList *window)
{
    CheckTables(); // what an event that still runs has written
    if (window != nullptr)
        m_before = Look(*window);
    m_saved = false;
}

void WalkOracle::CheckTables()
{
    for (const SampleCompany &company : m_companies) {
        EntriesFile &file = *m_files[company.Code];
        if (!file.HasChanged())
            continue;
        const StoredTable before = std::exchange(m_tables[company.Code], file.Read());
        m_saved = true;
        if (m_tables[company.Code] != before) // a synchronization writes a note beside the records
            CheckChange(company, before, m_tables[company.Code]);
    }
}

void WalkOracle::EventIsOver(frmEntryList *window)
{
    CheckTables();
    if (window == nullptr)
        return;
    const ShownEntry now = Look(*window);
    CheckEdits(now);
    FollowFocus(now);
    FollowDate(now);
    FollowClickedCodes(now);
}

void WalkOracle::FollowFocus(const ShownEntry &now)
{
    const bool hasChanged = CodeBoxes.contains(now.Focus)
        && CodeIn(now, now.Focus) != CodeIn(m_before, now.Focus) && now.Changed;
    m_focusEdited = hasChanged || (m_focusEdited && now.Focus == m_focusBox);
    m_focusBox = now.Focus;
}

void WalkOracle::FollowDate(const ShownEntry &now)
{
    const bool isHeldBack = now.Notice.startsWith(u"The date counts once"_s);
    if (isHeldBack || QApplication::activePopupWidget() != nullptr)
        return; // the entry still has the date from before, also while keys move in the calendar
    const bool isAboutDate = now.Notice.startsWith(u"This entry was stored without a date"_s);
    if (now.Notice.isEmpty() || isAboutDate) {
        m_date = now.Date;
        m_dateIsKnown = true;
    } else if (now.Date != m_date) {
        m_dateIsKnown = false; // this notice may cover the one above
    }
}

void WalkOracle::FollowClickedCodes(const ShownEntry &now)
{
    const bool isAnother
        = (m_before.Changed && !now.Changed) || m_before.FirstPanel != now.FirstPanel;
    std::erase_if(m_clickedCodes, [&](const auto &clicked) {
        const QString &box = clicked.first;
        return isAnother || CodeIn(now, box) != CodeIn(m_before, box)
            || (box == CodeBoxes[1] && now.Customer.isEmpty() && now.Focus != CodeBoxes[0]);
    });
}

void WalkOracle::CodeClicked(const QString &box, const QString &code)
{
    m_clickedCodes[box] = code;
}

void WalkOracle::SameCode(const QString &box, const QString &shown, const QString &stored)
{
    const auto clicked = m_clickedCodes.find(box);
    if (clicked == m_clickedCodes.end() || stored != clicked->second)
        Same("saved code", shown, stored);
}

void WalkOracle::CheckChange(
    const SampleCompany &company, const StoredTable &before, const StoredTable &now)
{
    if (company.Code != m_before.Company)
        return Find(u"the entries of another company were written"_s);
    const auto loaded = static_cast<size_t>(m_loadedId);
    const bool isLoaded = m_loadedId >= 0 && loaded < before.size();
    if (now.size() == before.size() + 1) {
        if (isLoaded || !std::equal(before.begin(), before.end(), now.begin()))
            return Find(u"an entry was added instead of changed"_s);
        return CheckSaved(company, nullptr, now.back());
    }
    if (!isLoaded)
        return Find(u"a stored entry was changed while a new one is in the editor"_s);
    StoredTable expected = before;
    if (now.size() == before.size()) {
        expected[loaded] = now[loaded];
        if (now != expected)
            return Find(u"another entry was written than the one in the editor"_s);
        return CheckSaved(company, &before[loaded], now[loaded]);
    }
    expected.erase(expected.begin() + m_loadedId);
    if (now != expected || !m_deletionConfirmed)
        return Find(u"another entry was deleted than the one in the editor, or without Yes"_s);
    ++Deletions;
}

void WalkOracle::CheckSaved(
    const SampleCompany &company, const StoredEntry *before, const StoredEntry &now)
{
    ++Saves;
    const ShownEntry &shown = m_before;
    if (!shown.Changed && (before == nullptr || !before->Date.isEmpty()))
        Find(u"an unchanged entry was written"_s);
    CheckRules(company, before, now);
    if (!shown.DateIsBeingTyped && m_dateIsKnown)
        Same("saved date", m_date.toString(Qt::ISODate), now.Date.left(10));
    Same("saved description", shown.Description, now.Description);
    Same("saved hours", ShownNumber(TypedNumber(shown.Hours), 2), ShownNumber(now.Hours, 2));
    if (shown.ShowsOnHold && !shown.Approved)
        Same("saved on hold", Text(shown.OnHold), Text(now.OnHold == "Y"_L1));
    const QStringList stored = {now.Customer, now.Project, now.Activity, now.Multiplier};
    for (qsizetype i = 0; i < CodeBoxes.size(); ++i) {
        if (m_focusEdited && shown.Focus == CodeBoxes[i]) {
            Same("saved code", StoredCode(CodeIn(shown, CodeBoxes[i]), CodeBoxes[i]), stored[i]);
            return; // the code may have changed everything that follows
        }
    }
    for (qsizetype i = 0; i < 3; ++i)
        SameCode(CodeBoxes[i], CodeIn(shown, CodeBoxes[i]), stored[i]);
    Same("saved status", shown.Status, StatusText(now.Status));
    if (shown.ShowsOption && shown.Focus != "cboBOption"_L1)
        Same("saved option", shown.Option, OptionText(company.Options, now));
    if (shown.ShowsReimburse)
        Same("saved reimburse", Text(shown.Reimburse), Text(now.Reimburse == "Y"_L1));
    if (!shown.ShowsRate)
        return;
    Same("saved rate", ShownNumber(TypedNumber(shown.Rate), 3),
        ShownNumber(Product(now.Rate, now.Factor), 3));
    if (shown.ShowsMultiplier && shown.Focus != "txtRate"_L1)
        SameCode(CodeBoxes[3], shown.Multiplier, now.Multiplier);
}

void WalkOracle::CheckRules(
    const SampleCompany &company, const StoredEntry *before, const StoredEntry &now)
{
    const auto keeps = [&](QString StoredEntry::*field) {
        return before != nullptr && before->*field == now.*field;
    };
    const QString entry = u": "_s + Described(now);
    const CustomerRecord *customer = CustomerIn(company, now.Customer);
    const ActivityRecord *activity = ActivityIn(company, now.Activity);
    if (customer == nullptr && !keeps(&StoredEntry::Customer))
        Find(u"an unknown customer was saved"_s + entry);
    if (activity == nullptr && !keeps(&StoredEntry::Activity))
        Find(u"an unknown activity was saved"_s + entry);
    const bool isExpense = IsExpense(company, now.Activity);
    if (std::abs(now.Hours) > (isExpense ? 9999999 : 9999) * (One / 100))
        Find(u"more hours than the mask takes"_s + entry);
    if (now.Amount != Product(Product(now.Hours, now.Rate), now.Factor))
        Find(u"an amount that is not hours, rate and factor"_s + entry);
    if (isExpense && now.Factor != One)
        Find(u"an expense with a factor"_s + entry);
    const bool isBilled = now.Status == "1"_L1;
    if (!isExpense && !isBilled
        && (now.Option != "0"_L1 || now.Rate != 0 || now.Factor != One
            || !now.Multiplier.isEmpty()))
        Find(u"billing data of a time entry that is not billed"_s + entry);
    const MultiplierRecord *multiplier = MultiplierIn(company, now.Multiplier);
    const bool keepsFactor = m_clickedCodes.contains(CodeBoxes[3])
        || (keeps(&StoredEntry::Multiplier) && before->Factor == now.Factor);
    if (!isExpense && now.Factor != One && !keepsFactor
        && (multiplier == nullptr || multiplier->Factor.Scaled() != now.Factor))
        Find(u"a factor that is not the multiplier's"_s + entry);

    // The rate of an entry whose codes were chosen now comes from the level that it names.
    const QString &setting = company.Options.Billing_Option_Setting;
    const bool isNew = !keeps(&StoredEntry::Customer) || !keeps(&StoredEntry::Activity)
        || (!keeps(&StoredEntry::Project) && !now.Project.isEmpty());
    if (isExpense || !isBilled || !isNew || now.RateOverridden == "Y"_L1 || customer == nullptr
        || activity == nullptr || !u"123"_s.contains(setting))
        return;
    const ProjectRecord *project = ProjectIn(company, now.Customer, now.Project);
    const DivisionRecord *division = FindRecord(company.Divisions,
        [&](const auto &r) { return r.Division_Number == customer->Division_Number; });
    const bool isFree = customer->No_Charge == "Y"_L1 || activity->No_Charge == "Y"_L1;
    std::optional<Currency> rate;
    if (now.Option == "2"_L1)
        rate = company.Employee.Rate;
    else if (now.Option == "3"_L1)
        rate = division != nullptr ? division->Rate : Currency();
    else if (now.Option == "4"_L1)
        rate = customer->Rate;
    else if (now.Option == "5"_L1 && project != nullptr && !m_clickedCodes.contains(CodeBoxes[1]))
        rate = project->Rate;
    else if (now.Option == "6"_L1)
        rate = activity->Rate;
    if (rate && now.Rate != (isFree ? 0 : rate->Scaled()))
        Find(u"a rate of another level"_s + entry);
}

void WalkOracle::CheckEdits(const ShownEntry &now)
{
    if (m_before.Changed && !now.Changed && !m_saved && !m_editsMayGo && !IsStoredAsShown(m_before))
        Find(u"edits are gone without a question"_s);
    const bool inQuantity = now.Focus == "txtHours"_L1 || now.Focus == "txtRate"_L1;
    if (!m_before.Changed && now.Changed && inQuantity && m_before.Focus == now.Focus
        && m_messages.isEmpty() && now.SameEntry(m_before) && now.Company == m_before.Company)
        Find(u"a key that was refused counts as an edit"_s);
}

void WalkOracle::MessageOpens(frmEntryList *window, const QString &text)
{
    CheckTables(); // the first click of two may have deleted an entry
    m_messages.append(text);
    if (text.startsWith(u"Error #"_s)) {
        m_errorShown = true;
        m_editsMayGo = m_editsMayGo || !m_before.Changed;
        if (!m_storeFailed)
            Find(u"an error although nothing has failed: "_s + text);
    } else if (!IsExpectedMessage(text) && !m_mayAskMore) {
        Find(u"an unexpected message: "_s + text);
    }
    if (window == nullptr)
        return;
    const ShownEntry now = Look(*window);
    if (text == "Do you want to save changes?"_L1) {
        m_before = now;
        if (!now.Changed)
            Find(u"a question about changes that are not marked"_s);
    }
    // A row that has just been loaded, or that has followed a deleted one.
    if (text == "You are not allowed to enter expenses."_L1 || m_saved)
        m_loadedId = now.MarkedId;
    if (now.Rows > 0 && now.MarkedId != m_loadedId && !m_errorShown)
        Find(
            u"while a message is open, row %1 is highlighted and not the entry in the editor"_s.arg(
                now.MarkedRow));
}

void WalkOracle::MessageAnswered(const QString &text, MessageAnswer answer)
{
    if (text == "Do you want to save changes?"_L1)
        m_editsMayGo = answer == MessageAnswer::No;
    if (text == "Delete this Entry?"_L1 && answer == MessageAnswer::Yes)
        m_editsMayGo = m_deletionConfirmed = true;
}

void WalkOracle::FilterLeft(const QStringList &codes)
{
    m_filter = codes;
}

void WalkOracle::CommandPressed(const QString &name)
{
    if (name == "cmdUndo"_L1 || (name == "cmdDel"_L1 && m_loadedId < 0))
        m_editsMayGo = true;
}

void WalkOracle::AtRest(frmEntryList &window)
{
    CheckAlive(window);
    const ShownEntry now = Look(window);
    const SampleCompany *company = CompanyOf(now.Company);
    if (company == nullptr)
        return CheckLocked(window);
    if (now.Company != m_before.Company)
        FilterLeft({QString(), QString(), QString()});
    CheckHighlight(now);
    CheckBoxes(*company, now);
    if (!m_errorShown)
        CheckList(window, *company);
    if (now.IsRecord && !now.Changed && now.MarkedRow > 0)
        CheckLoaded(*company, now);
}

void WalkOracle::CheckLocked(frmEntryList &window)
{
    // A synchronization opens the files again. When the disk fails then, the window says so and
    // stays locked until the program starts again.
    m_isLocked = true;
    if (!m_storeFailed || !m_errorShown
        || !m_messages.contains(u"Please perform a synchronization first."_s))
        Find(u"no company is chosen"_s);
    for (const char *name : {"msgEntryList", "cboCompany", "dtpDate", "txtCustomer", "txtHours",
             "txtDescription", "cmdOK", "cmdDel"})
        if (Control<QWidget>(window, name).isEnabled())
            Find(u"%1 can be used without a company"_s.arg(QLatin1String(name)));
}

void WalkOracle::CheckAlive(frmEntryList &window)
{
    const QWidget *focus = QApplication::focusWidget();
    if (!window.isVisible() || !window.isEnabled() || !window.isActiveWindow())
        Find(u"the window is not the active one"_s);
    else if (focus == nullptr || !focus->isVisible() || !focus->isEnabled())
        Find(u"no control has the keyboard focus"_s);
    if (QWidget::mouseGrabber() != nullptr || QWidget::keyboardGrabber() != nullptr)
        Find(u"a control holds the mouse or the keyboard"_s);
    if (window.windowTitle()
        != (window.isWindowModified() ? "Worklog Remote[*]"_L1 : "Worklog Remote"_L1))
        Find(u"the title is "_s + window.windowTitle());
}

void WalkOracle::CheckHighlight(const ShownEntry &now)
{
    const bool loadsNow = now.MarkedId != m_loadedId
        && (!now.Changed || m_messages.contains(u"You are not allowed to enter expenses."_s));
    if (now.Rows == 0 && now.IsRecord)
        return Find(u"a record is shown although the list is empty"_s);
    if (now.Rows == 0) {
        m_loadedId = -1;
        return;
    }
    if (now.IsRecord && now.MarkedRow <= 0)
        return Find(u"an entry of the list is in the editor and no row is highlighted"_s);
    if (!now.IsRecord && now.MarkedRow != 0)
        return Find(u"row %1 is highlighted and a new entry is in the editor"_s.arg(now.MarkedRow));
    if (now.IsRecord && now.Changed && !loadsNow && now.MarkedId != m_loadedId)
        return Find(u"another row is highlighted than the one whose entry is in the editor"_s);
    if (now.IsRecord && loadsNow)
        Same("row in the status bar", now.FirstPanel.section(u' ', 1, 1),
            QString::number(now.MarkedRow));
    m_loadedId = now.IsRecord ? now.MarkedId : -1;
}

void WalkOracle::CheckLoaded(const SampleCompany &company, const ShownEntry &now)
{
    const StoredTable &table = m_tables[company.Code];
    if (static_cast<size_t>(now.MarkedId) >= table.size())
        return Find(u"the highlighted row is not stored"_s);
    const StoredEntry &stored = table[static_cast<size_t>(now.MarkedId)];
    ++Loads;
    Same("customer", now.Customer, stored.Customer);
    Same("project", now.Project, stored.Project);
    Same("activity", now.Activity, stored.Activity);
    if (m_dateIsKnown)
        Same("date", m_date.toString(Qt::ISODate), DateOf(stored).toString(Qt::ISODate));
    Same("description", now.Description, stored.Description);
    Same("hours", now.Hours, ShownNumber(stored.Hours, 2));
    if (now.Focus != "cboBStatus"_L1)
        Same("status", now.Status, StatusText(stored.Status));
    if (now.ShowsOption && now.Focus != "cboBOption"_L1)
        Same("option", now.Option, OptionText(company.Options, stored));
    if (now.ShowsMultiplier)
        Same("multiplier", now.Multiplier, stored.Multiplier);
    if (now.ShowsMultiplier)
        Same("factor", now.Factor, ShownNumber(stored.Factor, 4));
    if (now.ShowsRate) {
        Same("rate", now.Rate, ShownNumber(Product(stored.Rate, stored.Factor), 3));
        Same("amount", now.Amount, ShownNumber(stored.Amount, 2));
    }
    if (now.ShowsReimburse)
        Same("reimburse", Text(now.Reimburse), Text(stored.Reimburse == "Y"_L1));
    if (now.ShowsOnHold)
        Same("on hold", Text(now.OnHold), Text(stored.OnHold == "Y"_L1));
    if (now.ShowsApproved)
        Same("approved", Text(now.Approved),
            Text(!stored.MgmtApproval.isEmpty()
                || (!stored.SecApproval.isEmpty()
                    && u"123"_s.contains(company.Options.Billing_Option_Setting))));
    Same("status bar", now.Panels.section(u'|', 1),
        (QStringList{company.Employee.Employee_Number, company.Code,
             DateOf(stored).toString(u"MM/dd/yyyy"_s)})
            .join(u'|'));
    Same("number of records", now.FirstPanel.section(u' ', 3), QString::number(table.size()));
}

bool WalkOracle::IsStoredAsShown(const ShownEntry &shown)
{
    const StoredTable &table = m_tables[shown.Company];
    if (m_loadedId < 0 || static_cast<size_t>(m_loadedId) >= table.size())
        return false;
    const StoredEntry &stored = table[static_cast<size_t>(m_loadedId)];
    const auto isStored = [&](const QString &box, const QString &code) {
        return StoredCode(CodeIn(shown, box), box) == code;
    };
    return isStored(CodeBoxes[0], stored.Customer) && isStored(CodeBoxes[1], stored.Project)
        && isStored(CodeBoxes[2], stored.Activity) && shown.Description == stored.Description
        && TypedNumber(shown.Hours) == stored.Hours && shown.Status == StatusText(stored.Status)
        && (!m_dateIsKnown || m_date == DateOf(stored));
}

void WalkOracle::CheckList(frmEntryList &window, const SampleCompany &company)
{
    const auto &grid = Control<clsGrid>(window, "msgEntryList");
    const StoredTable &table = m_tables[company.Code];
    const auto passes = [&](const StoredEntry &entry) {
        return (m_filter[0].isEmpty() || m_filter[0] == entry.Customer)
            && (m_filter[1].isEmpty() || m_filter[1] == entry.Project)
            && (m_filter[2].isEmpty() || m_filter[2] == entry.Activity);
    };
    const int rows = grid.TextMatrix(1, 0).isEmpty() ? 0 : grid.Rows() - 1;
    if (rows != std::count_if(table.begin(), table.end(), passes))
        return Find(u"the list has %1 rows, the table %2 entries, filter %3"_s.arg(rows)
                        .arg(table.size())
                        .arg(m_filter.join(u'/')));
    const QString panel = Control<QLabel>(window, "Panel1").text();
    if (panel.startsWith(u"Found "_s))
        Same(
            "count", panel, u"Found %1 %2"_s.arg(rows).arg(rows == 1 ? u"record"_s : u"records"_s));
    QSet<int> ids;
    for (int row = 1; row <= rows; ++row) {
        const int id = grid.TextMatrix(row, 0).toInt();
        if (ids.contains(id) || id < 0 || static_cast<size_t>(id) >= table.size()
            || !passes(table[static_cast<size_t>(id)]))
            return Find(u"row %1 of the list is no entry of the table"_s.arg(row));
        ids.insert(id);
        const StoredEntry &stored = table[static_cast<size_t>(id)];
        Same("date in the list", grid.TextMatrix(row, 2),
            stored.Date.isEmpty() ? QString() : stored.Day().toString(u"MM/dd/yyyy"_s));
        Same("hours in the list", grid.TextMatrix(row, 7), ShownNumber(stored.Hours, 2));
        const CustomerRecord *customer = CustomerIn(company, stored.Customer);
        if (customer != nullptr)
            Same("customer in the list", grid.TextMatrix(row, 3), customer->Customer_Name);
        const ActivityRecord *activity = ActivityIn(company, stored.Activity);
        Same("activity in the list", grid.TextMatrix(row, 5),
            activity != nullptr ? activity->Description : u"*** invalid ***"_s);
        if (grid.TextMatrix(row, 8).isEmpty())
            continue;
        Same("rate in the list", grid.TextMatrix(row, 8), ShownNumber(stored.Rate, 3));
        Same("amount in the list", grid.TextMatrix(row, 9), ShownNumber(stored.Amount, 2));
    }
}

bool WalkOracle::IsCode(const SampleCompany &company, const QString &box, const QString &code) const
{
    if (code.isEmpty())
        return true;
    if (box == CodeBoxes[0])
        return CustomerIn(company, code) != nullptr;
    if (box == CodeBoxes[1])
        return FindRecord(company.Projects, [&](const auto &record) {
            return record.Project_Number == code;
        }) != nullptr; // the customer may have been changed since
    if (box == CodeBoxes[2])
        return ActivityIn(company, code) != nullptr;
    return MultiplierIn(company, code) != nullptr;
}

void WalkOracle::CheckBoxes(const SampleCompany &company, const ShownEntry &now)
{
    const bool isExpense = now.HoursCaption == "Units"_L1;
    if (!now.Activity.isEmpty() && now.Focus != CodeBoxes[2]
        && !Fits(now.Hours, isExpense ? 5 : 2, 2))
        Find(u"the hours box holds "_s + now.Hours);
    if (now.Focus != CodeBoxes[2] && isExpense != IsExpense(company, now.Activity))
        Find(u"the caption is %1 for %2"_s.arg(now.HoursCaption, now.Activity));
    StoredEntry stored;
    if (m_loadedId >= 0 && static_cast<size_t>(m_loadedId) < m_tables[company.Code].size())
        stored = m_tables[company.Code][static_cast<size_t>(m_loadedId)];
    const QStringList storedCodes
        = {stored.Customer, stored.Project, stored.Activity, stored.Multiplier};
    for (qsizetype i = 0; i < CodeBoxes.size(); ++i) {
        const QString code = CodeIn(now, CodeBoxes[i]);
        if (now.Focus != CodeBoxes[i] && code != storedCodes[i]
            && !IsCode(company, CodeBoxes[i], code))
            Find(u"%1 was left with the code %2"_s.arg(CodeBoxes[i], code));
    }
}
