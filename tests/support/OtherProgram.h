#pragma once

#include <QString>

struct sqlite3;

/// Another program: the file through SQLite itself. Every failing statement fails the test.
class OtherProgram
{
public:
    explicit OtherProgram(const QString &fileName);
    ~OtherProgram();
    OtherProgram(const OtherProgram &) = delete;
    OtherProgram &operator=(const OtherProgram &) = delete;

    void Execute(const QString &sql);
    /// The result code of a statement that may fail.
    int Try(const QString &sql);
    /// The first column of the rows, joined by "|"; NULL as "(null)".
    QString Values(const QString &sql);

private:
    sqlite3 *m_database = nullptr;
};
