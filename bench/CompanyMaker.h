#pragma once

#include <QString>

/// How large a made company is, and which of the many companies of that size it is.
struct CompanySize
{
    int Customers = 200;
    int Projects = 500;
    int Activities = 50;
    int Entries = 1000;
    int Days = 250; ///< on which the entries lie
    unsigned Variant = 1; ///< the same sizes and variant always make the same company
};

/// The code of the one company that is made.
inline const QString MadeCompanyCode = QStringLiteral("BIG");

/// Makes an accounting installation and a program folder that was synchronised with it.
///
/// Files:  <folder>/accounting/... with the CSV files of the reference data, <folder>/program/...
///         with mas90.ini and the databases that `client` has made of them. The entries, which an
///         installation does not hand out, are written straight into their database.
/// Errors: clsRunTimeError; std::runtime_error when the client fails. A folder that exists is
///         refused.
void MakeCompany(const QString &folder, const CompanySize &size, const QString &client);

/// Runs the client of the installation on the program folder, as a synchronisation does.
/// Errors: std::runtime_error when it fails.
void Synchronise(const QString &root, const QString &program);
