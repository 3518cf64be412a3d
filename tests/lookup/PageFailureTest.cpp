// When no page can be built, the user is told once and the program ends.

#include "tests/lookup/LookupFixture.h"

#include <cstdlib>
#include <new>

using namespace Qt::StringLiterals;
using testing::ElementsAre;

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

class PageFailure : public LookupFixture
{
protected:
    /// The next record set cannot be created.
    void RefuseRecordset()
    {
        const QStringList none;
        const auto rehearsal = std::make_shared<clsTextRecordSet>(none);
        refusedSize = lastSize;
        EXPECT_GT(lastSize, sizeof(clsRecordSet));
    }
    ~PageFailure() override { refusedSize = 0; }

    void ExpectTheEnd()
    {
        EXPECT_THAT(Messages.Texts(), ElementsAre(u"Application cannot create a recordset."_s));
        EXPECT_EQ(Messages.Shown.value(0).Icon, MessageIcon::Exclamation);
        EXPECT_EQ(ProgramEnds, 1);
    }
};

} // namespace

TEST_F(PageFailure, OnOpeningEndsTheProgramBeforeTheWindowShows)
{
    Start();
    Lookup.LookupKind = u"Customer"_s;
    frmLookup form(*Module, Messages, Keys);
    RefuseRecordset();
    form.ShowModal();
    EXPECT_FALSE(form.isVisible());
    ExpectTheEnd();
}

TEST_F(PageFailure, OnScrollingEndsTheProgram)
{
    Company.Customers = NumberedCustomers(30);
    Start();
    LookUp(u"Customer"_s, [this] {
        RefuseRecordset();
        Wheel(1);
        EXPECT_FALSE(Window().isVisible());
    });
    ExpectTheEnd();
}

TEST_F(PageFailure, OnAChangeOfTheChoiceEndsTheProgram)
{
    Company.Customers = NumberedCustomers(50); // sorting so many allocates in other sizes
    Start();
    LookUp(u"Customer"_s, [this] {
        Press("cboLookupBy", Qt::Key_N);
        RefuseRecordset();
        Press(Qt::Key_Return);
        EXPECT_FALSE(Window().isVisible());
    });
    ExpectTheEnd();
}
