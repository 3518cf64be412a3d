#include "sync/EraseNotice.h"

#include "platform/clsRunTimeError.h"
#include "store/DroppedCompany.h"

using namespace Qt::StringLiterals;

QString EraseNotice(const Tables &tables, const SessionState &session, const QString &syncOption)
{
    if (syncOption != "2"_L1 || !tables.Entries.IsOpen()
        || IsDroppedCompany(session.CurrentCompanyName))
        return {};
    try {
        const qint32 count = tables.Entries.GetRecordCount();
        if (count == 0)
            return {};
        return u"The next synchronization will erase "_s
            + (count == 1 ? u"the entry"_s : QString::number(count) + u" entries"_s)
            + u" of this company without uploading "_s + (count == 1 ? u"it."_s : u"them."_s);
    } catch (const clsRunTimeError &) {
        return {}; // the list reports entries that cannot be read
    }
}
