#include "store/CheckValue.h"

#define XXH_INLINE_ALL
#include <xxhash.h>

quint64 CheckValue::Value() const
{
    return XXH3_64bits(m_bytes.data(), m_bytes.size());
}

CheckValue::Digits CheckValue::Hexadecimal() const
{
    const quint64 value = Value();
    Digits digits;
    for (size_t i = 0; i < digits.size(); ++i)
        digits[i] = "0123456789abcdef"[value >> (60 - 4 * i) & 0xf];
    return digits;
}
