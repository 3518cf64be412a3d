// The transaction filter's window, with the real lookup over it.

#include "figures/EntryFilter.h"
#include "lookup/frmTransFilter.h"
#include "lookup/modTransFilter.h"
#include "tests/lookup/LookupFixture.h"

#include <QTimer>
#include <QToolTip>

#include <utility>

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class TransFilter : public LookupFixture
{
protected:
    TransFilter()
    {
        Company.Projects = {SampleProject(u"0100"_s, u"AUDIT"_s, u"Yearly audit"_s),
            SampleProject(u"0100"_s, u"MOVE"_s, u"Office move"_s),
            SampleProject(u"0200"_s, u"AUDIT"_s, u"Audit of the mill"_s)};
    }

    void Apply(const QString &customer, const QString &project, const QString &activity)
    {
        Filter.AppliedFilterCustomer = customer;
        Filter.AppliedFilterProject = project;
        Filter.AppliedFilterActivity = activity;
    }
    QStringList Applied() const
    {
        return {Filter.AppliedFilterCustomer, Filter.AppliedFilterProject,
            Filter.AppliedFilterActivity};
    }

    void Start()
    {
        LookupFixture::Start();
        FilterModule = std::make_unique<modTransFilter>(Folder->Tables, Filter, Lookup);
        FilterModule->SelectEntryBox
            = [this](FilterField field) { EntryBoxesSelected.append(field); };
    }

    /// Opens the filter as the entry window does and runs the steps in it.
    void Open(const std::function<void()> &steps)
    {
        if (!FilterModule)
            Start();
        FilterModule->InitTransFilter();
        frmTransFilter form(*FilterModule, *Module, Messages, Keys);
        WithModal([&] { form.ShowModal(); }, [&](QWidget &window) { InWindow(window, steps); });
    }
    void Leave() { ClickButton("cmdCancel"); }

    /// Runs steps in the lookup that `open` opens over the filter.
    void InLookup(const std::function<void()> &open, const std::function<void()> &steps)
    {
        WithModal(open, [&](QWidget &window) { InWindow(window, steps); });
        Window().activateWindow(); // as the window manager does in a while
        EXPECT_TRUE(QTest::qWaitFor([this] { return Window().isActiveWindow(); }));
    }

    QStringList Boxes()
    {
        return {Box("txtCustomer").text(), Box("txtProject").text(), Box("txtActivity").text()};
    }
    QStringList Names()
    {
        QStringList names;
        for (const char *label : {"lblCustomerName", "lblProjectName", "lblActivityName"})
            names.append(Control<QLabel>(Window(), label).text());
        return names;
    }
    bool ProjectIsOpen()
    {
        QLineEdit &box = Box("txtProject");
        const bool white
            = box.palette().color(QPalette::Base) != box.palette().color(QPalette::Button);
        EXPECT_EQ(white, Control<QPushButton>(Window(), "cmdProject").isEnabled());
        EXPECT_TRUE(box.isEnabled());
        return white;
    }
    void Enter(const char *box, const QString &text)
    {
        Type(box, text);
        Press(Qt::Key_Return);
    }

    /// Some displays do not make the window the active one again after another one; it gets keys
    /// all the same, but its boxes learn nothing of the focus.
    void Deactivate()
    {
        {
            QDialog other;
            other.setModal(true);
            ASSERT_TRUE(ShowActive(other));
        }
        LetEventsRun();
        ASSERT_FALSE(Window().isActiveWindow());
    }

    std::unique_ptr<modTransFilter> FilterModule;
    QList<FilterField> EntryBoxesSelected;
};

} // namespace

TEST_F(TransFilter, WithoutCodesEverythingReadsAllAndTheProjectIsClosed)
{
    Company.Options.Customer_Term = u"R&D client"_s;
    Company.Options.Project_Term = u"Job"_s;
    Company.Options.Activity_Term = u"Task"_s;
    Open([this] {
        EXPECT_EQ(Control<QLabel>(Window(), "lblCustomer").text(), u"R&&D client"_s);
        EXPECT_EQ(Control<QLabel>(Window(), "lblProject").text(), u"Job"_s);
        EXPECT_EQ(Control<QLabel>(Window(), "lblActivity").text(), u"Task"_s);
        EXPECT_THAT(Boxes(), ElementsAre(QString(), QString(), QString()));
        EXPECT_THAT(Names(), ElementsAre(u"All"_s, u"All"_s, u"All"_s));
        EXPECT_FALSE(ProjectIsOpen());
        EXPECT_EQ(Focused(), u"txtCustomer"_s);
        EXPECT_TRUE(Window().isModal());
        Leave();
    });
}

