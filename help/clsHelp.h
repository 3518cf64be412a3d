#pragma once

#include "help/frmHelp.h"
#include "help/modHelp.h"
#include "platform/clsMessageBox.h"

#include <QObject>
#include <QString>

#include <memory>

class QWidget;

/// Opens the help when F1 is pressed: the page of the active window, or of the one that it was
/// opened from where it has none itself.
///
/// The viewer stays open next to the program until CloseViewer. It goes to the front of whichever
/// window help was asked from, and takes the input beside a modal dialog too.
/// A help file that is missing or of no use is a message when help is asked for.
class clsHelp : public QObject
{
    Q_OBJECT

public:
    /// Listens to the whole application. The messages outlive it.
    clsHelp(const QString &helpFile, clsMessageBox &messages);
    ~clsHelp() override;

    void CloseViewer(); ///< nothing happens when it is not open

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QString PageOf(const QWidget &window) const;
    void ShowFor(QWidget &window);
    void BringInFrontOf(const QWidget &window);

    modHelp m_pages;
    clsMessageBox &m_messages;
    std::unique_ptr<frmHelp> m_viewer; // after the pages, which it shows
};
