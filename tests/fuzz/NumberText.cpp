#include "entry/clsM90Mask.h"
#include "platform/Currency.h"
#include "tests/fuzz/Fuzz.h"

/// A typed number, and the same typed letter by letter into a box with a mask.
int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size < 2)
        return 0;
    const QString text = QString::fromUtf8(BytesOf(data + 2, size - 2));
    if (const std::optional<Currency> value = CurrencyFromText(text)) {
        for (const LeadingZero zero : {LeadingZero::Yes, LeadingZero::No})
            FUZZ_EXPECT(CurrencyFromText(FormatCurrency(*value, 4, zero)) == value);
        for (int decimals = 0; decimals < 4; ++decimals)
            FUZZ_EXPECT(CurrencyFromText(FormatCurrency(*value, decimals, LeadingZero::Yes))
                || value->Scaled() > 9'223'372'036'854'770'000
                || value->Scaled() < -9'223'372'036'854'770'000);
    }
    clsM90Mask mask;
    mask.SetMask(data[0] % 10, data[1] % 5);
    QString box;
    for (const QChar c : text) {
        const clsM90Mask::Verified verified
            = mask.gVerify_Change(box + c, static_cast<int>(box.size()) + 1);
        FUZZ_EXPECT(verified.Caret >= 0 && verified.Caret <= box.size() + 1);
        FUZZ_EXPECT(verified.Text.count(u'.') <= 1);
        box = verified.Text;
    }
    return 0;
}
