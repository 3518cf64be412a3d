// A user's tour of the built program on a virtual display: synchronise, enter, synchronise again.
// Leaves screenshots and the collected entries in the folder that it is given, and in its folder
// "windows" a picture of every window by itself. QT_SCALE_FACTOR in the environment makes all of it
// larger, and a desktop's variables give it that desktop's colours.

#include "tests/endtoend/driver/ProgramUnderTest.h"
#include "tests/endtoend/driver/VirtualDisplay.h"
#include "tests/endtoend/driver/WorkPlace.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTextStream>

#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

struct Hour
{
    QString Customer;
    QString Project;
    QString Activity;
    QString Hours;
    QString Description;
};

/// So that the client's window stays for seconds.
constexpr int ManyCustomers = 400000;

/// How much larger the toolkit makes the windows, and a display must be.
qreal Scale()
{
    bool isNumber = false;
    const qreal scale = qEnvironmentVariable("QT_SCALE_FACTOR").toDouble(&isNumber);
    return isNumber ? scale : 1;
}

class Tour
{
public:
    explicit Tour(const QString &album)
        : m_album(album)
    {
    }

    void Play()
    {
        PlayTheProgram();
        PlayTheClient();
    }

private:
    void PlayTheProgram()
    {
        ProgramUnderTest program(m_place.ProgramFolder(), m_display);
        program.WaitForMessage(u"Please perform a synchronization first."_s);
        Picture(u"A first start asks for a synchronisation"_s);
        program.Photograph(Window(u"first-start"_s));
        program.Answer(u"OK"_s);
        program.WaitUntilActive();
        program.Photograph(Window(u"main-window-locked"_s), u"frmEntryList"_s);

        program.Click(u"cmdSync"_s);
        ProgramUnderTest::WaitUntil(
            u"the company's data"_s, [&] { return program.Text(u"cboCompany"_s) == u"ABC"_s; });
        program.WaitForFocus(u"dtpDate"_s);
        Picture(u"The company's data has come"_s);

        Enter(program, {u"0100"_s, u"1000"_s, u"CONSULT"_s, u"7.5"_s, u"Workshop on site"_s}, 1);
        Enter(program, {u"0100"_s, u"1000"_s, u"CONSULT"_s, u".75"_s, u"Minutes of it"_s}, 2);
        Picture(u"Two entries in the list"_s);
        program.ClickRow(u"msgEntryList"_s, 0);
        program.WaitForText(u"txtDescription"_s, u"Workshop on site"_s);
        Picture(u"An entry of the list in the editor"_s);
        program.Photograph(Window(u"main-window"_s), u"frmEntryList"_s);
        LookIntoEveryWindow(program);

        program.Click(u"cmdSync"_s);
        ProgramUnderTest::WaitUntil(u"an empty list"_s, [&] {
            const QList<QStringList> rows = program.Rows(u"msgEntryList"_s);
            return rows.size() == 1 && rows[0][0].isEmpty();
        });
        Picture(u"Handed over"_s);
        program.Key(u"Escape"_s);
        program.WaitForEnd();
        KeepCollectedEntries();
    }

    /// A company with so many customers that the client's window can be looked at.
    void PlayTheClient()
    {
        QByteArray customers;
        for (int i = 0; i < ManyCustomers; ++i)
            customers += "M" + QByteArray::number(i) + ",Customer by name of "
                + QByteArray::number(i) + ",,N,0\n";
        m_place.Replace(
            u"ABC"_s, u"Customers"_s, "ZZ-FIFTEEN-LONG,", customers + "ZZ-FIFTEEN-LONG,");
        ProgramUnderTest client(
            {m_place.Client(), {}, {u"-hd"_s, u"by-hand"_s, m_place.ProgramFolder()}}, m_display);
        const QString enough = u"30%"_s;
        ProgramUnderTest::WaitUntil(u"the client to be amid the customers"_s, [&] {
            const QString done = client.Text(u"prgTable"_s);
            return client.Text(u"lblTable"_s) == u"Customers"_s && done.size() == enough.size()
                && done >= enough;
        });
        Picture(u"Many customers on their way"_s);
        client.Photograph(Window(u"progress"_s), u"frmProgress"_s);
        client.WaitForEnd();
    }

