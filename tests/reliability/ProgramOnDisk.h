#pragma once

#include "app/clsProgram.h"
#include "tests/support/Recorded.h"
#include "tests/support/SampleCompany.h"

#include <QString>
#include <QStringList>

#include <array>
#include <functional>
#include <memory>
#include <vector>

/// The program over one folder with two entries in it, and what a user does there; the disk may
/// fail at any call of it.
class ProgramOnDisk
{
public:
    /// Makes the folder's files, with an accounting installation beside them.
    static void MakeFolder(const QString &folder);
    static void CopyFolder(const QString &from, const QString &to);
    static std::vector<EntryRecord> MadeEntries();

    /// `process` outlives it; without one nothing is started.
    explicit ProgramOnDisk(const QString &folder, clsProcess *process = nullptr);

    void StartUp(); ///< and waits until the window takes the keys, where there is one
    frmEntryList *Window() const { return m_program->MainWindow(); }

    void ClickRow(int row);
    void TypeInto(const char *box, const QString &text);
    void Click(const char *button);
    QString Text(const char *box) const;
    /// Does what opens a dialog, and closes the dialog when it waits for its user.
    void CloseDialogOf(const std::function<void()> &action);
    void ChooseSyncOption(int option);

    /// Texts of the boxes that told of a failure; questions are none.
    QStringList Failures() const;

    clsRecordedMessages Messages;
    clsRecordedProcess Process;
    bool HasEnded = false;
    std::function<void(QWidget &)> LookAtDialog; ///< before CloseDialogOf closes it
    QString DialogRows; ///< of the dialog that was closed last, its grid's texts

private:
    QString m_folder;
    clsProgramKeys m_keys;
    clsFixedClock m_clock;
    clsRecordedSettings m_settings;
    clsRecordedBrowser m_browser;
    std::unique_ptr<clsProgram> m_program;
};

/// One of the things that write.
struct Operation
{
    const char *Name;
    void (*Prepare)(ProgramOnDisk &); ///< up to the moment before it begins; null: not started yet
    void (*Run)(ProgramOnDisk &);
};

extern const std::array<Operation, 11> Operations;
const Operation &OperationCalled(const QByteArray &name);
/// Takes out of a copied folder what the operation is to create.
void PrepareFolder(const Operation &operation, const QString &folder);

/// What is on the disk, read by a store of its own.
std::vector<EntryRecord> StoredEntries(const QString &folder); ///< none without the database
QString StoredSyncOption(const QString &folder);
GlobalOptionsRecord StoredGlobalOptions(const QString &folder);

bool operator==(const EntryRecord &a, const EntryRecord &b);
void PrintTo(const EntryRecord &record, std::ostream *out);
