#include "platform/clsUpperCase.h"

#include <QLineEdit>

QValidator::State clsUpperCase::validate(QString &text, int &) const
{
    for (QChar &c : text) {
        if (c >= u'a' && c <= u'z')
            c = QChar(static_cast<char16_t>(c.unicode() - u'a' + u'A'));
    }
    return Acceptable;
}

void ShowCode(QLineEdit &box, const QString &code)
{
    if (box.text() == code)
        return;
    const QValidator *const forTyping = box.validator();
    box.setValidator(nullptr);
    box.setText(code);
    box.setValidator(forTyping);
}
