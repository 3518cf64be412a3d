#pragma once

#include <QMap>
#include <QString>

// What the systems do differently around the program; the twins lie in unix/ and windows/.

/// The folder with the built programs, as a user's program folder has them.
QString BuiltPrograms();

/// The file that holds a program: "WorklogRemote" or "WorklogRemote.exe".
QString FileNameOf(const QString &program);

/// A folder with any name for the six X, as a user finds one quickly in the folder browser.
QString PlaceOfAUser();

/// To be called before the folder is looked for in the folder browser.
void PrepareToBrowse(const QString &folder);

/// A folder's name with blanks, foreign letters and whatever else the system lets pass.
QString OddFolderName();

/// Makes that file one that the system refuses to start.
void MakeNoProgram(const QString &path);

/// What makes the program in that folder read and write the settings of the folder's user.
QMap<QString, QString> UserOf(const QString &programFolder);

/// What that user's settings hold under section/key; empty when there is nothing.
QString SettingOf(const QString &programFolder, const QString &key);
bool HasSettings(const QString &programFolder); ///< whether any were ever saved
void ForgetSettings(const QString &programFolder);
