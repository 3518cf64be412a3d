// Makes a company of any size, to try things out at that size.

#include "bench/CompanyMaker.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>

#include <cstdio>
#include <exception>

using namespace Qt::StringLiterals;

namespace {

int NumberOf(const QCommandLineParser &parser, const QString &option, int least)
{
    bool isNumber = false;
    const int number = parser.value(option).toInt(&isNumber);
    if (!isNumber || number < least)
        throw std::invalid_argument(
            "--" + option.toStdString() + " takes a number from " + std::to_string(least));
    return number;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Makes an accounting installation of one company, and a program folder synchronised "
        u"with it."_s);
    parser.addHelpOption();
    parser.addPositionalArgument(u"folder"_s, u"The folder to make; it must not exist."_s);
    const CompanySize usual;
    parser.addOptions({{u"customers"_s, u"Number of customers."_s, u"number"_s,
                           QString::number(usual.Customers)},
        {u"projects"_s, u"Number of projects."_s, u"number"_s, QString::number(usual.Projects)},
        {u"activities"_s, u"Number of activities."_s, u"number"_s,
            QString::number(usual.Activities)},
        {u"entries"_s, u"Number of entries."_s, u"number"_s, QString::number(usual.Entries)},
        {u"days"_s, u"Days on which the entries lie."_s, u"number"_s, QString::number(usual.Days)},
        {u"variant"_s,
            u"Which of the companies of that size; the same number makes the same one."_s,
            u"number"_s, QString::number(usual.Variant)}});
    parser.process(application);
    const QStringList folders = parser.positionalArguments();
    if (folders.size() != 1) {
        std::fputs(qPrintable(parser.helpText()), stderr);
        return 2;
    }
    try {
        const CompanySize size{NumberOf(parser, u"customers"_s, 1),
            NumberOf(parser, u"projects"_s, 1), NumberOf(parser, u"activities"_s, 1),
            NumberOf(parser, u"entries"_s, 0), NumberOf(parser, u"days"_s, 1),
            static_cast<unsigned>(NumberOf(parser, u"variant"_s, 0))};
        MakeCompany(QDir(folders.first()).absolutePath(), size,
            QCoreApplication::applicationDirPath() + u"/pvxwin32.exe"_s);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
