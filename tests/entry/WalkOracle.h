#pragma once

#include "platform/clsMessageBox.h"
#include "tests/entry/ShownEntry.h"
#include "tests/entry/StoredTable.h"
#include "tests/support/SampleCompany.h"

#include <QSet>
#include <QStringList>

#include <map>
#include <optional>
#include <vector>

/// Compares what the window shows with what is stored, after every event of a walk. It knows the
/// files, the records they were made from and the screen, and nothing of the program's state.
class WalkOracle
{
public:
    /// `disk` is SQLite's name of the disk to read with.
    WalkOracle(
        const QString &folder, const std::vector<SampleCompany> &companies, const char *disk);

    // What a walk reports.
    void EventComes(frmEntryList *window, bool pressesPicker);
    void EventIsOver(frmEntryList *window);
    void AtRest(frmEntryList &window); ///< no pop-up, menu or dialog is open
    void MessageOpens(frmEntryList *window, const QString &text);
    void MessageAnswered(const QString &text, MessageAnswer answer);
    void FilterLeft(const QStringList &codes); ///< customer, project and activity in force
    void CommandPressed(const QString &name); ///< of one that drops or takes edits
    void StoreFailed() { m_storeFailed = true; }
    /// The step uses a command with messages of its own.
    void MayAskMore() { m_mayAskMore = true; }
    void StepBegins();
    void ProgramStarts();

    void Find(const QString &finding);

    bool MessageWasShown() const { return !m_messages.isEmpty(); }
    bool ErrorWasShown() const { return m_errorShown; }
    const ShownEntry &Before() const { return m_before; }
    const SampleCompany *CompanyOf(const QString &code) const;

    QStringList Findings;
    int Saves = 0; ///< that were compared with what was shown
    int Deletions = 0;
    int Loads = 0; ///< entries compared with their stored record

private:
    void CheckTables();
    void CheckChange(
        const SampleCompany &company, const StoredTable &before, const StoredTable &now);
    void CheckSaved(
        const SampleCompany &company, const StoredEntry *before, const StoredEntry &now);
    void CheckRules(
        const SampleCompany &company, const StoredEntry *before, const StoredEntry &now);
    void CheckEdits(const ShownEntry &now);
    void FollowDate(const ShownEntry &now);
    void CheckHighlight(const ShownEntry &now);
    void CheckLoaded(const SampleCompany &company, const ShownEntry &now);
    void CheckList(frmEntryList &window, const SampleCompany &company);
    void CheckBoxes(const SampleCompany &company, const ShownEntry &now);
    bool IsStoredAsShown(const ShownEntry &shown);
    void CheckAlive(frmEntryList &window);
    void Same(const char *what, const QString &shown, const QString &stored);
    bool IsCode(const SampleCompany &company, const QString &box, const QString &code) const;

    std::vector<SampleCompany> m_companies;
    QString m_folder;
    const char *m_disk;
    std::map<QString, std::unique_ptr<EntriesFile>> m_files;
    std::map<QString, StoredTable> m_tables;

    ShownEntry m_before; // the event, or the question whose answer saves
    bool m_pressesPicker = false; // the event is a mouse button on the date picker
    QDate m_date; // of the entry
    bool m_dateHeldBack = false; // perhaps: the picker was pressed, so that its date may not count
    int m_loadedId = -1; // hidden number of the row whose entry is in the editor
    QStringList m_filter = {QString(), QString(), QString()};
    bool m_filterIsKnown = true; // its dialog was left with codes that exist
    QStringList m_messages; // of this step
    bool m_errorShown = false;
    bool m_deletionConfirmed = false;
    bool m_editsMayGo = false; // a command or an answer of this step drops them
    bool m_storeFailed = false;
    bool m_mayAskMore = false;
    bool m_saved = false; // the last event has written a table
    QString m_focusBox;
    QString m_focusCode; // the code that the box with the focus held when it got it
};
