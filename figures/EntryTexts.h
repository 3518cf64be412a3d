#pragma once

#include "store/Tables.h"

#include <memory>
#include <unordered_map>
#include <vector>

/// The texts that the entry list shows for codes, found in the reference tables when they are
/// first asked for and remembered from then on. No cursor is moved and no record in memory read.
///
/// Shape:  codes come as the numbers of their texts, see EntryNumbers. Each kind's texts stand once
///         in a vector that only grows; a code has a place there.
/// Errors: those of the record store. While a table is closed, its texts are empty.
class EntryTexts
{
public:
    static constexpr quint32 PastTheLast = 0xfffffffe;

    explicit EntryTexts(Tables &tables); // open now; outlives it

    /// False when what was remembered may no longer be what the tables say.
    bool IsCurrent() const { return m_basis == Basis(m_tables); }

    /// The place of the name; PastTheLast when the search ends past the last record.
    quint32 CustomerAt(qint64 customer);
    quint32 ProjectAt(qint64 customer, qint64 project);
    quint32 ActivityAt(qint64 activity);
    /// Whether the activity is known, and if so, an expense.
    bool IsKnown(qint64 activity);
    bool IsExpense(qint64 activity);

    const std::vector<QString> &Customers() const { return m_customerTexts; }
    const std::vector<QString> &Projects() const { return m_projectTexts; }
    const std::vector<QString> &Activities() const { return m_activityTexts; }

    QString CustomerCode(qint64 customer) const { return m_basis.CustomerCodes->Text(customer); }
    QString ActivityCode(qint64 activity) const { return m_basis.ActivityCodes->Text(activity); }

private:
    /// What the remembered texts rest on.
    struct Basis
    {
        explicit Basis(const Tables &tables);

        std::shared_ptr<const TextNumbers> CustomerCodes;
        std::shared_ptr<const TextNumbers> ProjectCodes;
        std::shared_ptr<const TextNumbers> ActivityCodes;
        quint64 CustomersVersion = 0;
        quint64 ProjectsVersion = 0;
        quint64 ActivitiesVersion = 0;

        friend bool operator==(const Basis &, const Basis &) = default;
    };
    struct Project
    {
        qint64 Customer = -1; // of whom Text is known
        quint32 Text = 0;
    };
    struct Activity
    {
        quint32 Text = 0xffffffff;
        bool IsExpense = false;
    };

    quint32 FindCustomer(qint64 customer);
    quint32 FindProject(qint64 customer, qint64 project);
    Activity &Found(qint64 activity);

    Tables &m_tables;
    Basis m_basis;
    std::vector<quint32> m_customers; // by the code's number: places
    std::vector<Project> m_projects; // by the code's number, for the customer it first came with
    std::unordered_map<quint64, quint32> m_otherProjects; // by both numbers
    std::vector<Activity> m_activities; // by the code's number
    std::vector<QString> m_customerTexts;
    std::vector<QString> m_projectTexts;
    std::vector<QString> m_activityTexts;
};
