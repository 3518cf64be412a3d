#pragma once

#include <QString>

/// Sends keystrokes to the program itself, as if the user had typed them. Tests hand in one that
/// writes down what was sent.
class clsSendKeys
{
public:
    virtual ~clsSendKeys() = default;

    /// "{TAB}", "{F1}", "{UP}", "{LEFT}". Returns at once; the key arrives, at whichever control
    /// has the focus then, when the events before it are done.
    virtual void SendKeys(const QString &keys) = 0;
};

class clsProgramKeys : public clsSendKeys
{
public:
    void SendKeys(const QString &keys) override;
};
