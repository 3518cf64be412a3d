#pragma once

#include "bench/Limits.h"
#include "bench/Measure.h"

#include <QString>

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