TEST_F(TransFilter, OpensOnTheCodesInForceWithTheirNamesReadAfresh)
{
    Apply(u"0200"_s, u"AUDIT"_s, u"CONS"_s);
    Start();
    FilterModule->FilterCustomerName = u"Somebody else"_s;
    FilterModule->FilterProjectName = u"Something else"_s;
    FilterModule->FilterActivityName = u"Something else"_s;
    Open([this] {
        EXPECT_THAT(Boxes(), ElementsAre(u"0200"_s, u"AUDIT"_s, u"CONS"_s));
        EXPECT_THAT(
            Names(), ElementsAre(u"Brightwater Ltd"_s, u"Audit of the mill"_s, u"Consulting"_s));
        EXPECT_TRUE(ProjectIsOpen());
        EXPECT_EQ(Box("txtCustomer").selectedText(), u"0200"_s);
        Leave();
    });
}

TEST_F(TransFilter, TypedCodesAreCheckedOnEnterAndApplyOnOK)
{
    Open([this] {
        Enter("txtCustomer", u"0100"_s);
        EXPECT_EQ(Focused(), u"txtProject"_s);
        EXPECT_EQ(Names().at(0), u"Acme"_s);
        EXPECT_TRUE(ProjectIsOpen());
        Enter("txtProject", u"move"_s);
        EXPECT_EQ(Focused(), u"txtActivity"_s);
        EXPECT_EQ(Box("txtProject").text(), u"MOVE"_s) << "small letters arrive as capitals";
        EXPECT_EQ(Names().at(1), u"Office move"_s);
        Enter("txtActivity", u"Miles"_s);
        EXPECT_EQ(Focused(), u"cmdOK"_s);
        EXPECT_EQ(Names().at(2), u"Mileage"_s);
        EXPECT_THAT(Applied(), ElementsAre(QString(), QString(), QString()));
        Press(Qt::Key_Return);
    });
    EXPECT_THAT(Applied(), ElementsAre(u"0100"_s, u"MOVE"_s, u"MILES"_s));
    EXPECT_FALSE(Filter.FilterCancelled);
    EXPECT_FALSE(Filter.FilterCleared);
}

TEST_F(TransFilter, AnUnknownCodeGivesWayToThePreviousOneAndKeepsTheFocusOnEnter)
{
    Apply(u"0100"_s, u"AUDIT"_s, u"CONS"_s);
    Open([this] {
        for (const char *box : {"txtCustomer", "txtProject", "txtActivity"}) {
            SCOPED_TRACE(box);
            const QStringList boxes = Boxes();
            const QStringList names = Names();
            Enter(box, u"NONE"_s);
            EXPECT_EQ(Boxes(), boxes);
            EXPECT_EQ(Names(), names);
            EXPECT_EQ(Focused(), QString::fromLatin1(box));
            EXPECT_EQ(Box(box).selectedText(), Box(box).text());
            EXPECT_TRUE(Filter.FilterCodeReverted);
        }
        Leave();
    });
    EXPECT_THAT(Messages.Texts(), IsEmpty());
}

TEST_F(TransFilter, ACodeThatDiffersInCaseOrLengthIsUnknown)
{
    Company.Customers.push_back(SampleCustomer(u"abc"_s, u"Small"_s));
    Open([this] {
        Enter("txtCustomer", u"abc"_s);
        EXPECT_EQ(Boxes().at(0), QString());
        Enter("txtCustomer", u"010"_s);
        EXPECT_EQ(Boxes().at(0), QString());
        Leave();
    });
}

TEST_F(TransFilter, SpacesAfterACodeAreCutBeforeItIsChecked)
{
    Open([this] {
        Enter("txtCustomer", u"0100 "_s);
        Enter("txtProject", u"AUDIT  "_s);
        Enter("txtActivity", u"CONS "_s);
        EXPECT_THAT(Boxes(), ElementsAre(u"0100"_s, u"AUDIT"_s, u"CONS"_s));
        Enter("txtProject", u" "_s);
        EXPECT_EQ(Boxes().at(1), QString());
        EXPECT_EQ(Names().at(1), u"All"_s);
        ClickButton("cmdOK");
    });
    EXPECT_EQ(Filter.AppliedFilterCustomer, u"0100"_s);
    EXPECT_EQ(Filter.AppliedFilterProject, QString());
    EXPECT_EQ(Filter.AppliedFilterActivity, u"CONS"_s);
}

