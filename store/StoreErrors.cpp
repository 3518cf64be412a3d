#include "store/StoreErrors.h"

#include "platform/clsRunTimeError.h"

using namespace Qt::StringLiterals;

void RaiseStoreError(int number, const QString &description)
{
    throw clsRunTimeError(number, u"RecordStore"_s, description);
}
