#include "platform/clsMessageBox.h"

using namespace Qt::StringLiterals;

MessageAnswer clsMessageBox::AskSaveChanges()
{
    return Ask(u"Do you want to save changes?"_s, MessageIcon::Question,
        MessageButtons::YesNoCancel, MessageAnswer::Yes);
}
