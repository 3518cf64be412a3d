// Preloaded into a program: opening a file whose path ends as the environment variable
// WORKLOG_HANGS_AT says takes for ever, as on a file server that does not answer.

#include <cstdarg>
#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <string_view>
#include <unistd.h>

namespace {

using OpenCall = int (*)(const char *, int, ...);

int OpenOrHang(const char *name, const char *path, int flags, mode_t mode)
{
    const char *hangs = std::getenv("WORKLOG_HANGS_AT");
    while (hangs != nullptr && std::string_view(path).ends_with(hangs))
        pause();
    void *call = dlsym(RTLD_NEXT, name);
    OpenCall open = nullptr;
    static_assert(sizeof open == sizeof call);
    __builtin_memcpy(&open, &call, sizeof open);
    return open(path, flags, mode);
}

} // namespace

extern "C" {
int open(const char *path, int flags, ...);
int open64(const char *path, int flags, ...);

int open(const char *path, int flags, ...)
{
    va_list more;
    va_start(more, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(more, mode_t) : 0;
    va_end(more);
    return OpenOrHang("open", path, flags, mode);
}

int open64(const char *path, int flags, ...)
{
    va_list more;
    va_start(more, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(more, mode_t) : 0;
    va_end(more);
    return OpenOrHang("open64", path, flags, mode);
}
}
