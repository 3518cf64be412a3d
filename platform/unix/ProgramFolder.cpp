#include "platform/clsRunTimeError.h"
#include "platform/Paths.h"

#include <QCoreApplication>
#include <QFile>

#include <filesystem>
#include <system_error>

using namespace Qt::StringLiterals;

namespace {

bool IsUtf8(const QByteArray &name)
{
    return QFile::encodeName(QFile::decodeName(name)) == name;
}

/// A path with the bytes of the names that are not UTF-8 written as "\\xFC".
QString Printable(const QByteArray &path)
{
    QStringList names;
    for (const QByteArray &name : path.split('/')) {
        if (IsUtf8(name)) {
            names.append(QFile::decodeName(name));
            continue;
        }
        QString text;
        for (const char byte : name) {
            const auto code = static_cast<uchar>(byte);
            text += code < 0x80 ? QString(QLatin1Char(byte))
                                : u"\\x"_s + QString::number(code, 16).toUpper();
        }
        names.append(text);
    }
    return names.join(u'/');
}

} // namespace

QString ProgramFolder()
{
    // The toolkit takes a path that is not UTF-8 for no path at all.
    std::error_code failed;
    const std::filesystem::path file = std::filesystem::read_symlink("/proc/self/exe", failed);
    const QByteArray folder = QByteArray::fromStdString(file.parent_path().native());
    if (!IsUtf8(folder))
        throw clsRunTimeError(RunTimeErrors::PathAccess, u"ProgramFolder"_s,
            u"The name of the program's folder is not UTF-8: "_s + Printable(folder)
                + u". Rename the folder"_s);
    return QCoreApplication::applicationDirPath();
}
