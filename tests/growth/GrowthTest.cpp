// A company that has grown must not make the program slow: how many calls each thing that people do
// forty times a day takes among ten times as many records. See docs/performance.md.

#include "app/clsProgram.h"
#include "entry/frmEntryList.h"
#include "platform/clsGrid.h"
#include "platform/clsSendKeys.h"
#include "store/PadKey.h"
#include "tests/support/Modal.h"
#include "tests/support/Recorded.h"
#include "tests/support/SampleCompany.h"
#include "tests/support/Windows.h"

#include <gtest/gtest.h>

#include <QHeaderView>
#include <QLineEdit>
#include <QTimer>

namespace {

/// Calls on this thread; those that read ahead are not waited for by anybody.
thread_local quint64 theCalls = 0;

} // namespace

// What the compiler calls at the beginning and the end of every function of the rooms.
extern "C" {
void __cyg_profile_func_enter(void *, void *);
void __cyg_profile_func_exit(void *, void *);
void __cyg_profile_func_enter(void *, void *)
{
    ++theCalls;
}
void __cyg_profile_func_exit(void *, void *) { }
}

using namespace Qt::StringLiterals;

namespace {

constexpr int Fewer = 1000;
constexpr int More = 10 * Fewer;
/// Ten times as many records, and a little for what grows with their logarithm.
constexpr double MostLinear = 12;
constexpr double MostSearch = 1.5;

QString CodeOf(QChar letter, int number)
{
    return letter + QString::number(number).rightJustified(5, u'0');
}

SampleCompany CompanyOf(int customers, int entries)
{
    SampleCompany company;
    company.Customers.clear();
    company.Projects.clear();
    for (int i = 0; i < customers; ++i) {
        company.Customers.push_back(
            SampleCustomer(CodeOf(u'C', i), u"Customer %1"_s.arg(i * 7919 % customers)));
        company.Projects.push_back(SampleProject(CodeOf(u'C', i), u"P"_s, u"Project %1"_s.arg(i)));
    }
    const QString activity = company.Activities.front().Activity_Number;
    std::vector<EntryRecord> records;
    for (int i = 0; i < entries; ++i)
        records.push_back(SampleEntry(CodeOf(u'C', i * 31 % customers), u"P"_s, activity,
            QDate(2026, 1, 1).addDays(i % 250), Currency::FromScaled(1000 + i % 77)));
    company.Entries = records;
    return company;
}

/// The program over a company of that size.
class GrownProgram
{
public:
    GrownProgram(int customers, int entries)
        : LastCustomer(CodeOf(u'C', customers - 1))
    {
        BuildSampleCompanies(m_folder.path(), {CompanyOf(customers, entries)});
        m_program = std::make_unique<clsProgram>(m_folder.path(),
            ProgramServices{m_messages, m_keys, m_process, m_clock, m_settings, m_browser});
        m_program->StartUp();
        if (m_program->MainWindow() == nullptr || !ShowActive(Window()))
            throw std::runtime_error("the main window does not come up");
        LetEventsRun();
    }

    const QString LastCustomer; ///< a search from the front would pass all the others

    frmEntryList &Window() const { return *m_program->MainWindow(); }
    clsGrid &Grid() const { return Control<clsGrid>(Window(), "msgEntryList"); }
    void Click(const char *button) const
    {
        QTest::mouseClick(&Control<QWidget>(Window(), button), Qt::LeftButton);
    }
    void Type(const char *name, const QString &text) const
    {
        auto &box = Control<QLineEdit>(Window(), name);
        box.setFocus(Qt::TabFocusReason);
        box.selectAll();
        QTest::keyClicks(&box, text);
        LetEventsRun();
    }

    /// The calls of the action's second run: what the first one finds out may be kept.
    static quint64 CallsOf(const std::function<void()> &action)
    {
        quint64 calls = 0;
        for (int run = 0; run < 2; ++run) {
            const quint64 before = theCalls;
            action();
            LetEventsRun();
            calls = theCalls - before;
        }
        return calls;
    }

private:
    QTemporaryDir m_folder;
    clsRecordedMessages m_messages;
    clsProgramKeys m_keys;
    clsRecordedProcess m_process;
    clsFixedClock m_clock;
    clsRecordedSettings m_settings;
    clsRecordedBrowser m_browser;
    std::unique_ptr<clsProgram> m_program;
};

using Work = std::function<quint64(const GrownProgram &)>;

/// How many times the calls of the work among ten times as many entries are.
double GrowthWithEntries(const Work &work)
{
    const GrownProgram few(200, Fewer);
    const auto fewer = static_cast<double>(work(few));
    const GrownProgram many(200, More);
    return static_cast<double>(work(many)) / fewer;
}

double GrowthWithCustomers(const Work &work)
{
    const GrownProgram few(Fewer, 20);
    const auto fewer = static_cast<double>(work(few));
    const GrownProgram many(More, 20);
    return static_cast<double>(work(many)) / fewer;
}

} // namespace

