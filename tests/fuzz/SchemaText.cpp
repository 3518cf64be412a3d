#include "platform/clsRunTimeError.h"
#include "store/Schema.h"
#include "store/StoreErrors.h"
#include "tests/fuzz/Fuzz.h"

using namespace Qt::StringLiterals;

/// A schema text: read into fields that make the same schema again, or refused.
int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    try {
        const Schema schema = ParseSchema(QString::fromUtf8(BytesOf(data, size)));
        FUZZ_EXPECT(!schema.empty());
        QString again;
        for (const SchemaField &field : schema) {
            FUZZ_EXPECT(!field.Name.isEmpty() && !field.Name.contains(u'"'));
            const QString type = field.Type == FieldType::String ? u"String"_s
                : field.Type == FieldType::Date                  ? u"Date"_s
                                                                 : u"Currency"_s;
            again += field.Name + u' ' + type + u", "_s;
        }
        const Schema second = ParseSchema(again);
        FUZZ_EXPECT(second.size() == schema.size());
        for (size_t i = 0; i < schema.size(); ++i)
            FUZZ_EXPECT(second[i].Name == schema[i].Name && second[i].Type == schema[i].Type);
    } catch (const clsRunTimeError &error) {
        FUZZ_EXPECT(error.Number() == StoreErrors::MalformedSchema);
    }
    return 0;
}
