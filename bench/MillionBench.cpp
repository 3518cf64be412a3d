#include "bench/MillionBench.h"

#include "bench/CompanyMaker.h"
#include "bench/ProgramBench.h"
#include "lookup/frmLookup.h"
#include "store/Tables.h"

#include <QComboBox>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QTimer>

#include <algorithm>
#include <random>

using namespace Qt::StringLiterals;

namespace {

constexpr int Searches = 20000;
constexpr int KeyRounds = 200;
constexpr int ColdSearches = 101;
constexpr size_t CacheLine = 64;
constexpr int NameField = 2;
const std::string Million = "1,000,000";

/// The company's tables, open.
class OpenTables
{
public:
    explicit OpenTables(const QString &folder)
        : Store(folder)
    {
        Store.Main.StoreTheCodes({u"WkLg"_s, u"KVLM"_s, u"DATA"_s});
        Store.Options.Handle = Open(DatabasePrefix::Options);
        Store.Employee.Handle = Open(DatabasePrefix::Employee);
        Store.Customers.Handle = Open(DatabasePrefix::Customers);
        Store.Projects.Handle = Open(DatabasePrefix::Projects);
        Store.Options.LoadOptions();
        Store.Employee.LoadEmployee();
    }

    Tables Store;

private:
    RecordStore::Handle Open(QStringView prefix)
    {
        return Store.Main.OpenTable(Store.Main.CompanyName(MadeCompanyCode, prefix));
    }
};

/// A lookup of the customers, as the windows open it.
class CustomerLookup
{
public:
    explicit CustomerLookup(Tables &tables)
        : Module(tables, m_session, m_entry, m_filter, State, m_messages)
    {
        State.LookupKind = tables.Options.Working.Customer_Term;
    }

    /// The milliseconds until the dialog is painted; the steps run in it.
    double Open(const std::function<void(QWidget &)> &steps)
    {
        double opened = 0;
        QElapsedTimer clock;
        frmLookup form(Module, m_messages, m_keys);
        QTimer::singleShot(0, &form, [&] {
            WaitForPaint(form);
            opened = static_cast<double>(clock.nsecsElapsed()) / 1e6;
            RequireActive(form);
            steps(form);
            form.close();
        });
        clock.start();
        form.ShowModal();
        return opened;
    }

    LookupState State;

private:
    SessionState m_session;
    EntryBeingEdited m_entry;
    FilterState m_filter;
    clsRecordedMessages m_messages;
    clsRecordedKeys m_keys;

public:
    modLookup Module;
};

std::vector<std::string> CustomerNames(Tables &tables)
{
    std::vector<std::string> names;
    modDBCust &customers = tables.Customers;
    for (customers.MoveFirst(); !customers.IsEndOfTable(); customers.MoveNext()) {
        customers.ReadCustomer(customers.Record);
        names.push_back(customers.Record.Customer_Name.toUpper().toStdString());
    }
    return names;
}

/// Names of which some are searched for.
std::vector<QString> SomeOf(const std::vector<std::string> &names)
{
    std::vector<QString> some;
    std::mt19937 engine(7);
    for (int i = 0; i < Searches; ++i)
        some.push_back(QString::fromStdString(names[engine() % names.size()]));
    return some;
}

/// What is looked for, one after the other, while a lookup is open.
const std::vector<QString> TypedTexts = {u"t"_s, u"c05"_s, u"elm d"_s, u"C0999999"_s, u"zz"_s,
    u"brook"_s, u"c0431977"_s, u"moor t"_s, u"kestrel q"_s};

/// Searches in a company of any size.
class SearchedCompany
{
public:
    explicit SearchedCompany(const QString &folder)
        : m_open(folder + u"/program"_s)
        , m_wanted(SomeOf(CustomerNames(m_open.Store)))
        , m_lookup(m_open.Store)
    {
    }

    /// The median of single searches, each as if it were a user's: what came before it has long
    /// left the processor's cache.
    double Find()
    {
        m_open.Store.Customers.Find(NameField, m_wanted.front());
        std::vector<double> times;
        for (int i = 0; i < ColdSearches; ++i) {
            for (size_t at = 0; at < m_other.size(); at += CacheLine)
                ++m_other[at];
            const QString &name = m_wanted[static_cast<size_t>(i)];
            times.push_back(Milliseconds([&] { m_open.Store.Customers.Find(NameField, name); }));
        }
        return Median(times);
    }
    /// Runs the measurement while the lookup stands open.
    void WithLookup(const std::function<void()> &measure)
    {
        m_lookup.Open([&](QWidget &) { measure(); });
    }
    void Keys()
    {
        for (int round = 0; round < KeyRounds; ++round) {
            for (const QString &text : TypedTexts) {
                m_lookup.Module.Screen.SearchText = text;
                m_lookup.Module.FindLookupText();
            }
        }
    }

private:
    OpenTables m_open;
    std::vector<QString> m_wanted;
    std::vector<char> m_other = std::vector<char>(64 << 20); // more than any cache holds
    CustomerLookup m_lookup;
};

} // namespace

void MeasureSearchGrowth(const QString &small, const QString &large, Report &report)
{
    SearchedCompany ten(small);
    SearchedCompany hundred(large);
    const auto add = [&](const std::string &work, const Pair &times) {
        report.Add({"growth: " + work, "10,000 to 100,000 customers", times.Work / times.Limit,
            MostSearchGrowth, "times", Decimal(MostSearchGrowth) + " times"});
    };
    std::vector<double> few;
    std::vector<double> many;
    for (int round = 0; round < PairRounds; ++round) {
        few.push_back(ten.Find());
        many.push_back(hundred.Find());
    }
    add("FindRecord", {Median(few), Median(many)});
    ten.WithLookup([&] {
        hundred.WithLookup([&] {
            ten.Keys();
            hundred.Keys();
            add("key in the lookup", TimePairs([&] { ten.Keys(); }, [&] { hundred.Keys(); }));
        });
    });
}

