#include "lookup/frmTransFilter.h"

#include "lookup/frmLookup.h"
#include "lookup/ui_frmTransFilter.h"
#include "platform/clsRunTimeError.h"
#include "platform/clsUpperCase.h"
#include "platform/DataLabel.h"
#include "platform/FormEvents.h"
#include "platform/PlainToolTip.h"

#include <QAccessible>
#include <QTimer>
#include <QToolTip>

using namespace Qt::StringLiterals;

frmTransFilter::frmTransFilter(modTransFilter &module, modLookup &lookup, clsMessageBox &messages,
    clsSendKeys &keys, QWidget *parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::frmTransFilter>())
    , m_mod(module)
    , m_lookup(lookup)
    , m_messages(messages)
    , m_keys(keys)
{
    ui->setupUi(this);
    m_rows = {{{FilterField::Customer, ui->lblCustomer, ui->txtCustomer, ui->cmdCustomer,
                   ui->lblCustomerName},
        {FilterField::Project, ui->lblProject, ui->txtProject, ui->cmdProject, ui->lblProjectName},
        {FilterField::Activity, ui->lblActivity, ui->txtActivity, ui->cmdActivity,
            ui->lblActivityName}}};
    for (const Row &row : m_rows)
        ConnectRow(row);
    for (QPushButton *button : {ui->cmdOK, ui->cmdCancel, ui->cmdClear, ui->cmdHelp})
        button->installEventFilter(this);
    connect(ui->cmdOK, &QPushButton::clicked, this, &frmTransFilter::cmdOK_Click);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &frmTransFilter::reject);
    connect(ui->cmdClear, &QPushButton::clicked, this, &frmTransFilter::cmdClear_Click);
    connect(ui->cmdHelp, &QPushButton::clicked, this, [this] { m_keys.SendKeys(u"{F1}"_s); });
}

frmTransFilter::~frmTransFilter() = default;

void frmTransFilter::ConnectRow(const Row &row)
{
    row.Box->installEventFilter(this);
    row.Box->setValidator(new clsUpperCase(row.Box));
    const FilterField field = row.Field;
    connect(
        row.Box, &QLineEdit::textEdited, this, [this, field, box = row.Box](const QString &text) {
            m_mod.Text(field) = text;
            box->setAccessibleDescription({});
            QToolTip::hideText();
        });
    connect(row.Button, &QPushButton::clicked, this, [this, field, button = row.Button] {
        // The check may have emptied the customer and with it disabled the project's button.
        if (CheckTypedCodes() && button->isEnabled())
            OpenLookup(field, LookupStart::AtTheTop);
    });
}

const frmTransFilter::Row &frmTransFilter::RowOf(FilterField field) const
{
    return m_rows.at(static_cast<size_t>(field));
}

const frmTransFilter::Row *frmTransFilter::RowWithBox(const QObject *box) const
{
    for (const Row &row : m_rows) {
        if (row.Box == box)
            return &row;
    }
    return nullptr;
}

void frmTransFilter::ShowModal()
{
    Form_Load();
    Form_Activate(FilterField::Customer);
    exec();
}

void frmTransFilter::Form_Load()
{
    m_mod.InitTransFilter();
    Render();
}

void frmTransFilter::Form_Activate(std::optional<FilterField> focus)
{
    m_mod.FilterFocusKey.clear();
    if (focus)
        FocusTo(*focus);
}

bool frmTransFilter::Handle(const std::function<void()> &action)
{
    bool succeeded = true;
    try {
        action();
    } catch (const clsRunTimeError &error) {
        Render();
        m_messages.Tell(error.Message());
        succeeded = false;
    }
    Render();
    return succeeded;
}

void frmTransFilter::Render()
{
    for (const Row &row : m_rows) {
        ShowData(*row.Label, CaptionText(m_mod.Caption(row.Field)));
        row.Button->setAccessibleName(LookUpName(m_mod.Caption(row.Field)));
        ShowCode(*row.Box, m_mod.Text(row.Field));
        ShowData(*row.Name, m_mod.Name(row.Field));
    }
    DrawBackground(*ui->txtProject, !m_mod.ProjectIsOpen());
    ui->cmdProject->setEnabled(m_mod.ProjectIsOpen());
}

