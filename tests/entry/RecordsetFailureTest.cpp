// When the list's records cannot be built, the user reads why and the program ends.

#include "entry/EntryRecordset.h"
#include "figures/EntryReferences.h"
#include "tests/entry/EntryWindow.h"

#include <cstdio>
#include <cstdlib>
#include <new>

using namespace Qt::StringLiterals;

namespace {

// How the heap is made to refuse one allocation: the next of that size.
size_t refusedSize = 0; // 0: none
size_t lastSize = 0;

} // namespace

// Called, not made part of the callers: the compiler would see malloc there and new's other half.
[[gnu::noinline]] void *operator new(size_t size)
{
    lastSize = size;
    if (size != 0 && size == refusedSize) {
        refusedSize = 0;
        throw std::bad_alloc();
    }
    if (void *memory = std::malloc(size == 0 ? 1 : size))
        return memory;
    throw std::bad_alloc();
}

[[gnu::noinline]] void operator delete(void *memory) noexcept
{
    std::free(memory);
}

[[gnu::noinline]] void operator delete(void *memory, size_t) noexcept
{
    std::free(memory);
}

namespace {

/// Writes each message to where a test of the program's end can read it.
class clsPrintedMessages : public clsMessageBox
{
public:
    MessageAnswer Ask(
        const QString &text, MessageIcon icon, MessageButtons, MessageAnswer preset) override
    {
        std::fprintf(
            stderr, "[%d] %s\n", icon == MessageIcon::Exclamation ? 1 : 0, qPrintable(text));
        return preset;
    }
};

using RecordsetFailureDeathTest = EntryWindow;

size_t SizeOfARecordset()
{
    const QStringList none;
    const std::shared_ptr<EntryTexts> texts;
    const QString name;
    const auto rehearsal = std::make_shared<EntryRecordset>(none, texts, name, u'.');
    return lastSize;
}

} // namespace

TEST_F(RecordsetFailureDeathTest, TheProgramSaysSoAndEndsAtOnce)
{
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    clsPrintedMessages printed;
    BuildSampleCompanies(Folder.path(), {Company});
    clsProgram program(Folder.path(), {printed, Keys, Process, Clock, Settings, Browser});
    program.StartUp();
    ASSERT_TRUE(ShowActive(*program.MainWindow()));
    auto &description = Control<QLineEdit>(*program.MainWindow(), "txtDescription");
    description.setFocus();
    QTest::keyClicks(&description, u"unsaved"_s);
    const size_t size = SizeOfARecordset();
    ASSERT_GT(size, sizeof(clsRecordSet));
    EXPECT_EXIT(
        {
            refusedSize = size;
            QTest::mouseClick(
                &Control<QPushButton>(*program.MainWindow(), "cmdUndo"), Qt::LeftButton);
            std::fprintf(stderr, "went on\n");
        },
        testing::ExitedWithCode(EXIT_FAILURE),
        "^.*\\[1\\] Application cannot create a recordset\\.\n$");
}
