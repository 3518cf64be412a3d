#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <mutex>

/// Called, often, with how far the work on a company's table is; `done` of `all`, in units of the
/// caller. The company is empty where the step concerns all of them.
/// Errors: raises ExchangeErrors::Canceled where the work may end. The caller cleans up as after
/// any
///         other error.
using ProgressReport
    = std::function<void(const QString &company, const QString &step, qint64 done, qint64 all)>;

/// What the thread that synchronizes and the thread that has the window know of each other.
class Progress
{
public:
    struct State
    {
        QString Company;
        QString Step;
        qint64 Done = 0;
        qint64 All = 0;
        QStringList NewLines; ///< since the last look
    };

    // For the work. Report is a ProgressReport.
    void Report(const QString &company, const QString &step, qint64 done, qint64 all);
    void AddLine(const QString &line); ///< what has been done, or has gone wrong

    // For the window.
    State Look();
    void Cancel(); ///< the next Report raises

private:
    std::mutex m_mutex; // of all below
    State m_state;
    bool m_isCanceled = false;
};
