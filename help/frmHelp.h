#pragma once

#include "help/modHelp.h"

#include <QStringList>
#include <QWidget>

#include <memory>

class QTreeWidgetItem;

namespace Ui {
class frmHelp;
}

/// Shows the help's pages with their contents, a search and the way back.
class frmHelp : public QWidget
{
    Q_OBJECT

public:
    explicit frmHelp(const modHelp &pages); ///< loaded; outlives it
    ~frmHelp() override;

    void ShowPage(const QString &name);

private:
    void Connect();
    void FillContents();
    void Render();
    void TidyPage();
    void MarkWords();
    void NextPlace();
    void treContents_Click(const QTreeWidgetItem *item);
    void txtSearch_Change();
    QTreeWidgetItem *ItemOf(const QString &page) const;

    std::unique_ptr<Ui::frmHelp> ui;
    const modHelp &m_pages;
    QStringList m_found; // pages that the search leaves
};
