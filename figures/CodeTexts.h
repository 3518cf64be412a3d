#pragma once

#include "store/Records.h"

#include <QString>

/// What is said of codes, in the company's own words. Texts to show as they are.

/// A term as it stands inside of a sentence: "Customer" becomes "customer", an abbreviation stays.
QString InSentence(const QString &term);

/// The code as it is searched for and stored: typed spaces after it are no part of it.
QString WithoutTrailingSpaces(QString code);

/// "No customer ABD." with the company's word for a customer.
QString NoSuchCode(const QString &term, const QString &code);
/// Likewise for a project, which is one of a customer.
QString NoSuchProject(const OptionsRecord &options, const QString &code, const QString &customer);
