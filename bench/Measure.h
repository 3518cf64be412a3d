#pragma once

#include <functional>
#include <string>
#include <vector>

/// Times work against a limit and keeps the results as a table.
///
/// Units: milliseconds. Limit and work run in turns, so that what slows the machine down slows
///        both; the medians count.

constexpr int PairRounds = 11;

double Milliseconds(const std::function<void()> &action);
double Median(std::vector<double> values);

struct Pair
{
    double Limit = 0;
    double Work = 0;
};
/// `prepare` runs before each round, untimed.
Pair TimePairs(
    const std::function<void()> &limit, const std::function<void()> &work,
    const std::function<void()> &prepare = [] {}, int rounds = PairRounds);

/// One line of the report.
struct Result
{
    std::string Work;
    std::string Size;
    double Measured = 0;
    double Allowed = 0;
    std::string Unit = "ms";
    std::string Goal; ///< how Allowed comes about, "1.25 x 35.0 + 3.1"
};

class Report
{
public:
    void Add(const Result &result);
    /// Prints the table; false when a goal was missed.
    bool Print() const;

private:
    std::vector<Result> m_results;
};

std::string Decimal(double value, int decimals = 1);
