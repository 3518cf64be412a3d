#pragma once

#include <QValidator>

/// Turns a comma into the decimal point in whatever the user types, pastes or drops into a number,
/// where the system's decimal sign is a comma. Accepts everything.
class clsDecimalSign : public QValidator
{
public:
    using QValidator::QValidator;

    State validate(QString &text, int &caret) const override;
};
