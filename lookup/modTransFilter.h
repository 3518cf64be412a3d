#pragma once

#include "session/FilterState.h"
#include "session/LookupState.h"
#include "store/Tables.h"

#include <QString>

#include <array>
#include <functional>
#include <optional>

enum class FilterField
{
    Customer,
    Project,
    Activity
};
inline constexpr std::array FilterFields
    = {FilterField::Customer, FilterField::Project, FilterField::Activity};

enum class LookupStart
{
    AtTheTop,
    AtTheText ///< at the first record that matches the box's text
};

/// The transaction filter's rules: three optional codes, checked against their tables and put into
/// force together. The codes being edited stand in FilterState, where a lookup writes them too.
///
/// Errors: those of the record store.
class modTransFilter
{
public:
    modTransFilter(Tables &tables, FilterState &filter, LookupState &lookup); // all outlive it

    /// Selects the whole text of the entry window's own box; connected by the entry window.
    std::function<void(FilterField)> SelectEntryBox;

    void InitTransFilter(); ///< starts again from the codes in force, their names read afresh
    void BoxGotFocus(FilterField field); ///< its text is what a refused code gives way to
    /// Whether the focus goes on by itself: no project without a customer.
    bool PassesOn(FilterField field) const;
    bool IsUnchecked(FilterField field); ///< its box shows another code than the one that counts
    void CheckBox(FilterField field); ///< an unknown code gives way to the previous one
    /// Opens the lookup of a box with `showLookup`, which returns when it has closed, and takes
    /// the choice. True when one was made, false after a cancel.
    bool LookUp(FilterField field, LookupStart start, const std::function<void()> &showLookup);
    void OK(); ///< the edited codes come into force
    void Cancel();
    void Clear(); ///< nothing is in force any more
    /// The box to go to when the dialog is active again after a cancelled lookup.
    std::optional<FilterField> FocusWanted() const;

    QString Caption(FilterField field) const; ///< the company's term
    QString &Text(FilterField field); ///< what the box shows
    const QString &Name(FilterField field) const; ///< what the label beside it shows
    bool ProjectIsOpen() const { return m_projectIsOpen; }
    bool CodeReverted() const { return m_filter.FilterCodeReverted; }

    /// Why the last check put a code back; empty when it did not.
    const QString &PutBackText() const { return m_putBackText; }

    QString FilterCustomerName;
    QString FilterProjectName;
    QString FilterActivityName;
    QString FilterPreviousCustomer;
    QString FilterPreviousProject;
    QString FilterPreviousActivity;
    QString FilterFocusKey; ///< "Cust", "Proj", "Acti" or empty

private:
    struct Field
    {
        QString &Code;
        QString &Text;
        QString &Name;
        QString &Previous;
    };
    Field Of(FilterField field);

    std::optional<QString> CustomerName();
    std::optional<QString> ProjectName();
    std::optional<QString> ActivityName();
    std::optional<QString> FoundName(FilterField field); ///< of the edited code, where it is known
    QString WhyPutBack(FilterField field); ///< of the code that is being edited
    void ReadName(FilterField field);
    void CheckNewCode(FilterField field); ///< one that the box did not hold before
    void OpenProject();
    void CloseProject();

    Tables &m_tables;
    FilterState &m_filter;
    LookupState &m_lookup;
    QString m_customerText;
    QString m_projectText;
    QString m_activityText;
    QString m_putBackText;
    QString m_appliedProjectName; // next to the project in force
    bool m_projectIsOpen = false;
};
