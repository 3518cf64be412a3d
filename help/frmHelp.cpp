#include "help/frmHelp.h"

#include "help/ui_frmHelp.h"

#include <QShortcut>
#include <QSignalBlocker>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextTable>

using namespace Qt::StringLiterals;

namespace {

constexpr int PageRole = Qt::UserRole;
constexpr double PageMargin = 16;
constexpr double SpaceAboveHeading = 18;
constexpr int SpaceBetweenLines = 6; // of the contents

/// Markdown's tables come without lines and with cells that touch.
void TidyTable(QTextTable &table, const QColor &line)
{
    QTextTableFormat format = table.format();
    format.setBorderCollapse(true);
    format.setBorder(1);
    format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
    format.setBorderBrush(line);
    format.setCellPadding(5);
    format.setCellSpacing(0);
    format.setTopMargin(6);
    format.setBottomMargin(10);
    table.setFormat(format);
}

} // namespace

frmHelp::frmHelp(const modHelp &pages)
    : ui(std::make_unique<Ui::frmHelp>())
    , m_pages(pages)
{
    ui->setupUi(this);
    ui->splMain->setStretchFactor(0, 0);
    ui->splMain->setStretchFactor(1, 1);
    ui->splMain->setSizes({240, 560});
    FillContents();
    Connect();
    txtSearch_Change();
}

frmHelp::~frmHelp() = default;

void frmHelp::Connect()
{
    connect(ui->brwPage, &QTextBrowser::sourceChanged, this, [this] {
        TidyPage();
        Render();
    });
    connect(ui->brwPage, &QTextBrowser::historyChanged, this, &frmHelp::Render);
    connect(ui->cmdBack, &QPushButton::clicked, ui->brwPage, &QTextBrowser::backward);
    connect(ui->cmdForward, &QPushButton::clicked, ui->brwPage, &QTextBrowser::forward);
    connect(ui->treContents, &QTreeWidget::currentItemChanged, this, &frmHelp::treContents_Click);
    connect(ui->treContents, &QTreeWidget::itemClicked, this, &frmHelp::treContents_Click);
    connect(ui->txtSearch, &QLineEdit::textChanged, this, &frmHelp::txtSearch_Change);
    connect(ui->txtSearch, &QLineEdit::returnPressed, this, &frmHelp::NextPlace);

    const auto shortcut = [this](const QKeySequence &keys, auto &&slot) {
        connect(new QShortcut(keys, this), &QShortcut::activated, this, slot);
    };
    shortcut(Qt::Key_Escape, [this] { close(); });
    shortcut(Qt::CTRL | Qt::Key_F, [this] {
        ui->txtSearch->setFocus(Qt::ShortcutFocusReason);
        ui->txtSearch->selectAll();
    });
    shortcut(Qt::ALT | Qt::Key_Left, [this] { ui->brwPage->backward(); });
    shortcut(Qt::ALT | Qt::Key_Right, [this] { ui->brwPage->forward(); });
    shortcut(Qt::ALT | Qt::Key_Home, [this] { ShowPage(modHelp::FirstPage()); });
}

void frmHelp::FillContents()
{
    for (const modHelp::Chapter &chapter : m_pages.Chapters()) {
        auto *top = new QTreeWidgetItem(ui->treContents, {chapter.Title});
        top->setFlags(Qt::ItemIsEnabled); // a heading; the arrow keys pass over it
        QFont font = top->font(0);
        font.setBold(true);
        top->setFont(0, font);
        for (const modHelp::Page &page : chapter.Pages) {
            auto *item = new QTreeWidgetItem(top, {page.Title});
            item->setData(0, PageRole, page.Name);
            item->setToolTip(0, page.Title.toHtmlEscaped());
        }
    }
    for (QTreeWidgetItemIterator item(ui->treContents); *item != nullptr; ++item)
        (*item)->setSizeHint(0, {0, fontMetrics().height() + SpaceBetweenLines});
    ui->treContents->expandAll();
}

void frmHelp::ShowPage(const QString &name)
{
    const QUrl url = m_pages.Url(name);
    if (ui->brwPage->source() != url)
        ui->brwPage->setSource(url, QTextDocument::MarkdownResource);
    ui->brwPage->setFocus(Qt::OtherFocusReason);
}