TEST(Growth, TheListIsRefreshedInAsManyStepsAsThereAreEntries)
{
    const double growth = GrowthWithEntries([](const GrownProgram &program) {
        return GrownProgram::CallsOf([&] { program.Window().LoadEntryList(); });
    });
    EXPECT_LT(growth, MostLinear);
    EXPECT_GT(growth, 2) << "nothing is counted";
}

TEST(Growth, AnEntryIsSavedInAsManyStepsAsThereAreEntries)
{
    EXPECT_LT(GrowthWithEntries([](const GrownProgram &program) {
        return GrownProgram::CallsOf([&] {
            program.Type("txtCustomer", u"C00007"_s);
            program.Type("txtProject", u"P"_s);
            program.Type("txtActivity", SampleCompany().Activities.front().Activity_Number);
            program.Type("txtHours", u"1.5"_s);
            const int before = program.Grid().Rows();
            program.Click("cmdOK");
            EXPECT_EQ(program.Grid().Rows(), before + 1);
        });
    }),
        MostLinear);
}

TEST(Growth, TheSummaryTakesAsManyStepsAsThereAreEntries)
{
    EXPECT_LT(GrowthWithEntries([](const GrownProgram &program) {
        return GrownProgram::CallsOf([&] {
            WithModal(
                [&] { program.Click("cmdHrsSumm"); }, [](QWidget &dialog) { dialog.close(); });
        });
    }),
        MostLinear);
}

TEST(Growth, AFilterTakesAsManyStepsAsThereAreEntries)
{
    EXPECT_LT(GrowthWithEntries([](const GrownProgram &program) {
        return GrownProgram::CallsOf([&] {
            WithModal([&] { program.Click("cmdTransFilter"); },
                [](QWidget &dialog) {
                    auto &box = Control<QLineEdit>(dialog, "txtCustomer");
                    box.setFocus(Qt::TabFocusReason);
                    box.selectAll();
                    QTest::keyClicks(&box, u"C00007"_s);
                    QTest::mouseClick(&Control<QWidget>(dialog, "cmdOK"), Qt::LeftButton);
                });
        });
    }),
        MostLinear);
}

TEST(Growth, AnyColumnIsSortedInLittleMoreThanAsManyStepsAsThereAreEntries)
{
    for (int column = 2; column < 10; ++column) {
        const double growth = GrowthWithEntries([&](const GrownProgram &program) {
            const QHeaderView &header = *program.Grid().horizontalHeader();
            const QPoint at(header.sectionViewportPosition(column) + 5, header.height() / 2);
            return GrownProgram::CallsOf([&] {
                QTest::mouseMove(header.viewport(), at);
                QTest::mouseClick(header.viewport(), Qt::LeftButton, Qt::NoModifier, at);
            });
        });
        EXPECT_LT(growth, MostLinear) << "column " << column;
    }
}

TEST(Growth, ARowIsSelectedInTheSameStepsHoweverManyThereAre)
{
    EXPECT_LT(GrowthWithEntries([](const GrownProgram &program) {
        const clsGrid &grid = program.Grid();
        int row = 0;
        return GrownProgram::CallsOf([&] {
            const QPoint at(20, grid.rowViewportPosition(++row) + 5);
            QTest::mouseClick(grid.viewport(), Qt::LeftButton, Qt::NoModifier, at);
        });
    }),
        MostSearch);
}

TEST(Growth, ACodeIsCheckedInTheSameStepsHoweverManyThereAre)
{
    EXPECT_LT(GrowthWithCustomers([](const GrownProgram &program) {
        return GrownProgram::CallsOf([&] {
            program.Type("txtCustomer", program.LastCustomer);
            QTest::keyClick(program.Window().focusWidget(), Qt::Key_Tab);
            EXPECT_EQ(
                Control<QLineEdit>(program.Window(), "txtCustomer").text(), program.LastCustomer);
        });
    }),
        MostSearch);
}

TEST(Growth, AKeyInTheLookupTakesTheSameStepsHoweverManyThereAre)
{
    EXPECT_LT(GrowthWithCustomers([](const GrownProgram &program) {
        quint64 calls = 0;
        WithModal([&] { program.Click("cmdCustomer"); },
            [&](QWidget &dialog) {
                auto &box = Control<QLineEdit>(dialog, "txtLookup");
                box.setFocus();
                calls = GrownProgram::CallsOf([&] {
                    box.setText(program.LastCustomer.chopped(1));
                    QTest::keyClicks(&box, program.LastCustomer.last(1));
                });
                dialog.close();
            });
        return calls;
    }),
        MostSearch);
}