TEST_F(TransFilter, ARefusedCodeBackToNothingLeavesNoCustomersNameButAllForTheOthers)
{
    Company.Customers.push_back(SampleCustomer({}, u"Without a code"_s));
    Company.Activities.push_back(SampleActivity({}, u"Without a code"_s));
    Company.Projects.push_back(SampleProject(u"0100"_s, {}, u"Without a code"_s));
    Open([this] {
        Enter("txtCustomer", u"NONE"_s);
        EXPECT_THAT(Names(), ElementsAre(QString(), u"All"_s, u"All"_s));
        EXPECT_FALSE(ProjectIsOpen());
        Enter("txtActivity", u"NONE"_s);
        EXPECT_EQ(Names().at(2), u"All"_s);
        Enter("txtCustomer", u"0100"_s);
        Enter("txtProject", u"NONE"_s);
        EXPECT_THAT(Names(), ElementsAre(u"Acme"_s, u"All"_s, u"All"_s));
        Leave();
    });
}

TEST_F(TransFilter, LeavingABoxChecksItWithoutHoldingTheFocus)
{
    Apply(u"0100"_s, {}, {});
    Open([this] {
        Type("txtCustomer", u"NONE"_s);
        Press(Qt::Key_Tab);
        EXPECT_EQ(Boxes().at(0), u"0100"_s);
        EXPECT_EQ(Focused(), u"txtProject"_s);
        Type("txtActivity", u"NONE"_s);
        Press("txtCustomer", Qt::Key_Home);
        EXPECT_EQ(Boxes().at(2), QString());
        Leave();
    });
}

TEST_F(TransFilter, OKChecksTheBoxThatHasTheFocus)
{
    Apply(u"0100"_s, {}, {});
    Open([this] {
        Type("txtCustomer", u"NONE"_s);
        ClickButton("cmdOK");
    });
    EXPECT_EQ(Filter.AppliedFilterCustomer, u"0100"_s);
    Open([this] {
        Type("txtCustomer", u"0300"_s);
        Press("txtCustomer", Qt::Key_O, Qt::AltModifier);
        EXPECT_TRUE(QTest::qWaitFor([this] { return !Window().isVisible(); }));
    });
    EXPECT_EQ(Filter.AppliedFilterCustomer, u"0300"_s);
}

TEST_F(TransFilter, CodesTypedWhileTheWindowIsNotTheActiveOneCountToo)
{
    Open([this] {
        Deactivate();
        Type("txtCustomer", u"0100"_s);
        Type("txtActivity", u"none"_s);
        Type("txtProject", u"MOVE"_s);
        ClickButton("cmdOK");
    });
    EXPECT_THAT(Applied(), ElementsAre(u"0100"_s, u"MOVE"_s, QString()));
}

TEST_F(TransFilter, TheLookupListsProjectsOfACustomerTypedWhileTheWindowIsNotTheActiveOne)
{
    Open([this] {
        Enter("txtCustomer", u"0200"_s);
        Deactivate();
        Type("txtCustomer", u"0100"_s);
        Type("txtActivity", u"CONS"_s);
        InLookup([this] { ClickButton("cmdProject"); },
            [this] {
                EXPECT_THAT(Column(1), ElementsAre(u"AUDIT"_s, u"MOVE"_s));
                Press(Qt::Key_Escape);
            });
        Leave();
    });
}

TEST_F(TransFilter, ACodeThatIsPutBackIsNamedBesideItsBox)
{
    Open([this] {
        Type("txtCustomer", u"NONE"_s);
        Press("txtCustomer", Qt::Key_Return);
        EXPECT_TRUE(QTest::qWaitFor([] { return QToolTip::text() == u"No customer NONE."_s; }));
        EXPECT_EQ(Box("txtCustomer").accessibleDescription(), u"No customer NONE."_s);
        EXPECT_EQ(Focused(), u"txtCustomer"_s);
        Type("txtCustomer", u"0100"_s);
        EXPECT_EQ(Box("txtCustomer").accessibleDescription(), QString());
        Press("txtCustomer", Qt::Key_Tab);
        Type("txtProject", u"<B>X"_s);
        Press("txtProject", Qt::Key_Tab);
        EXPECT_TRUE(QTest::qWaitFor([] {
            return QToolTip::text() == u"<span>No project &lt;B&gt;X for customer 0100.</span>"_s;
        }));
        EXPECT_EQ(Focused(), u"txtActivity"_s) << "the tip takes no focus";
        QToolTip::hideText();
        Leave();
    });
}

TEST_F(TransFilter, EmptyingTheCustomerEmptiesTheProjectAndKeepsTheActivity)
{
    Apply(u"0100"_s, u"AUDIT"_s, u"CONS"_s);
    Open([this] {
        Enter("txtCustomer", {});
        EXPECT_THAT(Boxes(), ElementsAre(QString(), QString(), u"CONS"_s));
        EXPECT_THAT(Names(), ElementsAre(u"All"_s, u"All"_s, u"Consulting"_s));
        EXPECT_FALSE(ProjectIsOpen());
        ClickButton("cmdOK");
    });
    EXPECT_THAT(Applied(), ElementsAre(QString(), QString(), u"CONS"_s));
}