void frmTransFilter::GotFocus(const Row &row, bool byMouse)
{
    if (!byMouse)
        row.Box->selectAll();
    m_mod.BoxGotFocus(row.Field);
    Render();
    if (m_mod.PassesOn(row.Field))
        m_keys.SendKeys(u"{TAB}"_s);
}

void frmTransFilter::FocusTo(FilterField field)
{
    const Row &row = RowOf(field);
    const bool arrivesNow = isActiveWindow() && !row.Box->hasFocus();
    row.Box->setFocus(Qt::OtherFocusReason);
    if (!arrivesNow)
        GotFocus(row, false);
}

bool frmTransFilter::CheckTypedCodes()
{
    bool checked = true;
    for (const Row &row : m_rows) {
        if (row.Box == focusWidget() || m_mod.IsUnchecked(row.Field))
            checked = Check(row) && checked;
    }
    return checked;
}

bool frmTransFilter::Check(const Row &row)
{
    const bool checked = Handle([&] { m_mod.CheckBox(row.Field); });
    const QString why = m_mod.PutBackText();
    row.Box->setAccessibleDescription(why);
    if (why.isEmpty())
        return checked;
    QAccessibleEvent alert(row.Box, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
    // Where the name would stand, so that it covers nothing to press; and when the focus has
    // arrived where it goes, as its coming hides every tip.
    QTimer::singleShot(0, row.Name, [name = row.Name, why] {
        constexpr int belowThePoint = 16; // is where a tip is shown
        QToolTip::showText(name->mapToGlobal(QPoint(0, -belowThePoint)), PlainToolTip(why), name);
    });
    return checked;
}

void frmTransFilter::OpenLookup(FilterField field, LookupStart start)
{
    bool chosen = false;
    Handle([&] {
        chosen = m_mod.LookUp(field, start, [this] {
            frmLookup form(m_lookup, m_messages, m_keys, this);
            form.ShowModal();
        });
    });
    if (chosen)
        MoveOnAfter(field);
    else
        Form_Activate(m_mod.FocusWanted());
}

void frmTransFilter::MoveOnAfter(FilterField field)
{
    switch (field) {
    case FilterField::Customer:
        FocusTo(FilterField::Project);
        break;
    case FilterField::Project:
        FocusTo(FilterField::Activity);
        break;
    case FilterField::Activity:
        ui->cmdOK->setFocus(Qt::OtherFocusReason);
        break;
    }
}

bool frmTransFilter::HandleBoxKey(const Row &row, const QKeyEvent &event)
{
    if (event.key() == Qt::Key_F2) {
        OpenLookup(row.Field, LookupStart::AtTheText);
        return true;
    }
    if (!IsEnter(event))
        return false;
    if (!Check(row) || m_mod.CodeReverted())
        row.Box->selectAll();
    else
        m_keys.SendKeys(u"{TAB}"_s);
    return true;
}

bool frmTransFilter::HandleBoxEvent(const Row &row, QEvent &event)
{
    switch (event.type()) {
    case QEvent::KeyPress:
        return HandleBoxKey(row, static_cast<QKeyEvent &>(event));
    case QEvent::FocusIn: {
        const auto &focus = static_cast<QFocusEvent &>(event);
        if (EntersField(focus))
            GotFocus(row, focus.reason() == Qt::MouseFocusReason);
        return false;
    }
    case QEvent::FocusOut:
        if (isVisible() && EntersField(static_cast<QFocusEvent &>(event)))
            Check(row);
        return false;
    default:
        return false;
    }
}

bool frmTransFilter::eventFilter(QObject *watched, QEvent *event)
{
    if (const Row *row = RowWithBox(watched))
        return HandleBoxEvent(*row, *event);
    auto *button = qobject_cast<QPushButton *>(watched);
    if (button == nullptr || event->type() != QEvent::KeyPress
        || !IsEnter(static_cast<QKeyEvent &>(*event)))
        return false;
    button->click();
    return true;
}

void frmTransFilter::cmdOK_Click()
{
    if (!CheckTypedCodes())
        return;
    m_mod.OK();
    done(Accepted);
}

void frmTransFilter::reject()
{
    m_mod.Cancel();
    done(Rejected);
}

void frmTransFilter::cmdClear_Click()
{
    Handle([this] { m_mod.Clear(); });
    FocusTo(FilterField::Customer);
}
