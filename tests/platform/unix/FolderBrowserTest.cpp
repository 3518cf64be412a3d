// The folder browser on the screen, with a user in front of it.

#include "platform/clsWindowFolderBrowser.h"

#include "tests/support/Deadline.h"
#include "tests/support/PrintQt.h"
#include "tests/support/Windows.h"

#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTimer>

#include <gtest/gtest.h>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

const QString Prompt = u"Please select the folder of the installation. Another sentence says that "
                       u"something <b>will</b> be appended to it, && then some more."_s;

/// Browses while the steps play in the dialog that comes up. It is closed if they leave it open.
QString BrowseWith(const QString &start, const std::function<void(QFileDialog &)> &steps)
{
    bool played = false;
    QTimer::singleShot(0, qApp, [&] {
        auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        const auto closed = qScopeGuard([&] { dialog->close(); });
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog, DeadlineMilliseconds));
        steps(*dialog);
        played = true;
    });
    const QString chosen = clsWindowFolderBrowser().Browse(Prompt, start);
    EXPECT_TRUE(played);
    return chosen;
}

QLineEdit &NameBox(QFileDialog &dialog)
{
    return Control<QLineEdit>(dialog, "fileNameEdit");
}

} // namespace

TEST(FolderBrowser, GivesTheTypedFolder)
{
    const QTemporaryDir place;
    ASSERT_TRUE(QDir(place.path()).mkdir(u"acc"_s));
    const QString chosen = BrowseWith(place.path(), [](QFileDialog &dialog) {
        EXPECT_TRUE(NameBox(dialog).hasFocus());
        QTest::keyClicks(&NameBox(dialog), u"acc"_s);
        QTest::keyClick(&NameBox(dialog), Qt::Key_Return);
    });
    EXPECT_EQ(chosen, QDir::toNativeSeparators(place.filePath(u"acc"_s)));
}

TEST(FolderBrowser, CancelGivesNothing)
{
    const QTemporaryDir place;
    const QString chosen = BrowseWith(place.path(),
        [](QFileDialog &dialog) { QTest::keyClick(&NameBox(dialog), Qt::Key_Escape); });
    EXPECT_EQ(chosen, QString());
}

TEST(FolderBrowser, ShowsTheWholePromptAsItIs)
{
    BrowseWith({}, [](QFileDialog &dialog) {
        const auto &label = Control<QLabel>(dialog, "lblPrompt");
        EXPECT_EQ(label.text(), Prompt);
        EXPECT_EQ(label.textFormat(), Qt::PlainText);
        EXPECT_TRUE(label.isVisible());
        EXPECT_GE(label.height(), label.heightForWidth(label.width()));
        EXPECT_LE(label.width(), dialog.width());
    });
}

TEST(FolderBrowser, StartsInTheNearestFolderThatIsThere)
{
    const QTemporaryDir place;
    const auto startedIn = [](const QString &start) {
        QString folder;
        BrowseWith(start, [&](QFileDialog &dialog) { folder = dialog.directory().path(); });
        return folder;
    };
    EXPECT_EQ(startedIn(place.path()), place.path());
    EXPECT_EQ(startedIn(place.filePath(u"gone/deeper/"_s)), place.path());
    EXPECT_EQ(startedIn(QString()), QDir::homePath());
}
