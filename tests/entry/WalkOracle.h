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
    void EventComes(frmEntryList *window);
    void EventIsOver(frmEntryList *window);
    void AtRest(frmEntryList &window); ///< no pop-up, menu or dialog is open
    void MessageOpens(frmEntryList *window, const QString &text);
    void MessageAnswered(const QString &text, MessageAnswer answer);
    void FilterLeft(const QStringList &codes); ///< customer, project and activity in force
    void CommandPressed(const QString &name); ///< of one that drops or takes edits
    /// A record was clicked in a lookup that has closed. A lookup that is canceled leaves it in the
    /// entry, and the box shows the code from before.
    void CodeClicked(const QString &box, const QString &code);
    void StoreFailed() { m_storeFailed = true; }
    /// The step uses a command with messages of its own.
    void MayAskMore() { m_mayAskMore = true; }
    void StepBegins();
    void ProgramStarts();

    void Find(const QString &finding);

    bool IsLocked() const { return m_isLocked; } ///< until the program starts again
    bool MessageWasShown() const { return !m_messages.isEmpty(); }
    bool ErrorWasShown() const { return m_errorShown; }
    /// The field that a user is in, also while the menu bar has the keys.
    const QString &EnteredField() const { return m_focusBox; }
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
    ShownEntry Look(frmEntryList &window) const;
    void CheckEdits(const ShownEntry &now);
    void FollowFocus(const ShownEntry &now);
    void FollowDate(const ShownEntry &now);
    void FollowClickedCodes(const ShownEntry &now);
    void CheckHighlight(const ShownEntry &now);
    void CheckLoaded(const SampleCompany &company, const ShownEntry &now);
    void CheckList(frmEntryList &window, const SampleCompany &company);
    void CheckBoxes(const SampleCompany &company, const ShownEntry &now);
    bool IsStoredAsShown(const ShownEntry &shown);
    void CheckAlive(frmEntryList &window);
    void CheckLocked(frmEntryList &window); ///< without a company
    void Same(const char *what, const QString &shown, const QString &stored);
    void SameCode(const QString &box, const QString &shown, const QString &stored);
    bool IsCode(const SampleCompany &company, const QString &box, const QString &code) const;

    std::vector<SampleCompany> m_companies;
    QString m_folder;
    const char *m_disk;
    std::map<QString, std::unique_ptr<EntriesFile>> m_files;
    std::map<QString, StoredTable> m_tables;

    ShownEntry m_before; // the event, or the question whose answer saves
    QDate m_date; // of the entry
    bool m_dateIsKnown = true; // no notice has covered the one about the date since
    int m_loadedId = -1; // hidden number of the row whose entry is in the editor
    QStringList m_filter = {QString(), QString(), QString()};
    QStringList m_messages; // of this step
    bool m_errorShown = false;
    bool m_deletionConfirmed = false;
    bool m_editsMayGo = false; // a command or an answer of this step drops them
    bool m_storeFailed = false;
    bool m_mayAskMore = false;
    bool m_isLocked = false;
    bool m_saved = false; // the last event has written a table
    QString m_focusBox; // the one that has the focus, or had it before the menu bar
    bool m_focusEdited = false; // its code, since it has got the focus
    std::map<QString, QString> m_clickedCodes; // by box: not in it, but perhaps in the entry
};
