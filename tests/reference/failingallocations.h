/// \file
/// Memory that runs out when a test wants it to.
#pragma once

#include <cstdint>

namespace ffc::test {

/// While one lives, an allocation of the thread that made it throws, and all that follow.
class CFailingAllocations {
public:
  /// \param nFailing which, from 1
  explicit CFailingAllocations(int32_t nFailing);
  ~CFailingAllocations();
  CFailingAllocations(const CFailingAllocations &) = delete;
  CFailingAllocations &operator=(const CFailingAllocations &) = delete;

  /// Whether one did throw.
  bool HasFailed() const;
};

} // namespace ffc::test
