#pragma once

#include <QValidator>

class QLineEdit;

/// Turns "a" to "z" into upper case in whatever the user types, pastes or drops into a text box,
/// and accepts everything.
class clsUpperCase : public QValidator
{
public:
    using QValidator::QValidator;

    State validate(QString &text, int &caret) const override;
};

/// Shows a code of the program's own in such a box, as it is: only the user's letters are turned.
void ShowCode(QLineEdit &box, const QString &code);
