#include "help/modHelp.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QResource>
#include <QTextDocument>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QString TitleMark = QStringLiteral("# ");
const QString ChapterMark = QStringLiteral("## ");

QString PlainText(const QString &markdown)
{
    QTextDocument document;
    document.setMarkdown(markdown);
    return document.toPlainText();
}

QString TitleOf(const QString &markdown)
{
    const QString line = markdown.section(u'\n', 0, 0);
    return line.startsWith(TitleMark) ? PlainText(line.mid(TitleMark.size())) : QString();
}

} // namespace

modHelp::modHelp(const QString &helpFile)
    : m_helpFile(helpFile)
    , m_root(u"/help/"_s + QString::number(reinterpret_cast<quintptr>(this), 16))
{
}

modHelp::~modHelp()
{
    if (m_loaded)
        QResource::unregisterResource(m_helpFile, m_root);
}

bool modHelp::Load()
{
    if (m_loaded)
        return true;
    if (!QResource::registerResource(m_helpFile, m_root))
        return false;
    m_loaded = true;
    ReadContents();
    if (m_chapters.empty()) { // somebody else's resource
        QResource::unregisterResource(m_helpFile, m_root);
        m_loaded = false;
    }
    return m_loaded;
}

QString modHelp::Failure() const
{
    const QString what = QFileInfo::exists(m_helpFile) ? u"The help file cannot be read: "_s
                                                       : u"The help file is missing: "_s;
    return what + m_helpFile
        + u"\n\nThe program works without it. To have the help again, copy WL.HLP there from "
          u"where the program was installed from."_s;
}

QString modHelp::FileOf(const QString &name) const
{
    return u':' + m_root + u"/pages/"_s + name + u".md"_s;
}

QString modHelp::ReadPage(const QString &name) const
{
    QFile file(FileOf(name));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void modHelp::ReadContents()
{
    static const QRegularExpression link(u"^- \\[[^\\]]*\\]\\(([A-Za-z0-9-]+)\\.md\\)"_s);
    m_chapters.clear();
    const QStringList lines = ReadPage(FirstPage()).split(u'\n');
    for (const QString &line : lines) {
        if (line.startsWith(ChapterMark)) {
            m_chapters.push_back({line.mid(ChapterMark.size()), {}});
        } else if (const auto match = link.match(line); match.hasMatch() && !m_chapters.empty()) {
            const QString name = match.captured(1);
            const QString markdown = ReadPage(name);
            m_chapters.back().Pages.push_back(
                {name, TitleOf(markdown), PlainText(markdown).toLower()});
        }
    }
}

bool modHelp::HasPage(const QString &name) const
{
    return m_loaded && !name.isEmpty() && QFileInfo::exists(FileOf(name));
}

QString modHelp::Title(const QString &name) const
{
    return TitleOf(ReadPage(name));
}

QUrl modHelp::Url(const QString &name) const
{
    return QUrl(u"qrc"_s + FileOf(name));
}

QString modHelp::NameOf(const QUrl &url) const
{
    const QString name = url.fileName().chopped(url.fileName().endsWith(".md"_L1) ? 3 : 0);
    return HasPage(name) && Url(name).path() == url.path() ? name : QString();
}

QStringList modHelp::Words(const QString &text)
{
    return text.toLower().split(QRegularExpression(u"\\s+"_s), Qt::SkipEmptyParts);
}

QStringList modHelp::PagesWith(const QString &words) const
{
    const QStringList wanted = Words(words);
    QStringList found;
    for (const Chapter &chapter : m_chapters) {
        for (const Page &page : chapter.Pages) {
            if (std::all_of(wanted.begin(), wanted.end(),
                    [&](const QString &word) { return page.Text.contains(word); }))
                found.append(page.Name);
        }
    }
    return found;
}

QString modHelp::PageOfMessage(const QString &message)
{
    if (message.contains("perform a synchronization first"_L1))
        return u"first-synchronisation"_s;
    if (message.contains("All application data will be lost"_L1)
        || message.contains("delete databases"_L1))
        return u"delete-databases"_s;
    if (message.contains("save changes"_L1) || message.contains("Delete this Entry"_L1))
        return u"frmEntryList"_s;
    return u"failures"_s;
}
