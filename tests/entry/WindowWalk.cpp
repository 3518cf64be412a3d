#include "tests/entry/WindowWalk.h"

#include "platform/clsGrid.h"
#include "tests/support/Windows.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QTimer>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace {

constexpr size_t RememberedLines = 60;
void WriteFile(const QString &name, const QByteArray &contents)
{
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size())
        throw std::runtime_error(name.toStdString());
}

/// What a synchronization needs to start its client.
void BuildInstallation(const QString &folder)
{
    const QString root = folder + u"/mas90"_s;
    QDir().mkpath(root + u"/soa"_s);
    QDir().mkpath(root + u"/Home"_s);
    WriteFile(root + u"/soa/startup.m4p"_s, {});
    WriteFile(root + u"/Home/pvxwin32.exe"_s, {});
    WriteFile(folder + u"/mas90.ini"_s, (root + u"\n-ARG X\n"_s).toUtf8());
}

constexpr int NoDrag = 100000; // pixels: a drag of text would wait in a loop of its own

} // namespace

WindowWalk::WindowWalk(int kind)
    : m_folder(SampleFolderTemplate())
    , m_companies(WalkCompanies(kind))
{
    // Double clicks are made on purpose, and a list that opens takes the next click at once.
    QApplication::setDoubleClickInterval(0);
    QApplication::setStartDragDistance(NoDrag);
    QApplication::setCursorFlashTime(0);
    QApplication::clipboard()->clear(); // what another walk has cut is not pasted here
    BuildSampleCompanies(m_folder.path(), m_companies);
    BuildInstallation(m_folder.path());
    m_oracle = std::make_unique<WalkOracle>(m_folder.path(), m_companies, m_files.NameOfSafeDisk());
    m_hands.Before = [this](const QString &what) { EventComes(what); };
    m_hands.After = [this] { EventIsOver(); };
    qApp->installEventFilter(this);
    StartProgram();
}

WindowWalk::~WindowWalk()
{
    qApp->removeEventFilter(this);
    m_program.reset();
    QApplication::setDoubleClickInterval(400);
    QApplication::setStartDragDistance(10);
}

void WindowWalk::StartProgram()
{
    m_program.reset();
    m_ended = false;
    m_program = std::make_unique<clsProgram>(
        m_folder.path(), ProgramServices{*this, m_keys, m_process, m_clock, m_settings, m_browser});
    QObject::connect(m_program.get(), &clsProgram::Ended, this, [this] { m_ended = true; });
    m_oracle->ProgramStarts();
    m_program->StartUp();
    if (Window() == nullptr || !ShowActive(*Window()))
        m_oracle->Find(u"the program does not start"_s);
    m_lastWindow = Window();
    LetEventsRun();
}

QString WindowWalk::LastSteps() const
{
    QStringList lines(m_lines.begin(), m_lines.end());
    return lines.join(u'\n');
}

void WindowWalk::Write(const QString &line)
{
    m_lines.push_back(QString(m_depth * 2, u' ') + line);
    if (m_lines.size() > RememberedLines)
        m_lines.pop_front();
}

QWidget &WindowWalk::Any(const QString &name) const
{
    return Control<QWidget>(*Window(), qPrintable(name));
}

clsGrid &WindowWalk::Grid() const
{
    return Control<clsGrid>(*Window(), "msgEntryList");
}

const SampleCompany &WindowWalk::Company() const
{
    const auto &list = Control<QComboBox>(*Window(), "cboCompany");
    const SampleCompany *company = m_oracle->CompanyOf(list.currentText());
    return company != nullptr ? *company : m_companies.front();
}

void WindowWalk::EventComes(const QString &what)
{
    Write(what);
    ++m_depth;
    const QWidget *focus = QApplication::focusWidget();
    m_focus = focus == nullptr ? QString() : focus->objectName();
    m_fieldPressed = m_fieldPressed || what.contains(m_focus + u" at "_s);
    if (MenuHasTheKeys())
        m_oracle->MayAskMore();
    m_oracle->EventComes(IsOpen() ? Window() : nullptr);
}

void WindowWalk::EventIsOver()
{
    --m_depth;
    const QWidget *focus = QApplication::focusWidget();
    if (focus == nullptr || focus->objectName() != m_focus)
        m_fieldPressed = false;
    if (m_storeFails && m_files.Failed() > 0)
        m_oracle->StoreFailed();
    m_oracle->EventIsOver(IsOpen() ? Window() : nullptr);
    if (m_depth > 0 || !IsOpen() || QApplication::activeModalWidget() != nullptr
        || QApplication::activePopupWidget() != nullptr)
        return;
    // As a window manager does when a dialog or a menu has closed.
    if (QGuiApplication::focusWindow() != Window()->windowHandle())
        ShowActive(*Window());
    if (Window() != m_lastWindow.data())
        m_oracle->ProgramStarts();
    m_lastWindow = Window();
    if (qobject_cast<QMenuBar *>(QApplication::focusWidget()) == nullptr)
        m_oracle->AtRest(*Window());
    m_ended = m_ended || m_oracle->IsLocked();
}

