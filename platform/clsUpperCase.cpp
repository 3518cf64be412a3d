#include "platform/clsUpperCase.h"

QValidator::State clsUpperCase::validate(QString &text, int &) const
{
    for (QChar &c : text) {
        if (c >= u'a' && c <= u'z')
            c = QChar(static_cast<char16_t>(c.unicode() - u'a' + u'A'));
    }
    return Acceptable;
}
