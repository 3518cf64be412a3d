#pragma once

#include <QString>

#include <gtest/gtest.h>
#include <sqlite3.h>

/// Another program that has one of our files open.
class OtherProgram
{
public:
    explicit OtherProgram(const QString &fileName)
    {
        EXPECT_EQ(sqlite3_open(fileName.toUtf8().constData(), &m_database), SQLITE_OK);
    }
    ~OtherProgram() { sqlite3_close(m_database); }
    OtherProgram(const OtherProgram &) = delete;
    OtherProgram &operator=(const OtherProgram &) = delete;

    void Execute(const char *sql)
    {
        EXPECT_EQ(sqlite3_exec(m_database, sql, nullptr, nullptr, nullptr), SQLITE_OK)
            << sql << ": " << sqlite3_errmsg(m_database);
    }

private:
    sqlite3 *m_database = nullptr;
};
