#pragma once

#include "platform/clsClock.h"
#include "session/SessionState.h"
#include "store/Tables.h"

#include <QString>

#include <array>
#include <optional>

/// Rules of the synchronisation options: what the next synchronisation does with the current
/// company. The choice is a digit in the company's Options record.
///
/// Errors: those of the record store; the record is then as it was.
class modSyncOptions
{
public:
    static constexpr int Options = 4;

    /// All outlive it.
    modSyncOptions(Tables &tables, const SessionState &session, const clsClock &clock);

    /// False before a first synchronization: the company has no options to choose from yet.
    bool HasOptions() const { return m_tables.Options.IsOpen(); }
    /// Composes the texts and selects the stored option, none for any other value.
    /// \pre HasOptions
    void Load();
    void SelectOption(int option); ///< the click on an option button; into the working copy
    void Accept(); ///< writes the working copy, durable on return

    const QString &Caption(int option) const { return m_captions.at(static_cast<size_t>(option)); }
    /// The selected option's; empty when none is.
    QString Description() const;
    /// What the selected option would erase at the next synchronization; empty when nothing.
    QString Notice() const;
    std::optional<int> Selected() const { return m_selected; }
    std::array<QString, 4> Panels() const;

private:
    void ReadRecord();
    void ComposeTexts(const QString &accountingName);

    Tables &m_tables;
    const SessionState &m_session;
    const clsClock &m_clock;

    std::array<QString, Options> m_captions;
    std::array<QString, Options> m_descriptions;
    std::optional<int> m_selected;
};
