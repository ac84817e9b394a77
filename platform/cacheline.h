/// \file
/// Where cache lines begin.
///
/// For sources that are compiled once per level: has no function, as nothing in them may be merged across levels.
#pragma once

#include <cstdint>

/// The bytes of a line, which a processor moves as a whole.
#define FFC_LINE_BYTES 64

/// FFC_OFFSET_IN_LINE(address): how many bytes behind the beginning of a line.
#define FFC_OFFSET_IN_LINE(ADDRESS) (reinterpret_cast<uintptr_t>(ADDRESS) % FFC_LINE_BYTES)

/// FFC_COUNT_BEFORE_LINE(address, bytes): how many values of so many bytes lie before the first whole line. Stores that
/// cross lines hold up everything behind them, and with it what a processor reads ahead by itself.
#define FFC_COUNT_BEFORE_LINE(ADDRESS, VALUE_BYTES)                                                                    \
  ((FFC_LINE_BYTES - FFC_OFFSET_IN_LINE(ADDRESS)) % FFC_LINE_BYTES / (VALUE_BYTES))
