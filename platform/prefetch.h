/// \file
/// Asking for memory before it is used.
///
/// For sources that are compiled once per level: has no function, as nothing in them may be merged across levels. Any
/// address will do, one without memory behind it too.
#pragma once

/// FFC_PREFETCH_TO_READ(address), FFC_PREFETCH_TO_WRITE(address): the cache line of an address, into the nearest cache.
#if defined(__GNUC__)
#define FFC_PREFETCH_TO_READ(ADDRESS) __builtin_prefetch((ADDRESS), 0, 3)
#define FFC_PREFETCH_TO_WRITE(ADDRESS) __builtin_prefetch((ADDRESS), 1, 3)
#elif defined(_MSC_VER) && defined(_M_X64)
#include <intrin.h>
#define FFC_PREFETCH_TO_READ(ADDRESS) _mm_prefetch(reinterpret_cast<const char *>(ADDRESS), _MM_HINT_T0)
#define FFC_PREFETCH_TO_WRITE(ADDRESS) _m_prefetchw(reinterpret_cast<const char *>(ADDRESS))
#else
#define FFC_PREFETCH_TO_READ(ADDRESS) static_cast<void>(ADDRESS)
#define FFC_PREFETCH_TO_WRITE(ADDRESS) static_cast<void>(ADDRESS)
#endif
