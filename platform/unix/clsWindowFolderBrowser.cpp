#include "platform/clsWindowFolderBrowser.h"

#include "platform/Paths.h"
#include "platform/RunWhileWaiting.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QLayout>

using namespace Qt::StringLiterals;

namespace {

QLabel *PromptLabel(const QString &prompt, QWidget *parent)
{
    auto *label = new QLabel(prompt, parent);
    label->setObjectName(u"lblPrompt"_s);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setMargin(9);
    return label;
}

} // namespace

QString clsWindowFolderBrowser::Browse(const QString &prompt, const QString &start)
{
    QString nearest;
    RunWhileWaiting([&] { nearest = NearestFolder(start); });
    QFileDialog dialog(QApplication::activeWindow(), u"Browse for Folder"_s, nearest);
    dialog.setObjectName(u"frmFolderBrowser"_s);
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    // The system's own dialogs have no place for a prompt of two sentences.
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.layout()->setMenuBar(PromptLabel(prompt, &dialog));
    if (dialog.exec() != QDialog::Accepted)
        return {};
    return QDir::toNativeSeparators(dialog.selectedFiles().value(0));
}
