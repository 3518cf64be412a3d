#pragma once

#include "tests/entry/EntryWindow.h"

#include <functional>

/// All windows that a user of the program meets, open one after the other over real databases.
class EveryWindow : public EntryWindow
{
protected:
    /// A company that uses every field, an employee who may see and change them, and two entries.
    EveryWindow();

    using Look = std::function<void(const std::string &name, QWidget &window)>;

    /// Opens each window as a user does and looks at it. The main window comes first, with a new
    /// entry, then with a time entry and with an expense.
    void InEvery(const Look &look);

private:
    void InMainWindow(const Look &look);
    void InDialogs(const Look &look);
    void InMessages(const Look &look);
    void InHelp(const Look &look);
};

/// The controls of a window that take the keys, as they come in its focus chain.
QList<QWidget *> FocusChain(QWidget &window);
