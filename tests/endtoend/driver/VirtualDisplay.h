#pragma once

#include <QMap>
#include <QSize>
#include <QString>

#include <memory>

/// What the user sits in front of, for as long as the object lives: a display of its own with a
/// window manager. A Windows program has the display that it is started on.
class VirtualDisplay
{
public:
    /// In pixels, at least; throws std::runtime_error when there is no such display.
    explicit VirtualDisplay(QSize size = {1366, 768});
    ~VirtualDisplay();

    /// What a process needs in its environment to show its windows there.
    QMap<QString, QString> Environment() const;

    /// Real events, as from a keyboard and a mouse.
    void Type(const QString &text) const;
    void Key(const QString &keys) const; ///< in xdotool's words: "Tab", "alt+s"
    void Click(int x, int y) const;

    /// The window that the display sends keys to, as it numbers its windows; 0 when it has none.
    qulonglong WindowWithKeyboard() const;

    /// The whole display as a PNG file.
    void Screenshot(const QString &fileName) const;
    /// One window with its frame, as the display numbers its windows.
    void Screenshot(const QString &fileName, qulonglong window) const;

private:
    class Screen;

    std::unique_ptr<Screen> m_screen;
};
