#pragma once

#include <QtGlobal>

#include <array>
#include <string>
#include <string_view>

/// The check value of a record: XXH3 in its 64-bit form, without a key, over the fields in order. A
/// text ends with a byte that UTF-8 does not know, so that what moves from one field to the next
/// changes the value; a number is its eight bytes, the least significant first.
///
/// It finds damage, not deceit: whoever changes a record on purpose can work it out.
class CheckValue
{
public:
    using Digits = std::array<char, 16>;

    void Clear() { m_bytes.clear(); }
    void Add(std::string_view text) { m_bytes.append(text).push_back('\xff'); }
    void Add(qint64 number)
    {
        for (int shift = 0; shift < 64; shift += 8)
            m_bytes.push_back(static_cast<char>(static_cast<quint64>(number) >> shift & 0xff));
    }

    quint64 Value() const;
    Digits Hexadecimal() const;

private:
    std::string m_bytes;
};
