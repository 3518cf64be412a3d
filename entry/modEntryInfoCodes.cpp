// The checks of the codes and of the whole entry.

#include "entry/modEntryInfo.h"

#include "figures/BillingTexts.h"
#include "figures/CodeTexts.h"
#include "store/PadKey.h"

using namespace Qt::StringLiterals;

namespace {

/// The value of a quantity box; what is no number is zero.
Currency ValueOf(const ControlState &box)
{
    return CurrencyFromText(box.Text).value_or(Currency());
}

} // namespace

void modEntryInfo::SelectFieldText(EntryControl box)
{
    m_screen.Focus = {box, true};
}

CodeCheck modEntryInfo::Refuse(
    EntryControl box, QString &code, const QString &previous, const QString &why)
{
    m_screen.PutBack = {box, why};
    code = previous;
    m_screen[box].Text = previous;
    SelectFieldText(box);
    return CodeCheck::Refused;
}

QString modEntryInfo::CodeIn(EntryControl box)
{
    m_screen[box].Text = WithoutTrailingSpaces(m_screen[box].Text);
    return m_screen[box].Text;
}

QString &modEntryInfo::CodeOf(EntryControl box)
{
    switch (box) {
    case EntryControl::txtCustomer:
        return Entry.CustomerCode;
    case EntryControl::txtProject:
        return Entry.ProjectCode;
    case EntryControl::txtActivity:
        return Entry.ActivityCode;
    default:
        return Entry.MultiplierCode;
    }
}

CodeCheck modEntryInfo::CheckCode(EntryControl box)
{
    CodeCheck result = CodeCheck::Refused;
    AllOrNothing(box, [&] {
        result = box == EntryControl::txtCustomer ? CheckCustomer()
            : box == EntryControl::txtProject     ? CheckProject()
            : box == EntryControl::txtActivity    ? CheckActivity()
                                                  : CheckMultiplier();
    });
    return result;
}

CodeCheck modEntryInfo::CheckCustomer()
{
    Entry.CustomerCode = CodeIn(EntryControl::txtCustomer);
    if (Entry.CustomerCode.isEmpty()) {
        Entry.ProjectCode.clear();
        m_screen[EntryControl::txtProject].Text.clear();
        OpenProject(false);
        RememberFocusTexts();
        return CodeCheck::Accepted;
    }
    if (!m_tables.Customers.Find(0, PadKey(Entry.CustomerCode, KeyWidth::Customer)))
        return Refuse(EntryControl::txtCustomer, Entry.CustomerCode, m_previousCustomer,
            NoSuchCode(m_tables.Options.Working.Customer_Term, Entry.CustomerCode));
    const QString statusBefore = m_previousStatusText;
    ShowAgain();
    ApplyBillingRules(statusBefore);
    return CodeCheck::Accepted;
}

CodeCheck modEntryInfo::CheckProject()
{
    Entry.ProjectCode = CodeIn(EntryControl::txtProject);
    if (Entry.ProjectCode.isEmpty()) {
        RememberFocusTexts();
        return CodeCheck::Accepted;
    }
    if (!m_tables.Projects.Find(0, ProjectKey(Entry.CustomerCode, Entry.ProjectCode)))
        return Refuse(EntryControl::txtProject, Entry.ProjectCode, m_previousProject,
            NoSuchProject(m_tables.Options.Working, Entry.ProjectCode, Entry.CustomerCode));
    // For a code from the lookup, TakeLookedUpCode shows the entry and runs its rules.
    if (m_pendingLookup == LookupKinds::Projects)
        return CodeCheck::Accepted;
    const QString statusBefore = m_previousStatusText;
    ShowAgain();
    ApplyBillingRules(statusBefore);
    return CodeCheck::Accepted;
}

void modEntryInfo::ApplyBillingRules(const QString &statusBefore)
{
    // Showing the entry has remembered the status that it shows; after an accepted code the rules
    // run all the same.
    m_previousStatusText = statusBefore;
    ApplyBillingStatus();
    ApplyBillingDefaults();
}

void modEntryInfo::TakeActivity(bool found)
{
    const ActivityRecord &activity = m_tables.Activities.Record;
    Entry.AmountOnly = u"N"_s;
    Entry.Reimburse = u"N"_s;
    if (!found) {
        Entry.ExpenseActivity = u"N"_s;
        TakeRate(Currency());
        Entry.BillingStatus.clear();
        return;
    }
    Entry.ExpenseActivity = activity.Expense;
    if (Entry.IsExpense()) {
        // Kept although the flag has just been cleared: an amount-only expense takes the cost as
        // its amount.
        if (Entry.AmountOnly == "Y"_L1)
            Entry.Amount = activity.Unit_Cost;
        else
            TakeRate(activity.Unit_Cost);
    }
    Entry.BillingStatus = activity.Dflt_Billing_Status;
    if (Entry.BillingStatus.isEmpty())
        Entry.BillingStatus = u"1"_s;
}