    void LookIntoEveryWindow(ProgramUnderTest &program)
    {
        program.Click(u"cmdCustomer"_s);
        PictureOf(program, u"frmLookup"_s, u"Customers to choose from"_s, u"lookup"_s);
        program.Click(u"cmdTransFilter"_s);
        PictureOf(
            program, u"frmTransFilter"_s, u"The transaction filter"_s, u"transaction-filter"_s);
        program.Click(u"cmdHrsSumm"_s);
        PictureOf(program, u"frmHrsSumm"_s, u"The hours of each day"_s, u"hours-summary"_s);
        program.ChooseByKeys(u"Options"_s, u"Configure"_s);
        PictureOf(program, u"frmConfigure"_s, u"Where the accounting system is"_s,
            u"synchronisation-settings"_s);
        program.ChooseByKeys(u"Options"_s, u"Sync"_s);
        PictureOf(program, u"frmSyncOptions"_s, u"What a synchronisation does"_s,
            u"synchronisation-options"_s);
        program.WaitUntilActive();
        program.Key(u"F1"_s);
        PictureOf(program, u"frmHelp"_s, u"Help beside the window"_s, u"help"_s);
        program.WaitUntilActive();
        LookAtTheQuestions(program);
    }

    void LookAtTheQuestions(ProgramUnderTest &program)
    {
        program.ChooseByKeys(u"Utilities"_s, u"Delete Databases"_s);
        program.WaitForMessage(u"W A R N I N G\r\n\r\nAll application data will be lost.\r\n\r\n"
                               u"Do you wish to continue?"_s);
        Picture(u"Before everything is deleted"_s);
        program.Photograph(Window(u"delete-question"_s));
        program.Answer(u"No"_s);

        program.Click(u"txtDescription"_s);
        program.WaitForFocus(u"txtDescription"_s);
        program.Key(u"ctrl+a"_s);
        program.Enter(u"txtDescription"_s, u"Workshop on site, day 2"_s);
        program.ClickRow(u"msgEntryList"_s, 1);
        program.WaitForMessage(u"Do you want to save changes?"_s);
        Picture(u"Before a change is lost"_s);
        program.Photograph(Window(u"save-question"_s));
        program.Answer(u"No"_s);
        program.WaitForText(u"txtDescription"_s, u"Minutes of it"_s);
    }

    /// Of a window that is opening; Escape closes it again.
    void PictureOf(
        ProgramUnderTest &program, const QString &window, const QString &title, const QString &name)
    {
        program.WaitUntilActive(window);
        Picture(title);
        program.Photograph(Window(name), window);
        program.Key(u"Escape"_s);
        program.WaitUntilClosed(window);
        program.WaitUntilActive();
    }

    void Enter(ProgramUnderTest &program, const Hour &hour, int rowsAfterwards)
    {
        program.WaitForFocus(u"dtpDate"_s);
        program.Key(u"Return"_s);
        program.Enter(u"txtCustomer"_s, hour.Customer);
        program.Key(u"Return"_s);
        program.Enter(u"txtProject"_s, hour.Project);
        program.Key(u"Return"_s);
        program.Enter(u"txtActivity"_s, hour.Activity);
        program.Key(u"Return"_s);
        program.Enter(u"txtHours"_s, hour.Hours);
        program.Key(u"Return"_s);
        program.Enter(u"txtDescription"_s, hour.Description);
        if (rowsAfterwards == 1)
            Picture(u"An hour typed in"_s);
        program.Click(u"cmdOK"_s);
        program.WaitForRows(u"msgEntryList"_s, rowsAfterwards);
        ProgramUnderTest::WaitUntil(u"the new entry in the list"_s,
            [&] { return !program.Rows(u"msgEntryList"_s).constLast()[0].isEmpty(); });
    }

    void Picture(const QString &title)
    {
        ++m_pictures;
        const QString name = QString::number(m_pictures) + u' ' + title + u".png"_s;
        m_display.Screenshot(m_album + u'/' + name);
        QTextStream(stdout) << name << Qt::endl;
    }

    QString Window(const QString &name) const
    {
        return m_album + u"/windows/"_s + name + u".png"_s;
    }

    void KeepCollectedEntries()
    {
        QFile file(m_album + u"/collected entries.csv"_s);
        if (!file.open(QIODevice::WriteOnly))
            throw std::runtime_error("the collected entries cannot be kept");
        for (const QString &row : m_place.UploadedRows(u"ABC"_s)) {
            file.write(row.toUtf8() + '\n');
            QTextStream(stdout) << row << Qt::endl;
        }
    }

    QString m_album;
    WorkPlace m_place;
    VirtualDisplay m_display{(QSizeF(1366, 768) * Scale()).toSize()};
    int m_pictures = 0;
};

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 2 || !QDir().mkpath(arguments[1] + u"/windows"_s)) {
        QTextStream(stderr) << "usage: tour <folder for the pictures>" << Qt::endl;
        return 2;
    }
    try {
        Tour(QDir(arguments[1]).absolutePath()).Play();
    } catch (const std::exception &error) {
        QTextStream(stderr) << "The tour broke off: " << error.what() << Qt::endl;
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
