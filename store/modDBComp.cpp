#include "store/modDBComp.h"

QStringList modDBComp::FillCompanyList(QString &currentCode, const modDBGOpts &globalOptions)
{
    QStringList codes;
    for (MoveFirst(); !IsEndOfTable(); MoveNext()) {
        ReadCompany(Record);
        codes.append(Record.Company_Code);
    }
    if (currentCode.isEmpty())
        currentCode = ChooseCompany(globalOptions);
    return codes;
}

QString modDBComp::LoadCurrentCompany(const QString &currentCode)
{
    if (!Find(0, currentCode))
        return {};
    ReadCompany(Record);
    return Record.Company_Name;
}

QString modDBComp::ChooseCompany(const modDBGOpts &globalOptions)
{
    // A company that the accounting side no longer hands over must not lock anybody out.
    const QString last = globalOptions.TakeLastCompany();
    if (!last.isEmpty() && Find(0, last))
        return last;
    MoveFirst();
    CompanyRecord first;
    return ReadCompany(first) ? first.Company_Code : QString();
}
