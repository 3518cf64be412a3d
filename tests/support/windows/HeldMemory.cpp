#include "tests/support/HeldMemory.h"

#include <windows.h>

qint64 HeldBytes()
{
    // The C library takes all its memory from here.
    const HANDLE heap = ::GetProcessHeap();
    qint64 held = 0;
    PROCESS_HEAP_ENTRY entry = {};
    ::HeapLock(heap);
    while (::HeapWalk(heap, &entry) != 0) {
        if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0)
            held += entry.cbData;
    }
    ::HeapUnlock(heap);
    return held;
}
