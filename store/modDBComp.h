#pragma once

#include "store/clsTable.h"
#include "store/modDBGOpts.h"
#include "store/Records.h"

#include <QStringList>

/// Reads the Company table: every company that the accounting side has handed over.
class modDBComp : public clsTable<CompanyRecord>
{
public:
    using clsTable::clsTable;

    bool ReadCompany(CompanyRecord &record) const { return Read(record); }

    /// The codes for the company list, in the table's order. An empty `currentCode` becomes the
    /// company last worked in, else the first one; it stays empty when there is no company.
    QStringList FillCompanyList(QString &currentCode, const modDBGOpts &globalOptions);

    /// Moves to the company and reads it into `Record`; the result is its name, empty when the
    /// company is not listed.
    QString LoadCurrentCompany(const QString &currentCode);

    /// The company that start-up and the list fall back on when none is chosen.
    QString ChooseCompany(const modDBGOpts &globalOptions);
};
