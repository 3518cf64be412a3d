// Billing status and option, hours, rate and amount.

#include "entry/modEntryInfo.h"

#include "figures/BillingTexts.h"
#include "store/PadKey.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int HoursDecimals = 2;
constexpr int RateDecimals = 3;
constexpr int AmountDecimals = 2;
constexpr int FactorDecimals = 4;

constexpr std::array MultiplierControls = {EntryControl::lblMultiplierCode,
    EntryControl::txtMultiplierCode, EntryControl::cmdMultiplier, EntryControl::lblMultiplierFactor,
    EntryControl::txtMultiplierFactor};
constexpr std::array OptionControls = {EntryControl::lblBOption, EntryControl::cboBOption};
constexpr std::array AmountControls = {
    EntryControl::lblRate, EntryControl::txtRate, EntryControl::lblAmount, EntryControl::txtAmount};

QString Shown(Currency value, int decimals)
{
    return FormatCurrency(value, decimals, LeadingZero::No);
}

template <size_t Count>
void SetVisible(EntryScreen &screen, const std::array<EntryControl, Count> &controls, bool visible)
{
    for (const EntryControl control : controls)
        screen[control].Visible = visible;
}

/// Computed, so it can be seen and reached with the mouse, but not edited.
void LockAmount(ControlState &box)
{
    box.Locked = true;
    box.InTabOrder = false;
    box.ButtonFace = true;
}

} // namespace

QString modEntryInfo::RateLevel() const
{
    return m_tables.Employee.Working.Rate_Permission;
}

bool modEntryInfo::IsBillable() const
{
    return Entry.BillingStatus == "1"_L1;
}

bool modEntryInfo::IsNotBilled() const
{
    return !IsBillable() && !Entry.BillingStatus.isEmpty();
}

bool modEntryInfo::SettingIsUpToThree() const
{
    const QString &setting = m_tables.Options.Working.Billing_Option_Setting;
    return setting == "1"_L1 || setting == "2"_L1 || setting == "3"_L1;
}

QuantityMask modEntryInfo::MaskOf(EntryControl box) const
{
    switch (box) {
    case EntryControl::txtRate:
        return QuantityMasks::Rate;
    case EntryControl::txtAmount:
        return QuantityMasks::Amount;
    default:
        return Entry.IsExpense() ? QuantityMasks::Units : QuantityMasks::Hours;
    }
}

void modEntryInfo::DropImpossibleHours()
{
    const QString hours = Shown(Entry.Hours, HoursDecimals);
    clsM90Mask mask;
    mask.SetMask(QuantityMasks::Hours.IntegerDigits, QuantityMasks::Hours.DecimalDigits);
    if (mask.gVerify_Change(hours, 0).Text == hours)
        return;
    Entry.Hours = Currency();
    m_screen.PutBack = {EntryControl::txtHours, hours + u" units cannot be hours."_s};
}

void modEntryInfo::RecalcAmount()
{
    if (Entry.IsExpense())
        Entry.MultiplierFactor = Currency::FromWhole(1);
    m_screen[EntryControl::txtMultiplierFactor].Text
        = Shown(Entry.MultiplierFactor, FactorDecimals);
    m_screen[EntryControl::txtRate].Text = Shown(Entry.Rate * Entry.MultiplierFactor, RateDecimals);
    Entry.Amount = (Entry.Hours * Entry.Rate) * Entry.MultiplierFactor;
    m_screen[EntryControl::txtAmount].Text = Shown(Entry.Amount, AmountDecimals);
}

void modEntryInfo::TakeRate(Currency rate)
{
    Entry.Rate = rate;
    Entry.RateOverridden = u"N"_s;
}

void modEntryInfo::ApplyHoursText()
{
    QString text = m_screen[EntryControl::txtHours].Text;
    if (text.isEmpty() || text == "."_L1)
        text = u"0"_s;
    Entry.Hours = CurrencyFromText(text).value_or(Entry.Hours);
    m_screen[EntryControl::txtHours].Text = Shown(Entry.Hours, HoursDecimals);
    RecalcAmount();
}

void modEntryInfo::ApplyRateText()
{
    ControlState &box = m_screen[EntryControl::txtRate];
    const std::optional<Currency> rate = CurrencyFromText(box.Text.isEmpty() ? u"0"_s : box.Text);
    if (!rate) {
        box.Text = Shown(Entry.Rate * Entry.MultiplierFactor, RateDecimals);
        return;
    }
    Entry.Rate = *rate;
    Entry.RateOverridden = u"Y"_s;
    box.Text = Shown(Entry.Rate, RateDecimals);
    Entry.MultiplierCode.clear();
    m_screen[EntryControl::txtMultiplierCode].Text.clear();
    Entry.MultiplierFactor = Currency::FromWhole(1);
    RecalcAmount();
}

