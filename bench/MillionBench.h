#pragma once

#include "bench/Limits.h"
#include "bench/Measure.h"

#include <QString>

/// How much longer a search, a key or a selected row may take among ten times as many records.
constexpr double MostSearchGrowth = 1.5;

/// Measures what searches cost in a company of 10,000 and one of 100,000 customers, in turns.
void MeasureSearchGrowth(const QString &small, const QString &large, Report &report);

/// What is measured on a company of a million customers and a million projects.
class MillionBench
{
public:
    MillionBench(const QString &folder, Report &report);

    void MeasureFind() const;
    void MeasureLookup() const;
    void MeasureWindow() const;

private:
    void MeasureKeys(const QString &choice) const;

    QString m_folder;
    Report &m_report;
};
