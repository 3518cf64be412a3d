#pragma once

#include <QString>

#include <functional>

/// Told, often, how far the work on a company's table is; `done` of `all`, in units of the caller.
using ProgressReport
    = std::function<void(const QString &company, const QString &table, qint64 done, qint64 all)>;
