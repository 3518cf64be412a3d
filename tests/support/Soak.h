#pragma once

#include <QtGlobal>

#include <cstdio>
#include <string>

/// The tests that can go on for hours have a short form, which runs with all others, and a long
/// one, which test-soak.sh asks for.
inline bool IsSoak()
{
    return qEnvironmentVariableIntValue("WORKLOG_SOAK") == 1;
}

inline int Rounds(int shortForm, int longForm)
{
    return IsSoak() ? longForm : shortForm;
}

/// A count that docs/reliability.md gives, on the test's output.
inline void TellCount(const std::string &what, long long count)
{
    std::printf("[ COUNT    ] %s: %lld\n", what.c_str(), count);
}
