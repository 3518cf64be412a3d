#include "sync/DialogStatus.h"

using namespace Qt::StringLiterals;

std::array<QString, 4> DialogStatus(
    const Tables &tables, const SessionState &session, const clsClock &clock)
{
    const QString today = clock.Today().toString(u"MM/dd/yyyy"_s);
    if (session.NotSynchronised)
        return {QString(), QString(), QString(), today};
    return {session.CurrentCompanyName, tables.Employee.Working.Employee_Number,
        session.CurrentCompanyCode, today};
}
