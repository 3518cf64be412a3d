#pragma once

#include <QProcess>
#include <QSize>
#include <QString>

/// A display of its own with a window manager, for as long as the object lives.
class VirtualDisplay
{
public:
    /// In pixels; throws std::runtime_error when the display does not come up.
    explicit VirtualDisplay(QSize size = {1366, 768});
    ~VirtualDisplay();

    const QString &Name() const { return m_name; } ///< ":99"

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
    void Run(const QString &program, const QStringList &arguments) const;

    QProcess m_server;
    QProcess m_windowManager;
    QString m_name;
};
