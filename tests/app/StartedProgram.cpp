#include "tests/app/StartedProgram.h"

#include "app/clsProgram.h"
#include "tests/support/Windows.h"

#include <QPushButton>

#include <gtest/gtest.h>

StartedProgram::StartedProgram(const QString &folder)
    : m_program(std::make_unique<clsProgram>(
        folder, ProgramServices{m_messages, m_keys, m_process, m_clock, m_settings, m_browser}))
{
    m_program->StartUp();
}

StartedProgram::~StartedProgram() = default;

QWidget &StartedProgram::Window()
{
    EXPECT_NE(m_program->MainWindow(), nullptr) << m_messages.Texts().join(u'|').toStdString();
    return *m_program->MainWindow();
}

void StartedProgram::PressSync()
{
    m_messages.Shown.clear();
    QTest::mouseClick(&Control<QPushButton>(Window(), "cmdSync"), Qt::LeftButton);
    LetEventsRun();
}
