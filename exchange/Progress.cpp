#include "exchange/Progress.h"

#include "exchange/ExchangeErrors.h"

#include <utility>

using namespace Qt::StringLiterals;

void Progress::Report(const QString &company, const QString &step, qint64 done, qint64 all)
{
    const std::lock_guard lock(m_mutex);
    if (m_isCanceled)
        RaiseExchangeError(ExchangeErrors::Canceled, CanceledText());
    m_state.Company = company;
    m_state.Step = step;
    m_state.Done = done;
    m_state.All = all;
}

void Progress::AddLine(const QString &line)
{
    const std::lock_guard lock(m_mutex);
    m_state.NewLines.append(line);
}

Progress::State Progress::Look()
{
    const std::lock_guard lock(m_mutex);
    State state = m_state;
    m_state.NewLines.clear();
    return state;
}

void Progress::Cancel()
{
    const std::lock_guard lock(m_mutex);
    m_isCanceled = true;
}
