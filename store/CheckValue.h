#pragma once

#include <QtGlobal>

#include <string>
#include <string_view>

/// The check value of a record: FNV-1a in its 64-bit form, over the fields in order. A text ends
/// with a byte that UTF-8 does not know, so that what moves from one field to the next changes the
/// value.
///
/// It finds damage, not deceit: whoever changes a record on purpose can work it out.
class CheckValue
{
public:
    void Add(std::string_view text)
    {
        for (const char c : text)
            AddByte(static_cast<quint8>(c));
        AddByte(0xff);
    }
    void Add(qint64 number)
    {
        for (int shift = 0; shift < 64; shift += 8)
            AddByte(static_cast<quint8>(static_cast<quint64>(number) >> shift));
    }

    /// Sixteen hexadecimal digits.
    std::string Text() const
    {
        std::string text(16, '0');
        for (size_t i = 0; i < text.size(); ++i)
            text[i] = "0123456789abcdef"[m_value >> (60 - 4 * i) & 0xf];
        return text;
    }

private:
    void AddByte(quint8 byte) { m_value = (m_value ^ byte) * 0x100000001b3; }

    quint64 m_value = 0xcbf29ce484222325;
};
