#pragma once

/// Whether the address sanitizer's allocator is in the place of the system's. It keeps what is
/// freed, so that a use afterwards is seen: what a program holds cannot be counted then.
#ifdef __SANITIZE_ADDRESS__
inline constexpr bool KeepsFreedMemory = true;
#else
inline constexpr bool KeepsFreedMemory = false;
#endif