MessageAnswer WindowWalk::Ask(
    const QString &text, MessageIcon icon, MessageButtons buttons, MessageAnswer preset)
{
    if (m_storeFails && m_files.Failed() > 0)
        m_oracle->StoreFailed();
    m_oracle->MessageOpens(IsOpen() ? Window() : nullptr, text);
    MessageAnswer answer = MessageAnswer::OK;
    if (text.contains(u"All application data will be lost"_s)) {
        answer = MessageAnswer::No;
    } else if (m_chance.Percent(30)) {
        m_boxes.SetParent(Window());
        answer = m_boxes.Ask(text, icon, buttons, preset);
    } else if (buttons == MessageButtons::YesNoCancel) {
        answer
            = m_chance.Of(std::array{MessageAnswer::Yes, MessageAnswer::No, MessageAnswer::Cancel});
    } else if (buttons == MessageButtons::YesNo) {
        answer = m_chance.Of(std::array{MessageAnswer::Yes, MessageAnswer::No});
    }
    constexpr std::array names = {"OK", "Yes", "No", "Cancel"};
    Write(u"message \"%1\": %2"_s.arg(text, QLatin1String(names.at(static_cast<size_t>(answer)))));
    m_oracle->MessageAnswered(text, answer);
    return answer;
}

bool WindowWalk::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonRelease || event->type() == QEvent::KeyPress
        || event->type() == QEvent::Shortcut)
        if (auto *button = qobject_cast<QPushButton *>(watched))
            m_oracle->CommandPressed(button->objectName());
    if (event->type() == QEvent::MouseButtonRelease)
        if (const auto *list = qobject_cast<clsGrid *>(watched->parent()))
            m_clickedCode = list->TextMatrix(list->Row(), 1);
    if (event->type() != QEvent::Show)
        return false;
    if (auto *dialog = qobject_cast<QDialog *>(watched); dialog != nullptr && dialog->isModal()) {
        QTimer::singleShot(
            0, dialog, [this, shown = QPointer(dialog)] { Safely([&] { UseDialog(shown); }); });
        if (dialog->objectName() == "frmTransFilter"_L1)
            FollowFilter(*dialog);
        if (dialog->objectName() == "frmLookup"_L1 && dialog->parent() == Window())
            FollowLookup(*dialog);
    }
    auto *menu = qobject_cast<QMenu *>(watched);
    if (menu != nullptr && !menu->objectName().startsWith(u"mnu"_s))
        QTimer::singleShot(
            0, menu, [this, shown = QPointer(menu)] { Safely([&] { UseContextMenu(shown); }); });
    return false;
}

void WindowWalk::Safely(const std::function<void()> &use)
{
    try {
        use();
    } catch (const std::exception &error) {
        m_oracle->Find(u"exception: "_s + QString::fromUtf8(error.what()));
    }
}

void WindowWalk::FollowFilter(QDialog &dialog)
{
    connect(&Control<QPushButton>(dialog, "cmdClear"), &QPushButton::clicked, this, [this] {
        m_oracle->FilterLeft({QString(), QString(), QString()});
    });
    connect(&dialog, &QDialog::finished, this, [this, &dialog](int result) {
        if (result != QDialog::Accepted)
            return;
        QStringList codes;
        for (const char *box : {"txtCustomer", "txtProject", "txtActivity"})
            codes.append(Control<QLineEdit>(dialog, box).text());
        m_oracle->FilterLeft(codes);
    });
}

void WindowWalk::FollowLookup(QDialog &dialog)
{
    m_clickedCode.clear();
    connect(&dialog, &QDialog::finished, this, [this, title = dialog.windowTitle()] {
        if (m_clickedCode.isEmpty())
            return;
        if (title == Company().Options.Project_Term + u" Lookup"_s)
            m_oracle->CodeClicked(u"txtProject"_s, m_clickedCode);
        else if (title == "Billing Rate Multiplier Lookup"_L1)
            m_oracle->CodeClicked(u"txtMultiplierCode"_s, m_clickedCode);
    });
}

void WindowWalk::Step(unsigned number)
{
    m_chance = WalkChance(number);
    m_oracle->StepBegins();
    if (!IsOpen())
        StartProgram();
    m_storeFails = m_chance.Percent(4);
    if (m_storeFails) {
        m_files.FailAt(1 + m_chance.Below(8), m_chance.Percent(50) ? 1 : NoDrag);
        Write(u"(the store fails)"_s);
    }
    QWidget *popUp = QApplication::activePopupWidget();
    if (popUp != nullptr && m_chance.Percent(85))
        PopUpStep(*popUp);
    else
        Do();
    m_files.Stop();
    if (m_storeFails && m_files.Failed() > 0) {
        ++StoreFailures;
        m_storeFails = false;
        // What the failure has left unread is read again.
        if (IsOpen() && QApplication::activePopupWidget() == nullptr) {
            m_oracle->StepBegins();
            ClickControl(u"cmdUndo"_s);
        }
    }
    m_storeFails = false;
}

void WindowWalk::Do()
{
    using Action = void (WindowWalk::*)();
    struct Weighted
    {
        int Weight;
        Action Run;
    };
    static constexpr std::array actions
        = {Weighted{16, &WindowWalk::TypeAnything}, Weighted{20, &WindowWalk::PressAnyKey},
            Weighted{14, &WindowWalk::ClickAnything}, Weighted{14, &WindowWalk::UseGrid},
            Weighted{14, &WindowWalk::EnterField}, Weighted{3, &WindowWalk::EnterEntry},
            Weighted{5, &WindowWalk::PickFromList}, Weighted{3, &WindowWalk::PickDate},
            Weighted{6, &WindowWalk::PressCommand}, Weighted{3, &WindowWalk::OpenDialog},
            Weighted{2, &WindowWalk::UseMenu}, Weighted{3, &WindowWalk::PasteOrDrop},
            Weighted{1, &WindowWalk::ChangeWindow}, Weighted{1, &WindowWalk::LeaveOrClose}};
    int total = 0;
    for (const Weighted &action : actions)
        total += action.Weight;
    int chosen = m_chance.Below(total);
    for (const Weighted &action : actions) {
        chosen -= action.Weight;
        if (chosen < 0)
            return (this->*action.Run)();
    }
}
