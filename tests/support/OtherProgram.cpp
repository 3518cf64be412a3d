#include "tests/support/OtherProgram.h"

#include "tests/support/PrintQt.h"

#include <QStringList>

#include <gtest/gtest.h>
#include <sqlite3.h>

using namespace Qt::StringLiterals;

OtherProgram::OtherProgram(const QString &fileName)
{
    EXPECT_EQ(sqlite3_open(fileName.toUtf8().constData(), &m_database), SQLITE_OK);
}

OtherProgram::~OtherProgram()
{
    sqlite3_close(m_database);
}

int OtherProgram::Try(const QString &sql)
{
    return sqlite3_exec(m_database, sql.toUtf8().constData(), nullptr, nullptr, nullptr);
}

void OtherProgram::Execute(const QString &sql)
{
    EXPECT_EQ(Try(sql), SQLITE_OK) << sql.toStdString() << ": " << sqlite3_errmsg(m_database);
}

QString OtherProgram::Values(const QString &sql)
{
    QStringList values;
    sqlite3_stmt *statement = nullptr;
    EXPECT_EQ(sqlite3_prepare_v2(m_database, sql.toUtf8().constData(), -1, &statement, nullptr),
        SQLITE_OK)
        << sql.toStdString() << ": " << sqlite3_errmsg(m_database);
    while (sqlite3_step(statement) == SQLITE_ROW) {
        const void *text = sqlite3_column_text(statement, 0);
        values.append(text == nullptr ? u"(null)"_s
                                      : QString::fromUtf8(static_cast<const char *>(text),
                                          sqlite3_column_bytes(statement, 0)));
    }
    EXPECT_EQ(sqlite3_finalize(statement), SQLITE_OK) << sql.toStdString();
    return values.join(u'|');
}
