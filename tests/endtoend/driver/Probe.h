#pragma once

#include <QJsonObject>
#include <QMap>
#include <QString>

#include <memory>

/// What the windows of the program under test show, asked in its own process. Asking never acts on
/// the program.
class Probe
{
public:
    Probe();
    ~Probe();

    /// What the program must be started with to be asked.
    QMap<QString, QString> Environment() const;

    /// Questions:
    ///   control <name>  a window or one of its controls: found, name, class, title, text, visible,
    ///                   enabled, checked, focused; active and window (as the display numbers it)
    ///                   of the window that it stands in; x, y, width, height in the display's
    ///                   pixels
    ///   button <text>   likewise, in the window that takes all input; and picture, where the
    ///                   system tells
    ///   table <name>    rows: a list of texts each; places: where each row stands
    ///   focus           the control that has it, described as a control
    ///   windows         modal: the window that takes all input, described as a control
    /// Of two controls of one name it is the one in the window that takes the input. Nothing while
    /// the program does not answer.
    QJsonObject Ask(qint64 processId, const QString &verb, const QString &name);

private:
    class Line;

    std::unique_ptr<Line> m_line;
};
