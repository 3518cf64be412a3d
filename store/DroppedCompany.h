#pragma once

#include <QString>

/// A company that the accounting system no longer lists stays in the Company table while it has
/// entries on this computer. Its name there ends with these words; users see them beside the code.

constexpr QStringView NoLongerInAccounting = u" (no longer in accounting)";

inline bool IsDroppedCompany(const QString &name)
{
    return name.endsWith(NoLongerInAccounting);
}

/// The name with the words, once.
inline QString DroppedCompanyName(const QString &name)
{
    return IsDroppedCompany(name) ? name : name + NoLongerInAccounting.toString();
}