TEST_F(TransFilter, AnEmptiedCustomerTakesItsProjectAlongWhenOKIsClickedAtOnce)
{
    Apply(u"0100"_s, u"AUDIT"_s, u"CONS"_s);
    Open([this] {
        Type("txtCustomer", {});
        ClickButton("cmdOK");
    });
    EXPECT_THAT(Applied(), ElementsAre(QString(), QString(), u"CONS"_s));
}

TEST_F(TransFilter, ChangingTheCustomerKeepsTheProjectAndTheNameBesideIt)
{
    Apply(u"0100"_s, u"AUDIT"_s, {});
    const auto expectProjectKept = [this] {
        EXPECT_EQ(Boxes().at(1), u"AUDIT"_s);
        EXPECT_EQ(Names().at(1), u"Yearly audit"_s);
    };
    Open([&] {
        expectProjectKept();
        Enter("txtCustomer", u"0200"_s);
        expectProjectKept();
        Enter("txtCustomer", u"0300"_s);
        EXPECT_EQ(Focused(), u"txtProject"_s);
        expectProjectKept();
        Press(Qt::Key_Tab); // a code that has not changed is not looked up again
        EXPECT_EQ(Focused(), u"txtActivity"_s);
        expectProjectKept();
        ClickButton("cmdOK");
    });
    EXPECT_THAT(Applied(), ElementsAre(u"0300"_s, u"AUDIT"_s, QString()));
    Open([&] {
        expectProjectKept();
        Leave();
    });
}

TEST_F(TransFilter, AProjectTakenInALookupHasItsOwnCustomersName)
{
    Apply(u"0100"_s, u"AUDIT"_s, {});
    Open([this] {
        Enter("txtCustomer", u"0200"_s);
        InLookup([this] { ClickButton("cmdProject"); }, [this] { Press(Qt::Key_Return); });
        EXPECT_EQ(Boxes().at(1), u"AUDIT"_s);
        EXPECT_EQ(Names().at(1), u"Audit of the mill"_s);
        Leave();
    });
}

TEST_F(TransFilter, AnEmptiedCustomerDisablesTheProjectsButtonBeforeItsClickCounts)
{
    Apply(u"0100"_s, u"AUDIT"_s, u"CONS"_s);
    Open([this] {
        Type("txtCustomer", {});
        int opened = 0;
        QTimer unexpected;
        QObject::connect(&unexpected, &QTimer::timeout, &unexpected, [&] {
            QWidget *const modal = QApplication::activeModalWidget();
            if (modal == nullptr || modal == &Window())
                return;
            ++opened;
            modal->close();
        });
        unexpected.start(0);
        ClickButton("cmdProject");
        unexpected.stop();
        EXPECT_EQ(opened, 0);
        EXPECT_FALSE(ProjectIsOpen());
        EXPECT_THAT(Boxes(), ElementsAre(QString(), QString(), u"CONS"_s));
        EXPECT_THAT(Names(), ElementsAre(u"All"_s, u"All"_s, u"Consulting"_s));
        EXPECT_EQ(Focused(), u"txtCustomer"_s);
        Leave();
    });
    EXPECT_EQ(Lookup.LookupKind, QString());
}

TEST_F(TransFilter, AnEmptiedCustomerThenOKAppliesNoCustomerAndNoProject)
{
    const std::function<void()> ways[] = {[this] { ClickButton("cmdOK"); },
        [this] {
            QTest::keyClick(&Box("txtCustomer"), Qt::Key_O, Qt::AltModifier);
            EXPECT_TRUE(QTest::qWaitFor([this] { return !Window().isVisible(); }));
        }};
    for (const auto &way : ways) {
        Apply(u"0100"_s, u"AUDIT"_s, u"CONS"_s);
        Open([&] {
            Type("txtCustomer", {});
            way();
        });
        EXPECT_THAT(Applied(), ElementsAre(QString(), QString(), u"CONS"_s));
    }
}

TEST_F(TransFilter, BoxesShowCodesInSmallLettersAsTheyAre)
{
    Company.Customers.push_back(SampleCustomer(u"abc"_s, u"Small"_s));
    Company.Projects.push_back(SampleProject(u"abc"_s, u"p1"_s, u"Small work"_s));
    Apply(u"abc"_s, {}, {});
    Open([this] {
        EXPECT_EQ(Boxes().at(0), u"abc"_s);
        EXPECT_EQ(Names().at(0), u"Small"_s);
        InLookup([this] { ClickButton("cmdProject"); }, [this] { Press(Qt::Key_Return); });
        EXPECT_EQ(Boxes().at(1), u"p1"_s);
        EXPECT_EQ(Names().at(1), u"Small work"_s);
        Type("txtActivity", u"cons"_s);
        EXPECT_EQ(Boxes().at(2), u"CONS"_s) << "what is typed still becomes capitals";
        ClickButton("cmdOK");
    });
    EXPECT_THAT(Applied(), ElementsAre(u"abc"_s, u"p1"_s, u"CONS"_s));
}

