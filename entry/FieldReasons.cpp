#include "entry/FieldReasons.h"

#include "figures/CodeTexts.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

bool IsOneOf(EntryControl control, std::initializer_list<EntryControl> others)
{
    return std::find(others.begin(), others.end(), control) != others.end();
}

bool IsLockedByApproval(EntryControl control)
{
    return IsOneOf(control,
        {EntryControl::dtpDate, EntryControl::txtCustomer, EntryControl::cmdCustomer,
            EntryControl::txtProject, EntryControl::cmdProject, EntryControl::txtActivity,
            EntryControl::cmdActivity, EntryControl::cboBStatus, EntryControl::cboBOption,
            EntryControl::txtMultiplierCode, EntryControl::cmdMultiplier, EntryControl::txtHours,
            EntryControl::txtRate, EntryControl::txtAmount, EntryControl::chkReimburse,
            EntryControl::txtDescription});
}

QString WhyBillingIsClosed(EntryControl control, const FieldFacts &facts)
{
    if (!facts.MayBeBilled)
        return u"Only a billable entry has it."_s;
    if (!facts.BillingSwitchOn)
        return u"Your company does not let it be changed."_s;
    const bool isRate = control == EntryControl::txtRate;
    const bool may = facts.RatePermission == "4"_L1 || (facts.RatePermission == "3"_L1 && !isRate);
    return may ? QString() : u"Your rate permission does not cover it."_s;
}

QString WhyCompanyIsClosed(const FieldFacts &facts)
{
    if (facts.Changed)
        return u"Save or undo the changes first."_s;
    return facts.EntryLoaded ? u"Press Undo first, to leave the entry."_s : QString();
}

QString WhyApprovalIsClosed(const FieldFacts &facts)
{
    return facts.OnHold ? u"The entry is on hold."_s : u"You may not approve entries."_s;
}

} // namespace

QString WhyClosed(EntryControl control, const FieldFacts &facts)
{
    if (facts.NotSynchronised)
        return u"There is no data yet: synchronise first."_s;
    if (facts.ApprovedAndLocked && IsLockedByApproval(control))
        return u"The entry is approved and locked."_s;
    switch (control) {
    case EntryControl::cboCompany:
        return WhyCompanyIsClosed(facts);
    case EntryControl::txtUser:
        return u"Accounting says who works with this computer."_s;
    case EntryControl::txtProject:
    case EntryControl::cmdProject:
        return facts.HasCustomer ? QString()
                                 : u"Enter the %1 first."_s.arg(InSentence(facts.CustomerTerm));
    case EntryControl::cboBOption:
    case EntryControl::txtMultiplierCode:
    case EntryControl::cmdMultiplier:
        return WhyBillingIsClosed(control, facts);
    case EntryControl::txtMultiplierFactor:
        return u"The factor belongs to the multiplier code."_s;
    case EntryControl::txtHours:
        return facts.AmountOnly ? u"The expense is entered by its amount alone."_s : QString();
    case EntryControl::txtRate:
        if (facts.IsExpense)
            return facts.AmountOnly ? u"The expense is entered by its amount alone."_s : QString();
        return WhyBillingIsClosed(control, facts);
    case EntryControl::txtAmount:
        if (facts.AmountOnly)
            return {};
        return facts.IsExpense ? u"Computed: units times rate."_s
                               : u"Computed: hours times rate times factor."_s;
    case EntryControl::chkApproved:
        return WhyApprovalIsClosed(facts);
    case EntryControl::chkOnHold:
        return facts.Approved ? u"The entry is approved."_s : QString();
    default:
        return {};
    }
}

RateSource RateSourceOf(const EntryBeingEdited &entry, const QString &billingOptionSetting)
{
    if (entry.RateOverridden == "Y"_L1)
        return RateSource::Typed;
    if (entry.ActivityCode.isEmpty())
        return RateSource::None;
    if (entry.IsExpense())
        return RateSource::UnitCost;
    if (entry.BillingStatus != "1"_L1)
        return RateSource::None;
    if (entry.BillingOption == "2"_L1)
        return RateSource::Employee;
    constexpr std::array levels
        = {RateSource::Division, RateSource::Customer, RateSource::Project, RateSource::Activity};
    const int level = entry.BillingOption.toInt() - 3;
    if (level < 0 || level >= static_cast<int>(levels.size()))
        return RateSource::None;
    const bool takesRates = billingOptionSetting == "1"_L1 || billingOptionSetting == "2"_L1
        || billingOptionSetting == "3"_L1;
    return takesRates ? levels.at(static_cast<size_t>(level)) : RateSource::Unknown;
}

QString RateSourceText(
    RateSource source, const EntryBeingEdited &entry, const OptionsRecord &options)
{
    const auto rateOf = [&](const QString &whose) {
        if (entry.Rate.IsZero())
            return u"No rate: the %1 has none, or is not charged."_s.arg(whose);
        return entry.MultiplierFactor == Currency::FromWhole(1)
            ? u"The rate of the %1."_s.arg(whose)
            : u"The rate of the %1, times the factor."_s.arg(whose);
    };
    switch (source) {
    case RateSource::Typed:
        return u"The rate was typed."_s;
    case RateSource::UnitCost:
        return u"The unit cost of the %1."_s.arg(InSentence(options.Activity_Term));
    case RateSource::Activity:
        return rateOf(InSentence(options.Activity_Term));
    case RateSource::Project:
        return rateOf(InSentence(options.Project_Term));
    case RateSource::Customer:
        return rateOf(InSentence(options.Customer_Term));
    case RateSource::Division:
        return rateOf(u"division"_s);
    case RateSource::Employee:
        return rateOf(InSentence(options.Employee_Term));
    case RateSource::Unknown:
    case RateSource::None:
        break;
    }
    return {};
}

QString DigitsTaken(int integerDigits, int decimalDigits)
{
    return u"A number with up to %1 digits before the point and %2 after it."_s.arg(
        QString::number(integerDigits), QString::number(decimalDigits));
}
