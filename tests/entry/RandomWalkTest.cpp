// Users who do anything at all: no event may leave the window in a state that contradicts itself or
// what is stored.

#include "tests/entry/WindowWalk.h"
#include "tests/support/PrintQt.h"
#include "tests/support/Soak.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using testing::IsEmpty;

namespace {

/// The numbers of the steps of one walk.
std::vector<unsigned> Walk(unsigned start, int steps)
{
    WalkChance chance(start);
    std::vector<unsigned> numbers;
    for (int i = 0; i < steps; ++i)
        numbers.push_back(chance.Number());
    return numbers;
}

struct Outcome
{
    int Steps = 0;
    int Saves = 0;
    int Deletions = 0;
    int Loads = 0;
    int StoreFailures = 0;
    QStringList Findings;
    QString LastSteps;
};

Outcome Play(int kind, const std::vector<unsigned> &numbers)
{
    WindowWalk walk(kind);
    Outcome outcome;
    for (const unsigned number : numbers) {
        walk.Step(number);
        ++outcome.Steps;
        if (!walk.Oracle().Findings.isEmpty())
            break;
    }
    outcome.Saves = walk.Oracle().Saves;
    outcome.Deletions = walk.Oracle().Deletions;
    outcome.Loads = walk.Oracle().Loads;
    outcome.StoreFailures = walk.StoreFailures;
    outcome.Findings = walk.Oracle().Findings;
    outcome.LastSteps = walk.LastSteps();
    return outcome;
}

/// Leaves out every stretch of steps without which the walk ends with the same finding.
std::vector<unsigned> Shortened(int kind, std::vector<unsigned> numbers, const QString &finding)
{
    for (size_t length = numbers.size() / 2; length > 0; length /= 2) {
        for (size_t at = 0; at + length <= numbers.size();) {
            std::vector<unsigned> without = numbers;
            const auto first = without.begin() + static_cast<std::ptrdiff_t>(at);
            without.erase(first, first + static_cast<std::ptrdiff_t>(length));
            const Outcome outcome = Play(kind, without);
            if (outcome.Findings.value(0) != finding) {
                at += length;
                continue;
            }
            without.resize(static_cast<size_t>(outcome.Steps));
            numbers = without;
        }
    }
    return numbers;
}

} // namespace

class RandomWalk : public testing::TestWithParam<int>
{
};

// WORKLOG_WALK=<start> repeats the walk that a failure names, WORKLOG_SHORTEN=1 shortens it first.
// WORKLOG_WALKS_FROM=<start> walks other ways: from there on instead of from 0.
TEST_P(RandomWalk, WhatIsShownIsWhatIsStored)
{
    const int kind = GetParam();
    const bool repeats = qEnvironmentVariableIsSet("WORKLOG_WALK");
    const int walks = repeats ? 1 : Rounds(1, 25);
    const int steps = Rounds(350, 500);
    const int first = qEnvironmentVariableIntValue("WORKLOG_WALKS_FROM");
    Outcome total;
    for (int i = 0; i < walks; ++i) {
        const unsigned start = repeats
            ? qEnvironmentVariable("WORKLOG_WALK").toUInt()
            : static_cast<unsigned>(first + i * WindowWalk::Kinds + kind);
        std::vector<unsigned> numbers = Walk(start, steps);
        Outcome outcome = Play(kind, numbers);
        total.Steps += outcome.Steps;
        total.Saves += outcome.Saves;
        total.Deletions += outcome.Deletions;
        total.Loads += outcome.Loads;
        total.StoreFailures += outcome.StoreFailures;
        if (!outcome.Findings.isEmpty() && qEnvironmentVariableIsSet("WORKLOG_SHORTEN")) {
            numbers.resize(static_cast<size_t>(outcome.Steps));
            outcome = Play(kind, Shortened(kind, numbers, outcome.Findings.first()));
        }
        EXPECT_THAT(outcome.Findings, IsEmpty())
            << "start " << start << ", step " << outcome.Steps << ", last steps:\n"
            << outcome.LastSteps.toStdString();
    }
    TellCount("steps", total.Steps);
    TellCount("saves compared", total.Saves);
    TellCount("deletions compared", total.Deletions);
    TellCount("loaded entries compared", total.Loads);
    TellCount("steps with a failing store", total.StoreFailures);
}

INSTANTIATE_TEST_SUITE_P(Kinds, RandomWalk, testing::Range(0, WindowWalk::Kinds));
