#include "bench/CompanyBench.h"

#include "bench/CompanyMaker.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QLineEdit>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Below that a click costs its painting, and the sort is no question.
constexpr int LeastSortedRows = 100000;

/// What a dialog with a table costs the window system and the toolkit, whatever stands in it.
void ShowBareDialog(QWidget &parent)
{
    QDialog dialog(&parent);
    QTableView table(&dialog);
    QVBoxLayout layout(&dialog);
    layout.addWidget(&table);
    dialog.exec();
}

} // namespace

CompanyBench::CompanyBench(const QString &folder, const std::string &size, Report &report)
    : m_folder(folder + u"/program"_s)
    , m_size(size)
    , m_report(report)
    , m_limit(Limits::ReadCompany(m_folder.toStdString(), MadeCompanyCode.toStdString()))
    , m_program(m_folder)
{
    std::vector<double> times;
    for (int i = 0; i < PairRounds; ++i)
        times.push_back(Milliseconds([&] {
            DoAndPaint(*m_program.Grid().viewport(), [&] {
                m_program.Window().update();
                m_program.Grid().viewport()->update();
            });
        }));
    m_paint = Median(times);
}

void CompanyBench::MeasureAll()
{
    MeasureRefresh();
    MeasureSave();
    MeasureSummary();
    MeasureFilter();
    MeasureSort();
    MeasureSelection();
}

void CompanyBench::Add(
    const std::string &work, double measured, double allowed, const std::string &goal)
{
    Times[work] = measured;
    m_report.Add({work, m_size, measured, allowed, "ms", goal});
}

void CompanyBench::MeasureRefresh()
{
    const Pair times = TimePairs(RefreshLimit(), [&] {
        DoAndPaint(*m_program.Grid().viewport(), [&] { m_program.Window().LoadEntryList(); });
    });
    Add("list refreshed", times.Work, 1.25 * times.Limit + m_paint,
        "1.25 x " + Decimal(times.Limit) + " + " + Decimal(m_paint));
}

void CompanyBench::MeasureSave()
{
    Limits::Inserts inserts((m_folder + u"/limit.db"_s).toStdString());
    std::vector<double> commits;
    const Pair times = TimePairs(
        RefreshLimit(),
        [&] { DoAndPaint(*m_program.Grid().viewport(), [&] { m_program.Click("cmdOK"); }); },
        [&] {
            commits.push_back(Milliseconds([&] { inserts.One(); }));
            m_program.Type("txtCustomer", u"C0000007"_s);
            m_program.Type("txtProject", u"P0000007"_s);
            m_program.Type("txtActivity", u"A0001"_s);
            m_program.Type("txtHours", u"1.5"_s);
        });
    const double limit = times.Limit + Median(commits);
    Add("entry saved", times.Work, 1.25 * limit + m_paint,
        "1.25 x (" + Decimal(times.Limit) + " + " + Decimal(Median(commits)) + ") + "
            + Decimal(m_paint));
}

void CompanyBench::MeasureSummary()
{
    std::vector<double> shown;
    std::vector<double> painted;
    std::vector<double> bare;
    std::vector<double> paint;
    const Pair times = TimePairs(
        [&] { Limits::Summarise(m_folder.toStdString(), MadeCompanyCode.toStdString()); },
        [&] {
            const auto opening = m_program.OpenDialog([&] { m_program.Click("cmdHrsSumm"); });
            shown.push_back(opening.Shown);
            painted.push_back(opening.Painted);
            paint.push_back(opening.Paint);
            bare.push_back(
                m_program.OpenDialog([&] { ShowBareDialog(m_program.Window()); }).Painted);
        });
    Add("summary opened", Median(shown), 1.5 * times.Limit, "1.5 x " + Decimal(times.Limit));
    const double paints = Median(paint) + m_paint;
    Add("summary opened and painted", Median(painted), 1.5 * times.Limit + Median(bare) + paints,
        "1.5 x " + Decimal(times.Limit) + " + " + Decimal(Median(bare)) + " + " + Decimal(paints));
}

void CompanyBench::MeasureFilter()
{
    std::vector<double> applied;
    const Pair times = TimePairs(RefreshLimit(), [&] {
        double begin = 0;
        QElapsedTimer clock;
        m_program.OpenDialog([&] { m_program.Click("cmdTransFilter"); },
            [&](QWidget &dialog) {
                auto &box = Control<QLineEdit>(dialog, "txtActivity");
                box.setFocus(Qt::TabFocusReason);
                box.selectAll();
                QTest::keyClicks(&box, u"A0001"_s);
                clock.start();
                QTest::mouseClick(&Control<QWidget>(dialog, "cmdOK"), Qt::LeftButton);
            });
        applied.push_back(static_cast<double>(clock.nsecsElapsed()) / 1e6 - begin);
        m_program.OpenDialog([&] { m_program.Click("cmdTransFilter"); },
            [&](QWidget &dialog) {
                QTest::mouseClick(&Control<QWidget>(dialog, "cmdClear"), Qt::LeftButton);
                QTest::mouseClick(&Control<QWidget>(dialog, "cmdOK"), Qt::LeftButton);
            });
    });
    Add("filter applied", Median(applied), 1.5 * times.Limit, "1.5 x " + Decimal(times.Limit));
}

void CompanyBench::MeasureSort()
{
    clsGrid &grid = m_program.Grid();
    for (int column = 2; column < grid.Cols(); ++column) {
        std::vector<std::string> keys;
        for (int row = 1; row < grid.Rows(); ++row)
            keys.push_back(grid.TextMatrix(row, column == 2 ? 1 : column).toLower().toStdString());
        std::vector<int> order(keys.size());
        const Pair times = TimePairs(
            [&] {
                for (size_t i = 0; i < order.size(); ++i)
                    order[i] = static_cast<int>(i);
                std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
                    return keys[static_cast<size_t>(a)] < keys[static_cast<size_t>(b)];
                });
            },
            [&] {
                const QHeaderView &header = *grid.horizontalHeader();
                const QPoint at(header.sectionViewportPosition(column) + 5, header.height() / 2);
                DoAndPaint(*grid.viewport(), [&] {
                    QTest::mouseMove(header.viewport(), at);
                    QTest::mouseClick(header.viewport(), Qt::LeftButton, Qt::NoModifier, at);
                });
            });
        const std::string work = "sorted by " + grid.TextMatrix(0, column).toStdString();
        Times[work] = times.Work;
        if (grid.Rows() > LeastSortedRows)
            Add(work, times.Work, 2 * times.Limit, "2 x " + Decimal(times.Limit));
    }
}

void CompanyBench::MeasureSelection()
{
    const clsGrid &grid = m_program.Grid();
    std::vector<double> selected;
    for (int i = 0; i < PairRounds; ++i) {
        const QPoint row(20, grid.rowViewportPosition(1 + i % 5) + 5);
        selected.push_back(Milliseconds([&] {
            DoAndPaint(*grid.viewport(),
                [&] { QTest::mouseClick(grid.viewport(), Qt::LeftButton, Qt::NoModifier, row); });
        }));
    }
    Times[RowSelected] = Median(selected);
}
