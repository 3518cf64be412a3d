#include "sync/frmSyncOptions.h"

#include "platform/DataLabel.h"
#include "sync/modSync.h"
#include "sync/ui_frmSyncOptions.h"

#include <QSignalBlocker>

using namespace Qt::StringLiterals;

namespace {

constexpr int DescriptionLines = 3;

} // namespace

frmSyncOptions::frmSyncOptions(
    modSyncOptions &module, clsMessageBox &messages, clsSendKeys &keys, QWidget *parent)
    : clsSyncDialog(messages, parent)
    , ui(std::make_unique<Ui::frmSyncOptions>())
    , m_module(module)
    , m_keys(keys)
{
    ui->setupUi(this);
    m_options = {ui->optSyncOption0, ui->optSyncOption1, ui->optSyncOption2, ui->optSyncOption3};
    ConnectControls();
    FitDescription();
}

frmSyncOptions::~frmSyncOptions() = default;

void frmSyncOptions::ConnectControls()
{
    for (int option = 0; option < modSyncOptions::Options; ++option) {
        connect(m_options.at(static_cast<size_t>(option)), &QRadioButton::toggled, this,
            [this, option](bool selected) {
                if (selected)
                    Handle([&] { m_module.SelectOption(option); });
            });
    }
    connect(ui->cmdAccept, &QPushButton::clicked, this, &frmSyncOptions::cmdAccept_Click);
    connect(ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(ui->cmdHelp, &QPushButton::clicked, this, [this] { m_keys.SendKeys(u"{F1}"_s); });
}

void frmSyncOptions::FitDescription()
{
    // The dialog keeps its size whichever description it shows.
    QLabel &label = *ui->lblSyncOptionDesc;
    label.setMinimumHeight(DescriptionLines * label.fontMetrics().lineSpacing()
        + 2 * (label.margin() + label.frameWidth()));
}

bool frmSyncOptions::Load()
{
    if (!m_module.HasOptions()) {
        Messages().Tell(SynchronizeFirst());
        return false;
    }
    Handle([this] { m_module.Load(); });
    m_options.at(static_cast<size_t>(m_module.Selected().value_or(0)))->setFocus();
    return true;
}

void frmSyncOptions::Render()
{
    for (int option = 0; option < modSyncOptions::Options; ++option) {
        QRadioButton &button = *m_options.at(static_cast<size_t>(option));
        // The accounting system's name is no place for a shortcut.
        ShowData(button, QString(m_module.Caption(option)).replace(u'&', u"&&"_s));
        const QSignalBlocker blocked(button);
        button.setChecked(m_module.Selected() == option);
    }
    ui->lblSyncOptionDesc->setText(m_module.Description().left(MostCharactersShown));
    DrawPanels(*ui->StatusBar1, m_module.Panels());
    ui->StatusBar1->ShowNotice(m_module.Notice());
}

void frmSyncOptions::cmdAccept_Click()
{
    Handle([this] {
        m_module.Accept();
        accept();
    });
}