TEST_F(TransFilter, ACodeThatTheStoreCouldNotCheckIsNeverApplied)
{
    Apply(u"0100"_s, {}, u"CONS"_s);
    Open([this] {
        const RecordStore::Handle handle = std::exchange(Folder->Tables.Activities.Handle, 0);
        Type("txtActivity", u"ZZ"_s);
        Press("txtActivity", Qt::Key_Tab); // leaves it, unlike Enter
        Folder->Tables.Activities.Handle = handle;
        EXPECT_EQ(Messages.Shown.size(), 1);
        EXPECT_THAT(Boxes(), ElementsAre(u"0100"_s, QString(), u"CONS"_s));
        EXPECT_EQ(Names().at(2), u"Consulting"_s);
        ClickButton("cmdOK");
    });
    EXPECT_THAT(Applied(), ElementsAre(u"0100"_s, QString(), u"CONS"_s));
}

TEST_F(TransFilter, AnotherCustomersProjectIsUnknown)
{
    Apply(u"0200"_s, {}, {});
    Open([this] {
        Enter("txtProject", u"MOVE"_s);
        EXPECT_EQ(Boxes().at(1), QString());
        EXPECT_EQ(Focused(), u"txtProject"_s);
        Leave();
    });
}

TEST_F(TransFilter, WithoutACustomerTheProjectPassesTheFocusOn)
{
    Open([this] {
        Press("txtCustomer", Qt::Key_Tab);
        EXPECT_EQ(Focused(), u"txtActivity"_s);
        EXPECT_EQ(Names().at(1), u"All"_s);
        QTest::mouseClick(&Box("txtProject"), Qt::LeftButton);
        LetEventsRun();
        EXPECT_EQ(Focused(), u"txtActivity"_s);
        Press("txtActivity", Qt::Key_Tab, Qt::ShiftModifier);
        EXPECT_EQ(Focused(), u"txtActivity"_s) << "it passes on forwards only";
        Leave();
    });
}

TEST_F(TransFilter, TheProjectsNameIsEmptyWhileItPassesTheFocusOn)
{
    Start();
    FilterModule->InitTransFilter();
    FilterModule->BoxGotFocus(FilterField::Project);
    EXPECT_EQ(FilterModule->FilterProjectName, QString());
    EXPECT_TRUE(FilterModule->PassesOn(FilterField::Project));
    FilterModule->CheckBox(FilterField::Project);
    EXPECT_EQ(FilterModule->FilterProjectName, u"All"_s);
}

TEST_F(TransFilter, EnteringABoxSelectsItsTextExceptWithTheMouse)
{
    Apply(u"0100"_s, u"AUDIT"_s, u"CONS"_s);
    Open([this] {
        Press("txtCustomer", Qt::Key_Tab);
        EXPECT_EQ(Box("txtProject").selectedText(), u"AUDIT"_s);
        QLineEdit &activity = Box("txtActivity");
        QTest::mouseClick(&activity, Qt::LeftButton, {}, {6, activity.height() / 2});
        EXPECT_EQ(Focused(), u"txtActivity"_s);
        EXPECT_FALSE(activity.hasSelectedText());
        Leave();
    });
}

TEST_F(TransFilter, EveryCancelKeepsTheFilterInForce)
{
    Apply(u"0100"_s, u"AUDIT"_s, u"CONS"_s);
    const std::function<void()> ways[]
        = {[this] { ClickButton("cmdCancel"); }, [this] { Press("cmdCancel", Qt::Key_Return); },
            [this] { Press("txtCustomer", Qt::Key_Escape); },
            [this] { Press("cmdHelp", Qt::Key_Escape); }, [this] { Window().close(); }};
    for (const auto &way : ways) {
        Filter.FilterCancelled = false;
        Open([&] {
            Enter("txtCustomer", u"0200"_s);
            way();
        });
        EXPECT_TRUE(Filter.FilterCancelled);
        EXPECT_FALSE(Filter.FilterCleared);
        EXPECT_THAT(Applied(), ElementsAre(u"0100"_s, u"AUDIT"_s, u"CONS"_s));
    }
}

