#include "platform/clsProcess.h"
#include "platform/clsRunTimeError.h"
#include "sync/ActiveServer.h"
#include "sync/LaunchFile.h"
#include "tests/fuzz/Fuzz.h"

using namespace Qt::StringLiterals;

namespace {

/// Runs it; a run-time error must name the file.
template <class Read>
void Named(const QString &path, Read &&read)
{
    try {
        read();
    } catch (const clsRunTimeError &error) {
        FUZZ_EXPECT(error.Description().contains(path));
    }
}

} // namespace

/// mas90.ini, and the same as the client's sota.ini.
int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString path = FuzzFile(u"mas90.ini"_s, BytesOf(data, size));
    Named(path, [&] {
        const LaunchFile launch = ReadLaunchFile(path);
        FUZZ_EXPECT(ReadLaunchRoot(path) == launch.Root);
        const QString folder = u"/a folder/with \"quotes\""_s;
        const QString arguments = ClientArguments(launch, folder);
        const QStringList split = SplitCommandLine(arguments);
        FUZZ_EXPECT(split.value(0) == "-hd"_L1 || !TellsFolder(arguments, folder)
            || launch.Arguments.startsWith(u'"'));
        if (TellsFolder(arguments, folder))
            FUZZ_EXPECT(split.last() == u"/a*folder/with*\"quotes\""_s);
        if (size % 64 != 0) // waits for the disk
            return;
        WriteLaunchFile(path, launch);
        // What ends in a carriage return would become part of a line end.
        FUZZ_EXPECT(launch.Root.endsWith(u'\r') || ReadLaunchRoot(path) == launch.Root);
    });
    Named(path, [&] { ReadActiveServer(path); });
    return 0;
}
