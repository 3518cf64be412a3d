#pragma once

#include "platform/clsFolderBrowser.h"

/// The browser on the screen, in front of the window that is in use; the whole prompt stands above
/// the folders.
class clsWindowFolderBrowser : public clsFolderBrowser
{
public:
    QString Browse(const QString &prompt, const QString &start) override;
};
