#pragma once

#include "store/Records.h"

#include <QString>
#include <QStringList>

/// The texts of the billing status and billing option codes.

QStringList BillingStatusTexts(); ///< in code order, "1" first
QString BillingStatusText(const QString &code); ///< empty for any other code
/// "2" for "No Charge", "1" for "Billable", "3" for every other text.
QString BillingStatusCode(const QString &text);

/// In code order, "1" first; the levels carry the company's terms.
QStringList BillingOptionTexts(const OptionsRecord &options);
QString BillingOptionText(const QString &code, const OptionsRecord &options); ///< else empty
QString BillingOptionCode(const QString &text, const OptionsRecord &options); ///< else empty
