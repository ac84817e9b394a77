/// \file
/// What memory allows: loops that only read and write, once per instruction level.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/instructionlevel.h"

/// What a stream touches, of each part only whole cache lines. Sizes are bytes, multiples of 64; a size of 0 leaves the
/// part out.
struct SStream {
  const void *pRead; ///< read only
  std::size_t nRead;
  const void *pCopyFrom; ///< copied
  void *pCopyTo;
  std::size_t nCopy;
  void *pUpdate; ///< read and written
  std::size_t nUpdate;
  void *pWrite; ///< written only
  std::size_t nWrite;
};

struct SStreamKernels {
  ffc::platform::EInstructionLevel eLevel;
  /// Goes through all parts at the same pace. \return something that depends on every byte that was only read
  uint64_t (*fnStream)(const SStream &stStream);
};

/// \return null for a level that was not built
const SStreamKernels *FindSStreamKernels(ffc::platform::EInstructionLevel eLevel);
