#pragma once

#include <QString>
#include <QStringList>

/// The arguments of a command line text: separated by blanks, with double quotes around what
/// contains blanks. The quotes are taken off; two of them in a row inside a quoted text stand for
/// one. Nothing else has a meaning.
QStringList SplitCommandLine(const QString &text);

/// Starts programs and waits for them. Tests hand in one that only writes down what was started.
class clsProcess
{
public:
    virtual ~clsProcess() = default;

    /// Starts the program file with the arguments of a command line text, in `folder`, and lets
    /// window events run until the process has ended, whatever its exit code and however long it
    /// takes. No shell is involved, and waiting takes no processor time.
    /// False when the program could not be started.
    virtual bool RunAndWait(const QString &program, const QString &arguments, const QString &folder)
        = 0;
};

class clsSystemProcess : public clsProcess
{
public:
    bool RunAndWait(
        const QString &program, const QString &arguments, const QString &folder) override;
};