void modEntryInfo::ApplyAmountText()
{
    ControlState &box = m_screen[EntryControl::txtAmount];
    Entry.Amount = CurrencyFromText(box.Text.isEmpty() ? u"0"_s : box.Text).value_or(Entry.Amount);
    box.Text = Shown(Entry.Amount, AmountDecimals);
}

void modEntryInfo::LayOutQuantities()
{
    m_screen[EntryControl::txtHours].Text = Shown(Entry.Hours, HoursDecimals);
    if (Entry.IsExpense())
        LayOutExpense();
    else
        LayOutTime();
}

void modEntryInfo::LayOutExpense()
{
    SetVisible(m_screen, OptionControls, false);
    SetVisible(m_screen, MultiplierControls, false);
    SetVisible(m_screen, AmountControls, true);
    m_screen[EntryControl::chkReimburse].Visible = true;
    m_screen[EntryControl::lblHours].Text = u"Units"_s;
    m_screen[EntryControl::txtAmount].Text = Shown(Entry.Amount, AmountDecimals);
    if (Entry.AmountOnly == "Y"_L1) {
        m_screen[EntryControl::txtHours].Close();
        m_screen[EntryControl::txtRate].Close();
        ControlState &amount = m_screen[EntryControl::txtAmount];
        amount.Locked = false;
        amount.InTabOrder = true;
        amount.ButtonFace = false;
        return;
    }
    m_screen[EntryControl::txtHours].Open();
    m_screen[EntryControl::txtRate].Open();
    LockAmount(m_screen[EntryControl::txtAmount]);
    RecalcAmount();
}

void modEntryInfo::LayOutTime()
{
    SetVisible(m_screen, AmountControls, false);
    m_screen[EntryControl::lblHours].Text = u"Hours"_s;
    m_screen[EntryControl::txtHours].Open();
    LockAmount(m_screen[EntryControl::txtAmount]);
    m_screen[EntryControl::chkReimburse].Visible = false;
    SetVisible(m_screen, OptionControls, true);
    FillBillingOptions();
    const bool shown = Entry.BillingOption != "1"_L1;
    SetVisible(m_screen, MultiplierControls, shown);
    SetVisible(m_screen, AmountControls, shown);
    if (shown) {
        m_screen[EntryControl::txtMultiplierCode].Text = Entry.MultiplierCode;
        RecalcAmount();
    }
    HideRateFields();
}

void modEntryInfo::HideRateFields()
{
    if (RateLevel() != "1"_L1)
        return;
    SetVisible(m_screen, OptionControls, false);
    SetVisible(m_screen, MultiplierControls, false);
    SetVisible(m_screen, AmountControls, false);
}

void modEntryInfo::FillBillingOptions()
{
    ControlState &list = m_screen[EntryControl::cboBOption];
    const bool blank = IsNotBilled();
    list.Items = blank ? QStringList{QString()} : BillingOptionTexts(m_tables.Options.Working);
    list.Index = blank ? 0 : -1;
    if (!Entry.BillingOption.isEmpty()) // a new entry has none yet, and the text "0"
        Entry.BillingOptionText = BillingOptionText(Entry.BillingOption, m_tables.Options.Working);
    if (!blank)
        SelectComboItem(list, Entry.BillingOptionText);
}

void modEntryInfo::ClearBillingData()
{
    Entry.MultiplierCode.clear();
    TakeRate(Currency());
    Entry.Amount = Currency();
    Entry.BillingOption = u"0"_s;
    Entry.MultiplierFactor = Currency::FromWhole(1);
    FillBillingOptions();
    m_screen[EntryControl::txtMultiplierCode].Text.clear();
    m_screen[EntryControl::txtMultiplierFactor].Text
        = Shown(Entry.MultiplierFactor, FactorDecimals);
    m_screen[EntryControl::txtRate].Text = Shown(Entry.Rate, RateDecimals);
    m_screen[EntryControl::txtAmount].Text = Shown(Entry.Amount, AmountDecimals);
    EnableBillingFields(false, false);
}

void modEntryInfo::ApplyBillingStatus()
{
    const QString text = m_screen[EntryControl::cboBStatus].ItemText();
    const bool activityAskedFor = m_activityFocusRequested
        || (m_screen.Focus && m_screen.Focus->Control == EntryControl::txtActivity);
    if (text.isEmpty() || (text == m_previousStatusText && !activityAskedFor))
        return;
    AllOrNothing(EntryControl::cboBStatus, [&] { TakeBillingStatus(text); });
    m_previousStatusText = text;
    m_previousOptionText = m_screen[EntryControl::cboBOption].ItemText();
}

