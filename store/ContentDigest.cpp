#include "store/ContentDigest.h"

#include <array>
#include <charconv>
#include <cstdio>

namespace {

constexpr size_t ChangesDigits = 8;
constexpr size_t SumDigits = 16;

template <class Number>
bool ReadHexadecimal(std::string_view text, Number &number)
{
    const char *end = text.data() + text.size();
    return std::from_chars(text.data(), end, number, 16).ptr == end;
}

} // namespace

std::string ContentDigest::Text() const
{
    std::array<char, ChangesDigits + 1 + SumDigits + 1> text = {};
    std::snprintf(
        text.data(), text.size(), "%08x-%016llx", Changes, static_cast<unsigned long long>(Sum));
    return text.data();
}

std::optional<ContentDigest> ContentDigest::FromText(std::string_view text)
{
    ContentDigest digest;
    if (text.size() != ChangesDigits + 1 + SumDigits || text[ChangesDigits] != '-'
        || !ReadHexadecimal(text.substr(0, ChangesDigits), digest.Changes)
        || !ReadHexadecimal(text.substr(ChangesDigits + 1), digest.Sum))
        return {};
    return digest;
}