TEST_F(TransFilter, ClearEmptiesTheFilterAtOnceAndStaysOpen)
{
    Apply(u"0100"_s, u"AUDIT"_s, u"CONS"_s);
    Open([this] {
        ClickButton("cmdClear");
        EXPECT_TRUE(Window().isVisible());
        EXPECT_THAT(Applied(), ElementsAre(QString(), QString(), QString()));
        EXPECT_THAT(Boxes(), ElementsAre(QString(), QString(), QString()));
        EXPECT_THAT(Names(), ElementsAre(u"All"_s, u"All"_s, u"All"_s));
        EXPECT_FALSE(ProjectIsOpen());
        EXPECT_EQ(Focused(), u"txtCustomer"_s);
        Enter("txtCustomer", u"NONE"_s);
        EXPECT_EQ(Boxes().at(0), QString()) << "what was there before the clearing is gone";
        Leave();
    });
    EXPECT_TRUE(Filter.FilterCleared);
    EXPECT_TRUE(Filter.FilterCancelled);
    EXPECT_THAT(Applied(), ElementsAre(QString(), QString(), QString()));
}

TEST_F(TransFilter, ALookupFromEachButtonTakesTheCodeAndMovesOn)
{
    Start();
    Entry.CustomerCode = u"0100"_s;
    Entry.ProjectCode = u"MOVE"_s;
    Open([this] {
        InLookup([this] { ClickButton("cmdCustomer"); },
            [this] {
                EXPECT_EQ(Window().windowTitle(), u"Customer Lookup"_s);
                EXPECT_TRUE(Lookup.LookupFromFilter);
                EXPECT_TRUE(Lookup.LookupPending);
                EXPECT_EQ(SelectedCode(), u"0100"_s);
                Press(Qt::Key_Down);
                Press(Qt::Key_Return);
            });
        EXPECT_THAT(Boxes(), ElementsAre(u"0200"_s, QString(), QString()));
        EXPECT_EQ(Names().at(0), u"Brightwater Ltd"_s);
        EXPECT_EQ(Focused(), u"txtProject"_s);
        EXPECT_TRUE(ProjectIsOpen());
        InLookup([this] { ClickButton("cmdProject"); },
            [this] {
                EXPECT_EQ(Panel(1), u"Found 1 record"_s) << "of the filter's customer";
                Press(Qt::Key_Return);
            });
        EXPECT_EQ(Boxes().at(1), u"AUDIT"_s);
        EXPECT_EQ(Names().at(1), u"Audit of the mill"_s);
        EXPECT_EQ(Focused(), u"txtActivity"_s);
        InLookup([this] { ClickButton("cmdActivity"); }, [this] { DoubleClickRow(2); });
        EXPECT_EQ(Boxes().at(2), u"MEALS"_s);
        EXPECT_EQ(Focused(), u"cmdOK"_s);
        Press(Qt::Key_Return);
    });
    EXPECT_THAT(Applied(), ElementsAre(u"0200"_s, u"AUDIT"_s, u"MEALS"_s));
    EXPECT_EQ(Entry.ProjectCode, u"AUDIT"_s) << "a picked project goes into the entry too";
    EXPECT_EQ(Entry.CustomerCode, u"0100"_s);
    EXPECT_FALSE(Lookup.LookupFromFilter);
    EXPECT_FALSE(Lookup.LookupSelected);
    EXPECT_THAT(EntryBoxesSelected, IsEmpty());
}

TEST_F(TransFilter, F2OpensTheLookupAtTheTypedText)
{
    Company.Customers = NumberedCustomers(50);
    Open([this] {
        InLookup(
            [this] {
                Type("txtCustomer", u"C030"_s);
                Press(Qt::Key_F2);
            },
            [this] {
                EXPECT_EQ(SelectedCode(), u"C030"_s);
                EXPECT_EQ(Box("txtLookup").text(), QString());
                Press(Qt::Key_Down);
                Press(Qt::Key_Return);
            });
        EXPECT_EQ(Boxes().at(0), u"C031"_s);
        EXPECT_FALSE(Lookup.LookupStartPending);
        Leave();
    });
}

TEST_F(TransFilter, F2SearchesForTheTextOfEachBoxAndTakesTheChoiceIntoIt)
{
    struct Case
    {
        const char *Box;
        QString Typed;
        QString Code;
        QString Focused;
    };
    Company.Customers = NumberedCustomers(50);
    Company.Projects.clear();
    Company.Activities.clear();
    for (int i = 10; i < 60; ++i) {
        const QString number = QString::number(i);
        Company.Projects.push_back(SampleProject(u"C030"_s, u"P"_s + number, u"Work"_s));
        Company.Activities.push_back(SampleActivity(u"A"_s + number, u"Work"_s));
    }
    Open([this] {
        for (const Case &c : {Case{"txtCustomer", u"c03"_s, u"C030"_s, u"txtProject"_s},
                 Case{"txtProject", u"p41"_s, u"P41"_s, u"txtActivity"_s},
                 Case{"txtActivity", u"a335"_s, u"A34"_s, u"cmdOK"_s}}) {
            SCOPED_TRACE(c.Box);
            InLookup(
                [&] {
                    Type(c.Box, c.Typed);
                    Press(Qt::Key_F2);
                },
                [&] {
                    EXPECT_EQ(SelectedCode(), c.Code);
                    Press(Qt::Key_Return);
                });
            EXPECT_EQ(Box(c.Box).text(), c.Code);
            EXPECT_EQ(Focused(), c.Focused);
        }
        ClickButton("cmdOK");
    });
    EXPECT_THAT(Applied(), ElementsAre(u"C030"_s, u"P41"_s, u"A34"_s));
}

