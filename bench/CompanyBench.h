#pragma once

#include "bench/Limits.h"
#include "bench/Measure.h"
#include "bench/ProgramBench.h"

#include <map>

/// The name of the work in CompanyBench::Times.
inline const std::string RowSelected = "row selected";

/// One company and everything that is measured on it.
class CompanyBench
{
public:
    CompanyBench(const QString &folder, const std::string &size, Report &report);

    void MeasureAll();

    std::map<std::string, double> Times; ///< the work alone, for the growth from size to size

private:
    void MeasureRefresh();
    void MeasureSave();
    void MeasureSummary();
    void MeasureFilter();
    void MeasureSort();
    void MeasureSelection();
    void Add(const std::string &work, double measured, double allowed, const std::string &goal);
    std::function<void()> RefreshLimit()
    {
        return [this] { Limits::Refresh(m_limit, {}, m_limitRows); };
    }

    QString m_folder;
    std::string m_size;
    Report &m_report;
    Limits::Company m_limit;
    Limits::Rows m_limitRows;
    ProgramBench m_program;
    double m_paint = 0;
};
