#include "exchange/frmProgress.h"

#include "ui_frmProgress.h"

#include <QCoreApplication>
#include <QGuiApplication>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 MillisecondsBetweenPictures = 50;

} // namespace

bool HasDisplay()
{
    const QString platform = QGuiApplication::platformName();
    return platform != "offscreen"_L1 && platform != "minimal"_L1;
}

frmProgress::frmProgress(bool hasDisplay, QWidget *parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::frmProgress>())
    , m_hasDisplay(hasDisplay)
{
    ui->setupUi(this);
    if (m_hasDisplay)
        show();
}

frmProgress::~frmProgress() = default;

void frmProgress::ShowProgress(
    const QString &company, const QString &table, qint64 done, qint64 all)
{
    if (!m_hasDisplay
        || (m_sinceDrawn.isValid() && m_sinceDrawn.elapsed() < MillisecondsBetweenPictures))
        return;
    m_sinceDrawn.start();
    ui->lblCompany->setText(company);
    ui->lblTable->setText(table);
    ui->prgTable->setValue(all > 0 ? static_cast<int>(done * 100 / all) : 100);
    QCoreApplication::processEvents();
}
