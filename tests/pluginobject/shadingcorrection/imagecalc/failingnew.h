/// \file
/// Memory that runs out when a test wants it to.
#pragma once

#include <cstdint>

/// While one lives, this program's allocations without exceptions fail, after the first few if so wished.
class CFailingNew {
public:
  /// \param nSuccesses allocations that still succeed
  explicit CFailingNew(int32_t nSuccesses = 0);
  ~CFailingNew();
  CFailingNew(const CFailingNew &) = delete;
  CFailingNew &operator=(const CFailingNew &) = delete;
};

/// While one lives, this thread's allocations that throw fail, after the first few if so wished: those of this program,
/// and but on Windows those of all its libraries.
class CFailingThrowingNew {
public:
  /// \param nSuccesses allocations that still succeed
  explicit CFailingThrowingNew(int32_t nSuccesses = 0);
  ~CFailingThrowingNew();
  CFailingThrowingNew(const CFailingThrowingNew &) = delete;
  CFailingThrowingNew &operator=(const CFailingThrowingNew &) = delete;
};

/// What this program has taken without exceptions and not yet given back.
int64_t CountLiveAllocations();
