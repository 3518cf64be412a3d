#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>

#include <vector>

/// The pages of the help file: what they are called, where they stand and which of them hold a
/// word. Never sees a widget.
///
/// File: WL.HLP, a Qt binary resource of Markdown pages. The page "contents" lists all the others,
///       in chapters; a page for a window is called as the window is.
class modHelp
{
public:
    struct Page
    {
        QString Name; ///< "frmEntryList"
        QString Title;
        QString Text; ///< without marks, in lower case, for the search
    };
    struct Chapter
    {
        QString Title;
        std::vector<Page> Pages;
    };

    explicit modHelp(const QString &helpFile);
    ~modHelp();
    modHelp(const modHelp &) = delete;
    modHelp &operator=(const modHelp &) = delete;

    static QString FirstPage() { return QStringLiteral("contents"); }

    /// False when the file is missing or is no help file; asked again, it looks again.
    bool Load();
    /// Why Load said no, for the user.
    QString Failure() const;

    const std::vector<Chapter> &Chapters() const { return m_chapters; }
    bool HasPage(const QString &name) const;
    QString Title(const QString &name) const;
    QUrl Url(const QString &name) const;
    QString NameOf(const QUrl &url) const; ///< empty for what is no page of ours

    /// Pages in which every word stands, part of a word included, whatever the case of letters.
    /// No word: all pages.
    QStringList PagesWith(const QString &words) const;
    static QStringList Words(const QString &text);

    /// The page about a message box, by what the box says.
    static QString PageOfMessage(const QString &message);

private:
    void ReadContents();
    QString ReadPage(const QString &name) const; ///< its Markdown
    QString FileOf(const QString &name) const;

    QString m_helpFile;
    QString m_root; // of this object alone: two programs in one process have each their own
    bool m_loaded = false;
    std::vector<Chapter> m_chapters;
};
