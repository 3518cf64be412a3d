#include "exchange/Csv.h"

#include "exchange/ExchangeErrors.h"
#include "platform/PlainFiles.h"

#include <QUtf8StringView>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 BlockBytes = 256 * 1024;
constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";

bool EndsPlainCell(char c)
{
    return c == ',' || c == '\n' || c == '\r' || c == '"';
}

bool NeedsQuotes(std::string_view cell)
{
    return cell.find_first_of("\",\r\n") != std::string_view::npos || cell.starts_with(' ')
        || cell.ends_with(' ') || cell.starts_with(ByteOrderMark);
}

} // namespace

CsvReader::CsvReader(const QString &fileName, size_t maxCellBytes)
    : m_fileName(fileName)
    , m_maxCellBytes(maxCellBytes)
    , m_file(fileName)
{
    OpenPlainFile(m_file, PlainFileUse::Read);
    SkipByteOrderMark();
}

std::string_view CsvReader::Cell(size_t index) const
{
    const size_t begin = index == 0 ? 0 : m_ends[index - 1];
    return std::string_view(m_text).substr(begin, m_ends[index] - begin);
}

void CsvReader::Fail(const QString &what) const
{
    RaiseFileError(m_fileName, m_recordLine, what);
}

bool CsvReader::Refill()
{
    m_buffer.resize(BlockBytes);
    const qint64 count = m_file.read(m_buffer.data(), BlockBytes);
    if (count < 0)
        RaiseFileError(
            m_fileName, m_line, u"the file cannot be read ("_s + m_file.errorString() + u")"_s);
    m_buffer.resize(static_cast<size_t>(count));
    m_at = 0;
    m_bytesRead += count;
    return count > 0;
}

int CsvReader::Peek()
{
    if (m_at == m_buffer.size() && !Refill())
        return End;
    return static_cast<unsigned char>(m_buffer[m_at]);
}

void CsvReader::SkipByteOrderMark()
{
    Peek();
    if (m_buffer.starts_with(ByteOrderMark))
        m_at = ByteOrderMark.size();
}

bool CsvReader::ReadRecord()
{
    m_recordLine = m_line;
    while (Peek() == '\n' || Peek() == '\r') {
        TakeLineEnd();
        m_recordLine = m_line;
    }
    m_text.clear();
    m_ends.clear();
    if (Peek() == End)
        return false;
    ReadCell();
    while (Peek() == ',') {
        ++m_at;
        ReadCell();
    }
    if (Peek() != End)
        TakeLineEnd();
    CheckUtf8();
    return true;
}

void CsvReader::ReadCell()
{
    if (Peek() == '"')
        ReadQuotedCell();
    else
        ReadPlainCell();
    m_ends.push_back(m_text.size());
    if (m_ends.size() > MaxColumns)
        RaiseFileError(m_fileName, m_line,
            u"there are more than "_s + QString::number(MaxColumns) + u" columns"_s);
}

void CsvReader::CheckCellSize() const
{
    // While it is read: a quote that is never closed has the rest of the file as its cell.
    if (m_text.size() - (m_ends.empty() ? 0 : m_ends.back()) > m_maxCellBytes)
        RaiseFileError(m_fileName, m_recordLine,
            u"column "_s + QString::number(m_ends.size() + 1) + u" has more than "_s
                + QString::number(m_maxCellBytes) + u" bytes"_s);
}

void CsvReader::ReadPlainCell()
{
    while (Peek() != End) {
        const auto begin = m_buffer.cbegin() + static_cast<std::ptrdiff_t>(m_at);
        const auto end = std::find_if(begin, m_buffer.cend(), EndsPlainCell);
        m_text.append(begin, end);
        CheckCellSize();
        m_at = static_cast<size_t>(end - m_buffer.cbegin());
        if (end == m_buffer.cend())
            continue;
        if (*end == '"')
            RaiseFileError(
                m_fileName, m_line, u"a quote stands inside a cell that does not begin with one"_s);
        return;
    }
}

void CsvReader::ReadQuotedCell()
{
    const qint64 firstLine = m_line;
    do {
        ++m_at; // the quote that begins the cell, or the second of two that stand for one
        TakeQuotedText();
        if (Peek() == End)
            RaiseFileError(m_fileName, firstLine, u"a quote is never closed"_s);
        ++m_at;
        if (Peek() == '"')
            m_text += '"';
    } while (Peek() == '"');
    const int next = Peek();
    if (next != End && next != ',' && next != '\r' && next != '\n')
        RaiseFileError(m_fileName, m_line, u"text stands behind the closing quote of a cell"_s);
}

void CsvReader::TakeQuotedText()
{
    while (Peek() != End) {
        const auto begin = m_buffer.cbegin() + static_cast<std::ptrdiff_t>(m_at);
        const auto end = std::find(begin, m_buffer.cend(), '"');
        m_text.append(begin, end);
        CheckCellSize();
        m_line += std::count(begin, end, '\n');
        m_at = static_cast<size_t>(end - m_buffer.cbegin());
        if (end != m_buffer.cend())
            return;
    }
}

void CsvReader::TakeLineEnd()
{
    if (Peek() == '\r') {
        ++m_at;
        if (Peek() != '\n')
            RaiseFileError(m_fileName, m_line, u"a carriage return stands without a line feed"_s);
    }
    ++m_at;
    ++m_line;
}

void CsvReader::CheckUtf8() const
{
    const bool isAscii = std::all_of(
        m_text.begin(), m_text.end(), [](char c) { return static_cast<unsigned char>(c) < 128; });
    // Cell by cell: two cells with half a character each would look whole side by side.
    for (size_t i = 0; !isAscii && i < CellCount(); ++i) {
        const std::string_view cell = Cell(i);
        if (!QUtf8StringView(cell.data(), static_cast<qsizetype>(cell.size())).isValidUtf8())
            Fail(u"the text of column "_s + QString::number(i + 1) + u" is not UTF-8"_s);
    }
}

std::string CsvLine(const std::vector<std::string> &cells)
{
    std::string line;
    for (const std::string &cell : cells) {
        if (&cell != &cells.front())
            line += ',';
        // A line with nothing on it would be no record at all.
        const bool isLine = cell.empty() && cells.size() == 1;
        if (!isLine && !NeedsQuotes(cell)) {
            line += cell;
            continue;
        }
        line += '"';
        for (const char c : cell)
            line.append(c == '"' ? 2 : 1, c);
        line += '"';
    }
    return line + "\r\n";
}
