#include "platform/GenericOrder.h"

#include <QLocale>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <string_view>

namespace {

/// A text's place in the order. Most pairs are decided by the first bytes, which lie side by side.
struct Key
{
    bool IsText = true;
    double Number = 0;
    quint64 First = 0; // the folded text's bytes 0 to 7 and 8 to 15, the first most significant
    quint64 Second = 0;
    std::string_view Folded;
};

bool MayBeNumber(QStringView text)
{
    // Reading a number takes far longer than this look. What begins with a letter is none.
    const QStringView trimmed = text.trimmed();
    return !trimmed.isEmpty() && !trimmed.front().isLetter();
}

bool ReadNumber(QStringView text, double &number)
{
    bool isNumber = false;
    if (MayBeNumber(text)) {
        number = QLocale().toDouble(text, &isNumber);
        if (!isNumber)
            number = QLocale::c().toDouble(text, &isNumber);
    }
    return isNumber && std::isfinite(number);
}

quint64 EightBytes(std::string_view text, size_t from)
{
    quint64 bytes = 0;
    for (size_t i = from; i < from + 8; ++i)
        bytes = bytes << 8 | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0);
    return bytes;
}

bool operator<(const Key &a, const Key &b)
{
    if (a.IsText != b.IsText)
        return b.IsText;
    if (!a.IsText)
        return a.Number < b.Number;
    if (a.First != b.First)
        return a.First < b.First;
    if (a.Second != b.Second)
        return a.Second < b.Second;
    return a.Folded < b.Folded;
}

/// One key a text; the folded texts lie in `buffer`.
std::vector<Key> KeysOf(const std::vector<QString> &texts, std::string &buffer)
{
    std::vector<Key> keys(texts.size());
    std::vector<std::pair<size_t, size_t>> places(texts.size());
    for (size_t i = 0; i < texts.size(); ++i) {
        keys[i].IsText = !ReadNumber(texts[i], keys[i].Number);
        if (!keys[i].IsText)
            continue;
        const QByteArray folded = texts[i].toCaseFolded().toUtf8();
        places[i] = {buffer.size(), static_cast<size_t>(folded.size())};
        buffer.append(folded.data(), static_cast<size_t>(folded.size()));
    }
    for (size_t i = 0; i < texts.size(); ++i) {
        keys[i].Folded = std::string_view(buffer).substr(places[i].first, places[i].second);
        keys[i].First = EightBytes(keys[i].Folded, 0);
        keys[i].Second = EightBytes(keys[i].Folded, 8);
    }
    return keys;
}

} // namespace

std::vector<quint32> GenericRanks(const std::vector<QString> &texts)
{
    std::string buffer;
    const std::vector<Key> keys = KeysOf(texts, buffer);
    std::vector<quint32> order(texts.size());
    std::iota(order.begin(), order.end(), 0);
    std::sort(order.begin(), order.end(), [&](quint32 a, quint32 b) { return keys[a] < keys[b]; });
    std::vector<quint32> ranks(texts.size());
    quint32 rank = 0;
    for (size_t i = 0; i < order.size(); ++i) {
        if (i > 0 && keys[order[i - 1]] < keys[order[i]])
            ++rank;
        ranks[order[i]] = rank;
    }
    return ranks;
}
