#pragma once

#include <QFile>
#include <QString>

#include <string>
#include <string_view>
#include <vector>

/// Reads a CSV file (RFC 4180, UTF-8) record by record.
///
/// Accepts: CRLF and LF as the end of a line, a last line without one, a byte order mark, quoted
///          cells with quotes ("" for one), commas and line ends inside. A line with nothing on it
///          is no record.
/// Shape:   cells are UTF-8 and valid until the next record is read; blanks belong to them.
/// Lines:   counted from 1, those inside quoted cells too.
/// Errors:  clsRunTimeError naming file and line: a file that cannot be read, a quote where none
///          may stand or that is never closed, a carriage return alone, invalid UTF-8, a cell or a
///          number of columns above the limit.
class CsvReader
{
public:
    static constexpr size_t MaxColumns = 10'000;
    static constexpr size_t MaxCellBytes = 1024 * 1024;

    explicit CsvReader(const QString &fileName, size_t maxCellBytes = MaxCellBytes);

    bool ReadRecord(); ///< false past the last one

    size_t CellCount() const { return m_ends.size(); }
    std::string_view Cell(size_t index) const;
    qint64 Line() const { return m_recordLine; } ///< where the record begins, or the next would

    const QString &FileName() const { return m_fileName; }
    qint64 BytesRead() const { return m_bytesRead; }
    qint64 BytesInAll() const { return m_file.size(); }

    /// Raises an error at the current record.
    [[noreturn]] void Fail(const QString &what) const;

private:
    static constexpr int End = -1;

    int Peek(); // the next byte, or End
    bool Refill();
    void SkipByteOrderMark();
    void ReadCell();
    void CheckCellSize() const;
    void ReadPlainCell();
    void ReadQuotedCell();
    void TakeQuotedText();
    void TakeLineEnd();
    void CheckUtf8() const;

    QString m_fileName;
    size_t m_maxCellBytes;
    QFile m_file;
    std::string m_buffer;
    size_t m_at = 0;
    qint64 m_bytesRead = 0;
    qint64 m_line = 1;
    qint64 m_recordLine = 1;
    std::string m_text; // the cells of the record, one behind the other
    std::vector<size_t> m_ends;
};

/// One line of a CSV file, its CRLF included. Cells that could be misread stand in quotes.
std::string CsvLine(const std::vector<std::string> &cells);