TEST_F(TransFilter, ACancelledF2OnAnUnknownTextPutsEachPreviousCodeBack)
{
    Apply(u"0100"_s, u"AUDIT"_s, u"CONS"_s);
    Open([this] {
        for (const char *box : {"txtCustomer", "txtProject", "txtActivity"}) {
            SCOPED_TRACE(box);
            InLookup(
                [&] {
                    Type(box, u"ZZ"_s);
                    Press(Qt::Key_F2);
                },
                [this] { Window().close(); }); // as its title bar does
            EXPECT_THAT(Boxes(), ElementsAre(u"0100"_s, u"AUDIT"_s, u"CONS"_s));
            EXPECT_EQ(Focused(), QString::fromLatin1(box));
        }
        Leave();
    });
}

TEST_F(TransFilter, ACancelledLookupKeepsAClickedProjectAndActivityToo)
{
    Apply(u"0100"_s, {}, {});
    Open([this] {
        for (const char *button : {"cmdProject", "cmdActivity"})
            InLookup([&] { ClickButton(button); },
                [this] {
                    ClickRow(2);
                    ClickButton("cmdCancel");
                });
        EXPECT_THAT(Boxes(), ElementsAre(u"0100"_s, u"MOVE"_s, u"MEALS"_s));
        EXPECT_THAT(Names(), ElementsAre(u"Acme"_s, u"Office move"_s, u"Meals"_s));
        Leave();
    });
    EXPECT_EQ(Entry.ProjectCode, u"MOVE"_s);
    EXPECT_THAT(Applied(), ElementsAre(u"0100"_s, QString(), QString()));
}

TEST_F(TransFilter, HelpSendsF1)
{
    Open([this] {
        const HelpKeys keys;
        ClickButton("cmdHelp");
        EXPECT_EQ(keys.Count, 1);
        Press("txtActivity", Qt::Key_F1);
        EXPECT_EQ(keys.Count, 2);
        Leave();
    });
}

TEST_F(TransFilter, WhatTheStoreRefusesIsToldAndTheFilterStaysUsable)
{
    Apply(u"0100"_s, {}, {});
    Open([this] {
        Folder->Tables.Activities.Handle = 0; // as if it were not open
        Enter("txtActivity", u"CONS"_s);
        ASSERT_EQ(Messages.Shown.size(), 1);
        EXPECT_TRUE(Messages.Shown[0].Text.startsWith(u"Error #"_s));
        EXPECT_EQ(Messages.Shown[0].Icon, MessageIcon::Exclamation);
        EXPECT_EQ(Focused(), u"txtActivity"_s);
        Type("txtActivity", {});
        Enter("txtCustomer", u"0200"_s);
        EXPECT_EQ(Names().at(0), u"Brightwater Ltd"_s);
        Leave();
    });
}

TEST_F(TransFilter, TheButtonOpensTheLookupAtTheTop)
{
    Company.Customers = NumberedCustomers(50);
    Open([this] {
        Enter("txtCustomer", u"C030"_s);
        InLookup([this] { ClickButton("cmdCustomer"); },
            [this] {
                EXPECT_EQ(SelectedCode(), u"C001"_s);
                Press(Qt::Key_Escape);
            });
        Leave();
    });
}

TEST_F(TransFilter, ACancelledLookupGoesBackToItsBoxAndSelectsTheEntryWindowsOwn)
{
    Apply(u"0100"_s, u"AUDIT"_s, u"CONS"_s);
    struct Case
    {
        const char *Button;
        const char *Box;
        FilterField Field;
    };
    Open([this] {
        for (const Case &c : {Case{"cmdCustomer", "txtCustomer", FilterField::Customer},
                 Case{"cmdProject", "txtProject", FilterField::Project},
                 Case{"cmdActivity", "txtActivity", FilterField::Activity}}) {
            SCOPED_TRACE(c.Button);
            EntryBoxesSelected.clear();
            InLookup([&] { ClickButton(c.Button); }, [this] { Press(Qt::Key_Escape); });
            EXPECT_FALSE(Lookup.LookupCancelled);
            EXPECT_EQ(Lookup.LookupKind, QString());
            EXPECT_EQ(FilterModule->FilterFocusKey, QString()) << "used and emptied";
            EXPECT_THAT(EntryBoxesSelected, ElementsAre(c.Field));
            EXPECT_EQ(Focused(), QString::fromLatin1(c.Box));
            EXPECT_THAT(Boxes(), ElementsAre(u"0100"_s, u"AUDIT"_s, u"CONS"_s));
        }
        Leave();
    });
}

