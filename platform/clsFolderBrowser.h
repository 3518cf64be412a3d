#pragma once

#include <QString>

/// Lets the user choose a folder. Tests hand in one that answers by itself.
class clsFolderBrowser
{
public:
    virtual ~clsFolderBrowser() = default;

    /// Shows the prompt and the folders from `start` on, or from the nearest one above it that is
    /// there. The chosen folder with the platform's separators; empty when the user cancelled.
    virtual QString Browse(const QString &prompt, const QString &start) = 0;
};
