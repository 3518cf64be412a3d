#include "sync/frmConfigure.h"

#include "platform/FormEvents.h"
#include "sync/ui_frmConfigure.h"

#include <QKeyEvent>
#include <QSignalBlocker>

using namespace Qt::StringLiterals;

namespace {

void DrawText(QLineEdit &box, const QString &text)
{
    if (box.text() != text)
        box.setText(text);
}

void DrawServerBox(QLineEdit &box, const QString &text, bool enabled)
{
    DrawText(box, text);
    box.setEnabled(enabled);
    DrawBackground(box, !enabled);
}

} // namespace

frmConfigure::frmConfigure(
    modConfigure &module, clsMessageBox &messages, clsSendKeys &keys, QWidget *parent)
    : clsSyncDialog(messages, parent)
    , ui(std::make_unique<Ui::frmConfigure>())
    , m_module(module)
    , m_keys(keys)
{
    ui->setupUi(this);
    ConnectFields();
    ConnectButtons();
}

frmConfigure::~frmConfigure() = default;

void frmConfigure::ConnectFields()
{
    const auto connectBox = [this](QLineEdit *box, void (modConfigure::*type)(const QString &)) {
        box->installEventFilter(this);
        connect(box, &QLineEdit::textEdited, this,
            [this, type](const QString &typed) { (m_module.*type)(typed); });
    };
    connectBox(ui->txtMas90Path, &modConfigure::TypePath);
    connectBox(ui->tbxHost, &modConfigure::TypeHost);
    connectBox(ui->tbxPort, &modConfigure::TypePort);

    const auto connectKind = [this](QRadioButton *button, Installation kind) {
        connect(button, &QRadioButton::toggled, this, [this, kind](bool selected) {
            if (selected)
                Handle([&] { m_module.SelectKind(kind); });
        });
    };
    connectKind(ui->optMas90_0, Installation::MAS90);
    connectKind(ui->optMas90_1, Installation::MAS200Client);
}

void frmConfigure::ConnectButtons()
{
    connect(ui->cmdBrowse, &QPushButton::clicked, this,
        [this] { Handle([this] { m_module.Browse(); }); });
    connect(ui->cmdAccept, &QPushButton::clicked, this, &frmConfigure::cmdAccept_Click);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(ui->cmdHelp, &QPushButton::clicked, this, [this] { m_keys.SendKeys(u"{F1}"_s); });
}

void frmConfigure::Load()
{
    Handle([this] { m_module.Load(); });
    (ui->optMas90_1->isChecked() ? ui->optMas90_1 : ui->optMas90_0)->setFocus();
}

void frmConfigure::Render()
{
    const ConfigureScreen &screen = m_module.Screen;
    const QSignalBlocker blocked0(ui->optMas90_0);
    const QSignalBlocker blocked1(ui->optMas90_1);
    ui->optMas90_0->setChecked(screen.Kind == Installation::MAS90);
    ui->optMas90_1->setChecked(screen.Kind == Installation::MAS200Client);
    ui->lblMas90Path->setText(screen.PathLabel);
    DrawText(*ui->txtMas90Path, screen.Mas90Path);
    ui->lblMAS200Host->setEnabled(screen.ServerEnabled);
    ui->lblMAS200Port->setEnabled(screen.ServerEnabled);
    DrawServerBox(*ui->tbxHost, screen.Host, screen.ServerEnabled);
    DrawServerBox(*ui->tbxPort, screen.Port, screen.ServerEnabled);
    DrawPanels(*ui->StatusBar1, m_module.Panels());
}

bool frmConfigure::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return QDialog::eventFilter(watched, event);
    if (!IsEnter(*static_cast<QKeyEvent *>(event)))
        return QDialog::eventFilter(watched, event);
    m_keys.SendKeys(u"{TAB}"_s);
    return true;
}

void frmConfigure::cmdAccept_Click()
{
    Handle([this] {
        if (m_module.Accept())
            accept();
    });
}