CodeCheck modEntryInfo::CheckActivity()
{
    Entry.ActivityCode = CodeIn(EntryControl::txtActivity);
    const bool blank = Entry.ActivityCode.isEmpty();
    modDBActi &activities = m_tables.Activities;
    const bool found = !blank && activities.Find(0, PadKey(Entry.ActivityCode, KeyWidth::Activity));
    if (!blank && !found)
        return Refuse(EntryControl::txtActivity, Entry.ActivityCode, m_previousActivity,
            NoSuchCode(m_tables.Options.Working.Activity_Term, Entry.ActivityCode));
    if (found)
        activities.ReadActivity(activities.Record);
    // Hours that a time entry held before stay, even if another program stored them.
    const bool heldUnits = Entry.IsExpense() || m_previousActivity.isEmpty();
    TakeActivity(found);
    if (found && heldUnits && !Entry.IsExpense())
        DropImpossibleHours();

    if (ExpenseIsRefused()) {
        ShowAgain(); // refuses it with a message, and shows what is left
        SelectFieldText(EntryControl::txtActivity);
        return CodeCheck::Refused;
    }
    if (!Entry.IsExpense() && IsNotBilled())
        ClearBillingData();
    const QString statusBefore = m_previousStatusText;
    ShowAgain();
    if (Entry.IsExpense() || blank)
        return CodeCheck::Accepted;
    const QString level = RateLevel();
    const bool opensBilling = (level == "3"_L1 || level == "4"_L1)
        && m_tables.Options.Working.Billing_Option_Switch == "Y"_L1;
    if (!opensBilling) {
        m_previousStatusText = statusBefore;
        ApplyBillingStatus();
    }
    ApplyBillingDefaults();
    return CodeCheck::Accepted;
}

CodeCheck modEntryInfo::CheckMultiplier()
{
    ControlState &box = m_screen[EntryControl::txtMultiplierCode];
    if (CodeIn(EntryControl::txtMultiplierCode) == m_previousMultiplier)
        return CodeCheck::Accepted;
    if (box.Text.size() == 1 && box.Text.at(0) >= u'0' && box.Text.at(0) <= u'9')
        box.Text.prepend(u'0');
    Entry.MultiplierCode = box.Text;
    Entry.MultiplierFactor = Currency::FromWhole(1);
    CodeCheck result = CodeCheck::Accepted;
    if (!box.Text.isEmpty()) {
        modDBMult &multipliers = m_tables.Multiplier;
        if (multipliers.Find(0, PadKey(box.Text, KeyWidth::Multiplier))) {
            multipliers.ReadMultiplier(multipliers.Record);
            Entry.MultiplierFactor = multipliers.Record.Factor;
        } else {
            // The factor stays 1 although the previous code is restored. Intentional.
            result = Refuse(EntryControl::txtMultiplierCode, Entry.MultiplierCode,
                m_previousMultiplier, NoSuchCode(u"Multiplier"_s, Entry.MultiplierCode));
        }
    }
    RecalcAmount();
    return result;
}

bool modEntryInfo::Fail(
    const QString &message, EntryControl control, const QString &key, bool selectText)
{
    m_messages.Tell(message);
    m_screen.Focus = {control, selectText};
    FailedField = key;
    return false;
}

bool modEntryInfo::ValidateEntry()
{
    FailedField.clear();
    const OptionsRecord &options = m_tables.Options.Working;
    const auto invalidCode = [&](const QString &term, EntryControl control, const QString &key) {
        return Fail(u"Invalid "_s + term.trimmed() + u" Code."_s, control, key, false);
    };
    const auto invalidQuantity
        = [&](const QString &message, EntryControl control, const QString &key) {
              return Fail(message, control, key, true);
          };
    if (Entry.CustomerCode.isEmpty())
        return invalidCode(options.Customer_Term, EntryControl::txtCustomer, u"Cust"_s);
    if (options.Project_Required == "Y"_L1 && Entry.ProjectCode.isEmpty())
        return invalidCode(options.Project_Term, EntryControl::txtProject, u"Proj"_s);
    if (Entry.ActivityCode.isEmpty())
        return invalidCode(options.Activity_Term, EntryControl::txtActivity, u"Acti"_s);
    if (Entry.BillingStatus.isEmpty())
        return Fail(u"Invalid Billing Status."_s, EntryControl::cboBStatus, u"BSta"_s, false);

    if (!Entry.IsExpense()) {
        ApplyHoursText();
        return !ValueOf(m_screen[EntryControl::txtHours]).IsZero()
            || invalidQuantity(u"Invalid Hours."_s, EntryControl::txtHours, u"Hrs"_s);
    }
    if (Entry.AmountOnly == "Y"_L1) {
        ApplyAmountText();
        return !ValueOf(m_screen[EntryControl::txtAmount]).IsZero()
            || invalidQuantity(u"Invalid Amount."_s, EntryControl::txtAmount, u"Amt"_s);
    }
    if (!IsBillable())
        return true;
    ApplyHoursText();
    if (ValueOf(m_screen[EntryControl::txtHours]).IsZero())
        return invalidQuantity(u"Invalid Units."_s, EntryControl::txtHours, u"Hrs"_s);
    if (ValueOf(m_screen[EntryControl::txtRate]).IsZero())
        return invalidQuantity(u"Invalid Rate."_s, EntryControl::txtRate, u"Rate"_s);
    // An amount of zero sends the user to the units, on purpose.
    return !ValueOf(m_screen[EntryControl::txtAmount]).IsZero()
        || invalidQuantity(u"Invalid Amount."_s, EntryControl::txtHours, u"Hrs"_s);
}
