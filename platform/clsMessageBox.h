#pragma once

#include <QString>

enum class MessageIcon
{
    Critical,
    Question,
    Exclamation
};

enum class MessageButtons
{
    OK,
    YesNo,
    YesNoCancel
};

enum class MessageAnswer
{
    OK,
    Yes,
    No,
    Cancel
};

/// The one door through which the program asks and tells the user something. Every box carries
/// the title "Worklog Remote" and shows its text as plain text.
class clsMessageBox
{
public:
    virtual ~clsMessageBox() = default;

    /// Shows the box and waits. `preset` is the button that Enter presses; Escape answers Cancel,
    /// or No where there is no Cancel.
    virtual MessageAnswer Ask(
        const QString &text, MessageIcon icon, MessageButtons buttons, MessageAnswer preset)
        = 0;

    void Tell(const QString &text, MessageIcon icon = MessageIcon::Exclamation)
    {
        Ask(text, icon, MessageButtons::OK, MessageAnswer::OK);
    }

    /// "Do you want to save changes?" with Yes, No and Cancel.
    MessageAnswer AskSaveChanges();
};
