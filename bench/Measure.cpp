#include "bench/Measure.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

double Milliseconds(const std::function<void()> &action)
{
    const auto begin = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin)
        .count();
}

double Median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

Pair TimePairs(const std::function<void()> &limit, const std::function<void()> &work,
    const std::function<void()> &prepare, int rounds)
{
    std::vector<double> limits;
    std::vector<double> works;
    for (int i = 0; i < rounds; ++i) {
        limits.push_back(Milliseconds(limit));
        prepare();
        works.push_back(Milliseconds(work));
    }
    return {Median(limits), Median(works)};
}

void Report::Add(const Result &result)
{
    m_results.push_back(result);
    std::fprintf(stderr, "%s, %s: %.2f of %.2f %s\n", result.Work.c_str(), result.Size.c_str(),
        result.Measured, result.Allowed, result.Unit.c_str());
}

bool Report::Print() const
{
    bool met = true;
    std::printf("| Work | Size | Measured | At most | Goal | |\n|---|---|---:|---:|---|---|\n");
    for (const Result &result : m_results) {
        const bool holds = result.Measured <= result.Allowed;
        met = met && holds;
        std::printf("| %s | %s | %s %s | %s | %s | %s |\n", result.Work.c_str(),
            result.Size.c_str(), Decimal(result.Measured, 2).c_str(), result.Unit.c_str(),
            Decimal(result.Allowed, 2).c_str(), result.Goal.c_str(), holds ? "met" : "MISSED");
    }
    return met;
}

std::string Decimal(double value, int decimals)
{
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    return text;
}
