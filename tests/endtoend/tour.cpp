// A user's tour of the built program on a virtual display: synchronise, enter, synchronise again.
// Leaves screenshots and the collected entries in the folder that it is given.

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

class Tour
{
public:
    explicit Tour(const QString &album)
        : m_album(album)
    {
    }

    void Play()
    {
        ProgramUnderTest program(m_place.ProgramFolder(), m_display);
        program.WaitForMessage(u"Please perform a synchronization first."_s);
        Picture(u"A first start asks for a synchronisation"_s);
        program.Answer(u"OK"_s);

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

private:
    void LookIntoEveryWindow(ProgramUnderTest &program)
    {
        program.Click(u"cmdCustomer"_s);
        PictureOf(program, u"frmLookup"_s, u"Customers to choose from"_s);
        program.Click(u"cmdTransFilter"_s);
        PictureOf(program, u"frmTransFilter"_s, u"The transaction filter"_s);
        program.Click(u"cmdHrsSumm"_s);
        PictureOf(program, u"frmHrsSumm"_s, u"The hours of each day"_s);
        program.ChooseByKeys(u"Options"_s, u"Configure"_s);
        PictureOf(program, u"frmConfigure"_s, u"Where the accounting system is"_s);
        program.ChooseByKeys(u"Options"_s, u"Sync"_s);
        PictureOf(program, u"frmSyncOptions"_s, u"What a synchronisation does"_s);
        program.WaitUntilActive();
        program.Key(u"F1"_s);
        PictureOf(program, u"frmHelp"_s, u"Help beside the window"_s);
        program.WaitUntilActive();
    }

    /// Of a window that is opening; Escape closes it again.
    void PictureOf(ProgramUnderTest &program, const QString &window, const QString &title)
    {
        program.WaitUntilActive(window);
        Picture(title);
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
    VirtualDisplay m_display;
    int m_pictures = 0;
};

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 2 || !QDir().mkpath(arguments[1])) {
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
