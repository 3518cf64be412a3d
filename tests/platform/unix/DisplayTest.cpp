#include "platform/Display.h"

#include <gtest/gtest.h>

#include <QByteArray>

#include <array>
#include <ostream>

namespace {

struct DisplayCase
{
    const char *Name;
    const char *Wayland; // null: not set
    const char *X11;
    const char *Chosen;
    const char *Expected;
};

void PrintTo(const DisplayCase &tested, std::ostream *out)
{
    *out << tested.Name;
}

constexpr std::array<const char *, 3> Variables = {"WAYLAND_DISPLAY", "DISPLAY", "QT_QPA_PLATFORM"};

void Set(const char *variable, const char *value)
{
    if (value == nullptr)
        qunsetenv(variable);
    else
        qputenv(variable, value);
}

/// Puts the environment back as the test has found it.
class Display : public testing::TestWithParam<DisplayCase>
{
protected:
    Display()
    {
        for (size_t i = 0; i < Variables.size(); ++i)
            m_before[i] = qgetenv(Variables[i]);
    }
    ~Display() override
    {
        for (size_t i = 0; i < Variables.size(); ++i)
            Set(Variables[i], m_before[i].isNull() ? nullptr : m_before[i].constData());
    }

private:
    std::array<QByteArray, Variables.size()> m_before;
};

TEST_P(Display, IsChosenFromTheEnvironment)
{
    Set("WAYLAND_DISPLAY", GetParam().Wayland);
    Set("DISPLAY", GetParam().X11);
    Set("QT_QPA_PLATFORM", GetParam().Chosen);
    ChooseDisplay();
    EXPECT_EQ(qgetenv("QT_QPA_PLATFORM"), QByteArray(GetParam().Expected));
}

INSTANTIATE_TEST_SUITE_P(Cases, Display,
    testing::Values(DisplayCase{"None", nullptr, nullptr, nullptr, "offscreen"},
        DisplayCase{"X11", nullptr, ":0", nullptr, "xcb;offscreen"},
        DisplayCase{"Wayland", "wayland-0", nullptr, nullptr, "wayland;xcb;offscreen"},
        DisplayCase{"Both", "wayland-0", ":0", nullptr, "wayland;xcb;offscreen"},
        DisplayCase{"AChoiceStands", "wayland-0", ":0", "minimal", "minimal"}),
    [](const auto &tested) { return tested.param.Name; });

} // namespace
