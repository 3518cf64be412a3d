#include "sync/ActiveServer.h"

#include "platform/Paths.h"
#include "sync/TextLines.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 MostBytes = 64 * 1024 * 1024;

std::optional<ActiveServer> ServerOf(const QString &line)
{
    const qsizetype separator = line.indexOf(u';');
    if (separator < 0 || separator == line.size() - 1)
        return {};
    return ActiveServer{line.left(separator), line.mid(separator + 1).chopped(1)};
}

} // namespace

std::optional<ActiveServer> ReadActiveServer(const QString &path)
{
    std::optional<ActiveServer> server;
    bool follows = false;
    for (const QString &line : TextLines(ReadFileHead(path, MostBytes))) {
        if (follows) {
            if (const std::optional<ActiveServer> found = ServerOf(line))
                server = found;
        }
        follows = line.contains("[Active Server]"_L1);
    }
    return server;
}
