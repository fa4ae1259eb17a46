#pragma once

#include <malloc.h>

/// Has the C library keep up to 64 MiB of freed memory for the process instead of giving it back.
///
/// The payload of a long receipt is megabytes of small objects. Fetched from the system anew for
/// each payload, page by page, they make a line of a long receipt half as dear again as one of a
/// short receipt. For the start of a program, before it has threads.
inline void keepFreedMemory()
{
    constexpr int mebibyte = 1 << 20;
    ::mallopt(M_TRIM_THRESHOLD, 64 * mebibyte);
    ::mallopt(M_MMAP_THRESHOLD, 32 * mebibyte); // no longer adapted once the other is set
}
