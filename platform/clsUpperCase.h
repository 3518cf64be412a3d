#pragma once

#include <QValidator>

/// Turns "a" to "z" into upper case in whatever the user types, pastes or drops into a text box,
/// and accepts everything.
class clsUpperCase : public QValidator
{
public:
    using QValidator::QValidator;

    State validate(QString &text, int &caret) const override;
};
