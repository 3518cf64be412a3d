#include "sync/modSyncOptions.h"

#include "sync/DialogStatus.h"
#include "sync/EraseNotice.h"

using namespace Qt::StringLiterals;

modSyncOptions::modSyncOptions(Tables &tables, const SessionState &session, const clsClock &clock)
    : m_tables(tables)
    , m_session(session)
    , m_clock(clock)
{
}

std::array<QString, 4> modSyncOptions::Panels() const
{
    return DialogStatus(m_tables, m_session, m_clock);
}

void modSyncOptions::ReadRecord()
{
    // Before a synchronization has brought all databases, the record in memory is empty or of
    // another company, and must not be written over the one that is there.
    if (m_session.NotSynchronised)
        m_tables.Options.LoadOptions();
}

void modSyncOptions::ComposeTexts(const QString &accountingName)
{
    const QString computer = u"Computer"_s;
    const QString worklog = u"Worklog"_s;
    const QString start = u"This sync option will "_s;
    m_captions = {u"Full Sync"_s, computer + u" updates "_s + accountingName,
        accountingName + u" updates "_s + computer, u"No Sync"_s};
    // The missing word after "upload" is kept.
    m_descriptions = {start + u"upload "_s + worklog + u" on the "_s + computer
            + u" and download new information from "_s + accountingName + u'.',
        start + u"upload "_s + worklog + u" entries made on the "_s + computer + u'.',
        u"W A R N I N G !!!\r\n"_s + start + u"erase all "_s + worklog + u" data on the "_s
            + computer + u'.',
        start + u"not synchronize "_s + worklog + u" data."_s};
}

void modSyncOptions::Load()
{
    ReadRecord();
    modDBOpts &options = m_tables.Options;
    ComposeTexts(options.Working.Accounting_Name);
    m_selected.reset();
    // What an earlier dialog, canceled, left in the working copy is not what is stored.
    options.Working.Sync_Option = options.Record.Sync_Option;
    for (int option = 0; option < Options; ++option) {
        if (options.Record.Sync_Option == QString::number(option))
            SelectOption(option);
    }
}

void modSyncOptions::SelectOption(int option)
{
    m_selected = option;
    m_tables.Options.Working.Sync_Option = QString::number(option);
}

QString modSyncOptions::Description() const
{
    return m_selected ? m_descriptions.at(static_cast<size_t>(*m_selected)) : QString();
}

QString modSyncOptions::Notice() const
{
    return m_selected ? EraseNotice(m_tables, m_session, QString::number(*m_selected)) : QString();
}

void modSyncOptions::Accept()
{
    modDBOpts &options = m_tables.Options;
    options.UpdateOptions(options.Working);
    options.Record = options.Working;
}
