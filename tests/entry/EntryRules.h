#pragma once

#include "entry/modEntryInfo.h"
#include "tests/support/Recorded.h"
#include "tests/support/SampleCompany.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

/// The rules of the entry over real tables, without a window: what the user types is put on the
/// screen as the window does it.
class EntryRules : public testing::Test
{
protected:
    EntryRules();

    /// Builds the databases, opens them and shows a new entry.
    void Start();
    /// The same with these entries; the first one is shown.
    void StartWith(const std::vector<EntryRecord> &entries);

    modEntryInfo &Rules() { return *m_rules; }
    Tables &Data() { return m_folder->Tables; }
    OptionsRecord &Options() { return Data().Options.Working; }
    EmployeeRecord &Employee() { return Data().Employee.Working; }
    QString FileOfEntries() const
    {
        return m_folder->Path() + QStringLiteral("/ABCEntries-WkLg.db");
    }
    /// What a program that opens the file now reads from it.
    std::vector<EntryRecord> Stored() const;

    // A user's hands.
    void Type(EntryControl box, const QString &text);
    void Pick(EntryControl list, const QString &text);
    void Tick(EntryControl box, bool ticked);
    CodeCheck EnterCustomer(const QString &code);
    CodeCheck EnterProject(const QString &code);
    CodeCheck EnterActivity(const QString &code);
    CodeCheck EnterMultiplier(const QString &code);
    void EnterCodes(const QString &customer, const QString &project, const QString &activity);
    void EnterHours(const QString &text);
    void EnterRate(const QString &text);
    void PickStatus(const QString &text);
    void PickOption(const QString &text);

    // The user's eyes.
    QString Text(EntryControl control) const { return Screen[control].Text; }
    QString Item(EntryControl list) const { return Screen[list].ItemText(); }
    /// "hidden", "closed" (disabled, with the background of buttons), "locked" (likewise, but
    /// enabled) or "open".
    QString Look(EntryControl control) const;
    bool IsVisible(EntryControl control) const { return Screen[control].Visible; }
    std::optional<EntryControl> Focused() const;
    bool SelectsText() const { return Screen.Focus && Screen.Focus->SelectText; }

    SampleCompany Company;
    SessionState Session;
    EntryBeingEdited Entry;
    LookupState Lookup;
    EntryListState List;
    EntryScreen Screen;
    clsRecordedMessages Messages;
    clsFixedClock Clock;
    int Reloads = 0;

private:
    std::optional<SampleFolder> m_folder;
    std::optional<modEntryInfo> m_rules;
};

/// Whole and hundredths: 1.25 is Money(1, 25).
constexpr Currency Money(qint32 whole, qint32 hundredths = 0)
{
    return Currency::FromScaled(whole * Currency::Scale + hundredths * (Currency::Scale / 100));
}

/// Every member that an entry can have, none of them as in a new one, none approved.
EntryRecord FullEntry();

void PrintTo(EntryControl control, std::ostream *out);
bool operator==(const EntryRecord &a, const EntryRecord &b);
void PrintTo(const EntryRecord &record, std::ostream *out);
