#include "figures/CodeTexts.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

QString InSentence(const QString &term)
{
    QStringList words = term.trimmed().split(u' ');
    for (QString &word : words) {
        const bool hasOtherCapitals = std::any_of(word.begin() + (word.isEmpty() ? 0 : 1),
            word.end(), [](QChar letter) { return letter.isUpper(); });
        if (word.size() > 1 && !hasOtherCapitals)
            word.front() = word.front().toLower();
    }
    return words.join(u' ');
}

QString WithoutTrailingSpaces(QString code)
{
    while (code.endsWith(u' '))
        code.chop(1);
    return code;
}

QString NoSuchCode(const QString &term, const QString &code)
{
    const QString word = InSentence(term);
    return u"No "_s + (word.isEmpty() ? u"code"_s : word) + u' ' + code + u'.';
}

QString NoSuchProject(const OptionsRecord &options, const QString &code, const QString &customer)
{
    return u"No "_s + InSentence(options.Project_Term) + u' ' + code + u" for "_s
        + InSentence(options.Customer_Term) + u' ' + customer + u'.';
}
