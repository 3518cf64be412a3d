#pragma once

#include <QString>

#include <array>

/// The kinds of list that a lookup shows; each keeps its own lookup-by choice.
namespace LookupKinds {
constexpr size_t Customers = 0;
constexpr size_t Projects = 1;
constexpr size_t Activities = 2;
constexpr size_t Multipliers = 3;
constexpr size_t Count = 4;
inline const QString BillingRateMultiplier = QStringLiteral("Billing Rate Multiplier");
} // namespace LookupKinds

/// Request and result of a lookup. The opener fills the request, shows the window modally, reads
/// the result and resets it. Owned once, by the program; the choices live as long as it does.
struct LookupState
{
    // Request.
    QString LookupKind; ///< the company's customer, project or activity term, or the literal
                        ///< BillingRateMultiplier; compared exactly
    QString LookupStartText; ///< searched as it stands as soon as the window is open
    bool LookupStartPending = false; ///< LookupStartText is to be used; the search clears it
    bool LookupFromFilter = false; ///< the filter opened it
    bool LookupPending = false; ///< cleared by Select and by Enter in the grid

    // Result. The project and the multiplier chosen go straight into the entry being edited.
    QString LookupCustomerCode;
    QString LookupActivityCode;
    bool LookupSelected = false;
    bool LookupRecordTaken = false; ///< Select in an empty list takes none
    bool LookupCancelled = false;

    /// The lookup-by choice last applied, by LookupKinds; empty at start.
    std::array<QString, LookupKinds::Count> LookupByChoice;
};
