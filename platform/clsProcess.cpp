#include "platform/clsProcess.h"

QStringList SplitCommandLine(const QString &text)
{
    QStringList arguments;
    QString current;
    bool quoted = false;
    bool begun = false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c == u'"' && quoted && i + 1 < text.size() && text[i + 1] == u'"') {
            current += c;
            ++i;
        } else if (c == u'"') {
            quoted = !quoted;
            begun = true;
        } else if (c == u' ' && !quoted) {
            if (begun)
                arguments.append(current);
            current.clear();
            begun = false;
        } else {
            current += c;
            begun = true;
        }
    }
    if (begun)
        arguments.append(current);
    return arguments;
}