TEST_F(TransFilter, ACancelledLookupKeepsAClickedRecord)
{
    Apply(u"0100"_s, u"MOVE"_s, {});
    Open([this] {
        InLookup([this] { ClickButton("cmdCustomer"); },
            [this] {
                ClickRow(2);
                Press(Qt::Key_Escape);
            });
        EXPECT_EQ(Boxes().at(0), u"0200"_s);
        EXPECT_EQ(Names().at(0), u"Brightwater Ltd"_s);
        Leave();
    });
    EXPECT_EQ(Filter.AppliedFilterCustomer, u"0100"_s);
}

TEST_F(TransFilter, ACancelledF2OnAnUnknownTextPutsThePreviousCodeBack)
{
    Apply(u"0100"_s, {}, {});
    Open([this] {
        InLookup(
            [this] {
                Type("txtCustomer", u"ZZ"_s);
                Press(Qt::Key_F2);
            },
            [this] { Press(Qt::Key_Escape); });
        EXPECT_EQ(Boxes().at(0), u"0100"_s);
        EXPECT_EQ(Names().at(0), u"Acme"_s);
        EXPECT_EQ(Focused(), u"txtCustomer"_s);
        Leave();
    });
}

TEST_F(TransFilter, ABoxThatTheFocusComesBackToRemembersItsTextAnew)
{
    Apply(u"0100"_s, {}, {});
    Open([this] {
        InLookup(
            [this] {
                Type("txtCustomer", u"0200"_s);
                Press(Qt::Key_F2);
            },
            [this] { Press(Qt::Key_Escape); });
        EXPECT_EQ(Box("txtCustomer").selectedText(), u"0200"_s);
        Enter("txtCustomer", u"NONE"_s);
        EXPECT_EQ(Boxes().at(0), u"0200"_s);
        Window().activateWindow();
        ASSERT_TRUE(WaitUntilActive(Window()));
        Press("txtCustomer", Qt::Key_L, Qt::AltModifier);
        EXPECT_TRUE(QTest::qWaitFor([this] { return Filter.FilterCleared; }));
        EXPECT_EQ(Focused(), u"txtCustomer"_s);
        Enter("txtCustomer", u"NONE"_s);
        EXPECT_EQ(Boxes().at(0), QString());
        Leave();
    });
}

TEST_F(TransFilter, TheCodeFromBeforeTakenInALookupHasItsOwnNameAgain)
{
    Apply(u"0100"_s, {}, {});
    Open([this] {
        Type("txtCustomer", u"0200"_s);
        InLookup([this] { ClickButton("cmdCustomer"); }, [this] { Press(Qt::Key_Return); });
        EXPECT_EQ(Boxes().at(0), u"0100"_s);
        EXPECT_EQ(Names().at(0), u"Acme"_s);
        Leave();
    });
}

TEST_F(TransFilter, TheAppliedCodesDecideTogetherWhatPasses)
{
    Company.Entries
        = std::vector{SampleEntry(u"0100"_s, u"AUDIT"_s, u"CONS"_s, QDate(2026, 3, 9), {}),
            SampleEntry(u"0200"_s, u"MOVE"_s, u"MILES"_s, QDate(2026, 3, 9), {})};
    Start();
    struct Case
    {
        const char *Name;
        QStringList Applied;
        bool Passes;
    };
    for (const Case &c :
        {Case{"nothing applied", {{}, {}, {}}, true}, Case{"customer", {u"0100"_s, {}, {}}, true},
            Case{"another customer", {u"0200"_s, {}, {}}, false},
            Case{"activity", {{}, {}, u"CONS"_s}, true},
            Case{"customer and another activity", {u"0100"_s, {}, u"MILES"_s}, false},
            Case{"another project", {{}, u"MOVE"_s, {}}, false},
            Case{"a customer that differs in case", {{}, u"audit"_s, {}}, false},
            Case{"all three", {u"0100"_s, u"AUDIT"_s, u"CONS"_s}, true}}) {
        Apply(c.Applied.at(0), c.Applied.at(1), c.Applied.at(2));
        const modDBEntr &entries = Folder->Tables.Entries;
        EXPECT_EQ(EntryFilter(Filter, entries).Passes(entries.ReadNumbers()), c.Passes) << c.Name;
    }
}
