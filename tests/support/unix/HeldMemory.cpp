#include "tests/support/HeldMemory.h"

#include <malloc.h>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/allocator_interface.h>
#endif

qint64 HeldBytes()
{
#ifdef __SANITIZE_ADDRESS__
    // It keeps what is freed for a while, and knows what is still held by itself.
    return static_cast<qint64>(__sanitizer_get_current_allocated_bytes());
#else
    const auto heap = ::mallinfo2();
    return static_cast<qint64>(heap.uordblks + heap.hblkhd);
#endif
}