QTreeWidgetItem *frmHelp::ItemOf(const QString &page) const
{
    for (int i = 0; i < ui->treContents->topLevelItemCount(); ++i) {
        QTreeWidgetItem *chapter = ui->treContents->topLevelItem(i);
        for (int j = 0; j < chapter->childCount(); ++j) {
            if (chapter->child(j)->data(0, PageRole).toString() == page)
                return chapter->child(j);
        }
    }
    return nullptr;
}

void frmHelp::Render()
{
    const QString page = m_pages.NameOf(ui->brwPage->source());
    setWindowTitle(m_pages.Title(page) + u" - Worklog Remote Help"_s);
    ui->cmdBack->setEnabled(ui->brwPage->isBackwardAvailable());
    ui->cmdForward->setEnabled(ui->brwPage->isForwardAvailable());

    const QSignalBlocker blocked(ui->treContents);
    for (int i = 0; i < ui->treContents->topLevelItemCount(); ++i) {
        QTreeWidgetItem *chapter = ui->treContents->topLevelItem(i);
        bool any = false;
        for (int j = 0; j < chapter->childCount(); ++j) {
            QTreeWidgetItem *item = chapter->child(j);
            const bool found = m_found.contains(item->data(0, PageRole).toString());
            item->setHidden(!found);
            any = any || found;
        }
        chapter->setHidden(!any);
    }
    QTreeWidgetItem *current = ItemOf(page);
    ui->treContents->setCurrentItem(current != nullptr && !current->isHidden() ? current : nullptr);

    const bool searches = !modHelp::Words(ui->txtSearch->text()).isEmpty();
    ui->lblFound->setText(!searches ? QString()
            : m_found.isEmpty()     ? u"No page has all of these words."_s
            : m_found.size() == 1   ? u"1 page"_s
                                    : QString::number(m_found.size()) + u" pages"_s);
    MarkWords();
}

void frmHelp::TidyPage()
{
    ui->brwPage->document()->setDocumentMargin(PageMargin);
    const QColor line = palette().color(QPalette::Mid);
    for (QTextFrame *frame : ui->brwPage->document()->rootFrame()->childFrames()) {
        if (auto *table = qobject_cast<QTextTable *>(frame))
            TidyTable(*table, line);
    }
    for (QTextBlock block = ui->brwPage->document()->firstBlock().next(); block.isValid();
         block = block.next()) {
        if (block.blockFormat().headingLevel() == 0)
            continue;
        QTextBlockFormat format;
        format.setTopMargin(SpaceAboveHeading);
        QTextCursor(block).mergeBlockFormat(format);
    }
}

void frmHelp::MarkWords()
{
    QList<QTextEdit::ExtraSelection> marks;
    for (const QString &word : modHelp::Words(ui->txtSearch->text())) {
        QTextCursor place(ui->brwPage->document());
        while (!(place = ui->brwPage->document()->find(word, place)).isNull()) {
            QTextEdit::ExtraSelection mark;
            mark.cursor = place;
            mark.format.setBackground(palette().highlight());
            mark.format.setForeground(palette().highlightedText());
            marks.append(mark);
        }
    }
    ui->brwPage->setExtraSelections(marks);
}

void frmHelp::NextPlace()
{
    const QStringList words = modHelp::Words(ui->txtSearch->text());
    if (words.isEmpty() || m_found.isEmpty())
        return;
    const QString page = m_pages.NameOf(ui->brwPage->source());
    // On to the next place of the first word, and after the last one to the next page.
    if (m_found.contains(page) && ui->brwPage->find(words.front()))
        return;
    const qsizetype next = (m_found.indexOf(page) + 1) % m_found.size();
    ui->brwPage->setSource(m_pages.Url(m_found[next]), QTextDocument::MarkdownResource);
    ui->brwPage->moveCursor(QTextCursor::Start);
    ui->brwPage->find(words.front());
}

void frmHelp::treContents_Click(const QTreeWidgetItem *item)
{
    const QString page = item == nullptr ? QString() : item->data(0, PageRole).toString();
    if (!page.isEmpty() && page != m_pages.NameOf(ui->brwPage->source()))
        ui->brwPage->setSource(m_pages.Url(page), QTextDocument::MarkdownResource);
}

void frmHelp::txtSearch_Change()
{
    m_found = m_pages.PagesWith(ui->txtSearch->text());
    Render();
}
