#pragma once

#include <QString>

#include <memory>

/// The file that the first instance of the program holds open, and that a second one therefore
/// cannot create. The operating system lets go of it when the process ends, however it ends, so
/// a file that a crash left behind never blocks a start.
class clsInstanceLock
{
public:
    clsInstanceLock();
    ~clsInstanceLock(); ///< lets go

    /// Creates the file, or empties the one that is there, and holds it from then on.
    /// Errors: clsRunTimeError 70 while another instance holds it, 75 (naming the file) when it
    ///         cannot be created for another reason: also for a link, a pipe or a device, which are
    ///         neither followed nor changed.
    void CreateAndHold(const QString &path);

    /// Lets go; harmless when nothing is held. The file stays where it is.
    void Close();

    /// Removes the file, then lets go. A file that another process has put in its place stays.
    void CloseAndRemove();

    /// The programs that this process starts from now on hold the file too, each until it ends,
    /// whether this process still runs or not. \pre it is held.
    void LetChildrenHold();

    /// Removes the file and releases it, also for the programs that hold it too. On Windows one of
    /// those that still runs keeps it until it ends.
    void ReleaseForAll();

    bool IsHeld() const;

private:
    class Channel; // the platform's open file
    std::unique_ptr<Channel> m_channel;
};