MillionBench::MillionBench(const QString &folder, Report &report)
    : m_folder(folder + u"/program"_s)
    , m_report(report)
{
}

void MillionBench::MeasureFind() const
{
    OpenTables open(m_folder);
    std::vector<std::string> names = CustomerNames(open.Store);
    const std::vector<QString> wanted = SomeOf(names);
    std::vector<std::string> wantedTexts;
    for (const QString &text : wanted)
        wantedTexts.push_back(text.toStdString());
    std::sort(names.begin(), names.end());
    modDBCust &customers = open.Store.Customers;
    customers.Find(NameField, wanted.front());
    size_t found = 0;
    const Pair times = TimePairs(
        [&] {
            for (const std::string &text : wantedTexts)
                found += static_cast<size_t>(
                    std::lower_bound(names.begin(), names.end(), text) - names.begin());
        },
        [&] {
            for (const QString &text : wanted)
                found += customers.Find(NameField, text) ? 1U : 0U;
        });
    const double perSearch = 1000.0 / Searches;
    m_report.Add({"FindRecord", Million, times.Work * perSearch, 3 * times.Limit * perSearch, "us",
        "3 x " + Decimal(times.Limit * perSearch, 2) + (found == 0 ? "?" : "")});
}

void MillionBench::MeasureKeys(const QString &choice) const
{
    OpenTables open(m_folder);
    CustomerLookup lookup(open.Store);
    lookup.State.LookupByChoice[LookupKinds::Customers] = choice;
    const std::string by = choice.isEmpty() ? "code" : "name";
    std::vector<double> painted;
    std::vector<double> searched;
    lookup.Open([&](QWidget &dialog) {
        auto &box = Control<QLineEdit>(dialog, "txtLookup");
        QWidget &page = *Control<clsGrid>(dialog, "msgLookup").viewport();
        box.setFocus();
        for (const QChar letter : u"c0431977 thistle 7elm d00q1"_s) {
            painted.push_back(Milliseconds(
                [&] { DoAndPaint(page, [&] { QTest::keyClick(&box, letter.toLatin1()); }); }));
        }
        for (const QString &text : TypedTexts) {
            lookup.Module.Screen.SearchText = text;
            searched.push_back(Milliseconds([&] { lookup.Module.FindLookupText(); }));
        }
    });
    m_report.Add({"key in the lookup by " + by + ", painted", Million, Median(painted), 16, "ms",
        "a frame"});
    m_report.Add({"key in the lookup by " + by, Million, Median(searched), 2, "ms", "2 ms"});
}

void MillionBench::MeasureLookup() const
{
    MeasureKeys({});
    MeasureKeys(u"Name"_s);

    std::vector<std::string> names;
    std::vector<double> again;
    std::vector<double> changed;
    std::unique_ptr<OpenTables> open;
    std::unique_ptr<CustomerLookup> lookup;
    const Pair sorted = TimePairs(
        [&] {
            std::vector<std::string> copy = names;
            std::stable_sort(copy.begin(), copy.end());
        },
        [&] {
            changed.push_back(lookup->Open([](QWidget &) {}));
            again.push_back(lookup->Open([](QWidget &) {}));
        },
        [&] {
            // Nothing is sorted by name yet.
            open = std::make_unique<OpenTables>(m_folder);
            lookup = std::make_unique<CustomerLookup>(open->Store);
            lookup->Open([](QWidget &) {});
            lookup->State.LookupByChoice[LookupKinds::Customers] = u"Name"_s;
            if (names.empty())
                names = CustomerNames(open->Store);
        });
    m_report.Add({"lookup opened, order remembered", Million, Median(again), 30, "ms", "30 ms"});
    m_report.Add({"lookup opened, order changed", Million, Median(changed), sorted.Limit, "ms",
        "1 x " + Decimal(sorted.Limit)});
}

void MillionBench::MeasureWindow() const
{
    const ProgramBench program(m_folder);
    clsGrid &grid = program.Grid();
    std::vector<double> selected;
    std::vector<double> left;
    for (int i = 0; i < PairRounds; ++i) {
        const QPoint row(20, grid.rowViewportPosition(1 + i % 5) + 5);
        selected.push_back(Milliseconds([&] {
            DoAndPaint(*grid.viewport(),
                [&] { QTest::mouseClick(grid.viewport(), Qt::LeftButton, Qt::NoModifier, row); });
        }));
        QTest::mouseClick(&Control<QWidget>(program.Window(), "cmdUndo"), Qt::LeftButton);
        program.Type("txtCustomer", u"C000000%1"_s.arg(i % 10));
        left.push_back(Milliseconds([&] {
            QTest::keyClick(program.Window().focusWidget(), Qt::Key_Tab);
            LetEventsRun();
        }));
        program.Type("txtProject", u"P000000%1"_s.arg(i % 10));
        left.push_back(Milliseconds([&] {
            QTest::keyClick(program.Window().focusWidget(), Qt::Key_Tab);
            LetEventsRun();
        }));
        program.Click("cmdUndo");
        LetEventsRun();
    }
    m_report.Add({"row selected", "100,000 of 1,000,000", Median(selected), 5, "ms", "5 ms"});
    m_report.Add(
        {"field left and code checked", "100,000 of 1,000,000", Median(left), 5, "ms", "5 ms"});
}
