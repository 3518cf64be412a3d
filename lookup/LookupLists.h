#pragma once

#include "platform/clsRecordSet.h"
#include "session/LookupState.h"
#include "store/Tables.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

/// The tables, columns, orders and searches of the lookup's four lists: customers, the projects of
/// one customer, activities and multipliers.
///
/// Shape:  every call is about the list that was chosen last; of an unknown kind it has no columns
///         and no records. A choice is a column to search by, given by its place among Choices();
///         two of them have the same text when a company's term is "Name" or "Description".
/// Units:  an index is a record's place in the table's current order, a position is counted from
///         the list's first record. They differ for projects only.
/// Cursor: the calls move the cursors of the tables.
/// Errors: those of the record store.
class LookupLists
{
public:
    enum class Occasion
    {
        Opening,
        Change ///< the user has chosen another column
    };

    explicit LookupLists(Tables &tables); // outlives it

    /// `kind` is a term of the company or LookupKinds::BillingRateMultiplier, compared exactly.
    void ChooseList(const QString &kind);
    /// The customer whose projects are meant from now on.
    void SetCustomer(const QString &customer) { m_customer = customer; }
    /// The customer's first project has moved, or is not known yet.
    void ForgetFirstProject() { m_firstProject.reset(); }

    std::optional<size_t> Kind() const { return m_kind; } ///< one of LookupKinds
    QStringList Choices() const; ///< in order, the code first
    size_t PlaceOfChoice(const QString &text) const; ///< 0, the code, for any other text
    void Sort(size_t choice, Occasion occasion);

    std::optional<qint32> Count(); ///< nothing for an unknown kind
    /// Up to `pageRows` + 1 records from that position on, as texts.
    std::shared_ptr<const clsRecordSet> BuildPage(qint32 position, qint32 pageRows);
    /// The position of the first record whose column, the one that the list was sorted by last, is
    /// equal to the text or sorts after it; the count when there is none, but the last project's
    /// position among projects.
    qint32 Search(const QString &text);
    QString CodeAt(qint32 index);

private:
    struct Choice
    {
        QString Text;
        const char *OrderOnOpening;
        const char *OrderOnChange;
        qint32 Field; // that a search compares
    };

    std::vector<Choice> ChoicesOfKind() const;
    Choice SortedBy() const;
    QStringList Columns() const;
    RecordStore::Handle Table() const;
    QStringList ReadRow();
    bool IsOtherCustomersProject();
    void GoTo(qint32 position);
    qint32 CountProjects();
    QString UpperField(qint32 field);
    qint32 SearchText(qint32 field, const QString &key);
    qint32 SearchFactor(qint32 field, const QString &text);
    qint32 SearchProjects(qint32 field, const QString &text);

    Tables &m_tables;
    RecordStore &m_store;
    std::optional<size_t> m_kind;
    size_t m_sortedBy = 0;
    QString m_customer;
    std::optional<qint32> m_firstProject; // the index of the customer's first project
};