void modEntryInfo::TakeBillingStatus(const QString &text)
{
    FieldEdited();
    const bool isTime = !Entry.IsExpense();
    Entry.BillingStatus = BillingStatusCode(text);
    Entry.BillingStatusText = text;
    if (!IsBillable()) {
        if (isTime)
            ClearBillingData();
    } else {
        const QString level = RateLevel();
        const bool switchedOn = m_tables.Options.Working.Billing_Option_Switch == "Y"_L1;
        if (isTime) {
            FillBillingOptions();
            if (level != "1"_L1 && switchedOn) {
                const QString option = ChooseBillingOption();
                LookupRate(option);
                Entry.BillingOption = option;
                if (CountsAsUnbilled())
                    TakeRate(Currency());
            }
        }
        RecalcAmount();
        if (switchedOn)
            EnableBillingFields(level == "3"_L1 || level == "4"_L1, level == "4"_L1);
    }
    LayOutQuantities();
}

void modEntryInfo::ApplyBillingOption()
{
    const QString text = m_screen[EntryControl::cboBOption].ItemText();
    if (text == m_previousOptionText)
        return;
    AllOrNothing(EntryControl::cboBOption, [&] { TakeBillingOption(text); });
    m_previousOptionText = text;
    m_screen.Focus = {
        Entry.BillingOption == "1"_L1 ? EntryControl::txtHours : EntryControl::txtMultiplierCode};
}

void modEntryInfo::TakeBillingOption(const QString &text)
{
    FieldEdited();
    Entry.BillingOption = BillingOptionCode(text, m_tables.Options.Working);
    LayOutQuantities();
    if (!CountsAsUnbilled())
        LookupRate(Entry.BillingOption);
    RecalcAmount();
}

void modEntryInfo::ApplyBillingDefaults()
{
    if (Entry.IsExpense() || !IsBillable())
        return;
    const QString option = ChooseBillingOption();
    if (!CountsAsUnbilled())
        LookupRate(option);
    Entry.BillingOption = option;
    LayOutQuantities();
    RecalcAmount();
    m_previousOptionText = m_screen[EntryControl::cboBOption].ItemText();
}

CustomerRecord modEntryInfo::CustomerOfEntry()
{
    CustomerRecord customer;
    if (m_tables.Customers.Find(0, PadKey(Entry.CustomerCode, KeyWidth::Customer)))
        m_tables.Customers.ReadCustomer(customer);
    return customer;
}

DivisionRecord modEntryInfo::DivisionOfEntry()
{
    DivisionRecord division;
    const QString key = PadKey(CustomerOfEntry().Division_Number, KeyWidth::Division);
    if (m_tables.Divisions.Find(0, key))
        m_tables.Divisions.ReadDivision(division);
    return division;
}

ProjectRecord modEntryInfo::ProjectOfEntry()
{
    ProjectRecord project;
    if (m_tables.Projects.Find(0, ProjectKey(Entry.CustomerCode, Entry.ProjectCode)))
        m_tables.Projects.ReadProject(project);
    return project;
}

ActivityRecord modEntryInfo::ActivityOfEntry()
{
    ActivityRecord activity;
    if (m_tables.Activities.Find(0, PadKey(Entry.ActivityCode, KeyWidth::Activity)))
        m_tables.Activities.ReadActivity(activity);
    return activity;
}

bool modEntryInfo::CountsAsUnbilled()
{
    return Entry.BillingStatus == "2"_L1 || Entry.BillingStatus == "3"_L1
        || CustomerOfEntry().No_Charge == "Y"_L1 || ActivityOfEntry().No_Charge == "Y"_L1;
}

QString modEntryInfo::ChooseBillingOption()
{
    if (CountsAsUnbilled())
        TakeRate(Currency());

    if (!ActivityOfEntry().Rate.IsZero())
        return u"6"_s;
    if (!ProjectOfEntry().Rate.IsZero())
        return u"5"_s;
    if (!CustomerOfEntry().Rate.IsZero())
        return u"4"_s;
    const bool divisionsCount
        = SettingIsUpToThree() && m_tables.Options.Working.Billing_Option_Switch == "Y"_L1;
    if (divisionsCount && !DivisionOfEntry().Rate.IsZero())
        return u"3"_s;
    return m_tables.Employee.Working.Rate.IsZero() ? u"1"_s : u"2"_s;
}

void modEntryInfo::LookupRate(const QString &option)
{
    if (m_loading)
        return;
    if (option == "2"_L1)
        TakeRate(m_tables.Employee.Working.Rate);
    else if (!SettingIsUpToThree())
        return; // settings above "3" take no rate from the other levels: the rate stays
    else if (option == "3"_L1)
        TakeRate(DivisionOfEntry().Rate);
    else if (option == "4"_L1)
        TakeRate(CustomerOfEntry().Rate);
    else if (option == "5"_L1)
        TakeRate(ProjectOfEntry().Rate);
    else if (option == "6"_L1)
        TakeRate(ActivityOfEntry().Rate);
}
