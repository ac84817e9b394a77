/// \file
/// The loops over pixels of the image library, once per instruction level.
///
/// Pixels are bytes for a depth of 8, else words; no buffer needs any alignment. Each depth has loops of its own,
/// so that its shifts are constants.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/instructionlevel.h"

namespace ffc::ombrix {

enum : uint32_t {
  FLATFIELD_MIN_BIT_DEPTH = 8,
  FLATFIELD_MAX_BIT_DEPTH = 16,
  FLATFIELD_BIT_DEPTHS = FLATFIELD_MAX_BIT_DEPTH - FLATFIELD_MIN_BIT_DEPTH + 1,
};

/// What a table, or a part of one, is made from, and where it goes. Tables overlap no frame.
struct STableRun {
  const void *pBright;
  const void *pDark; ///< null without a dark frame
  std::size_t nPixels;
  uint32_t nTarget;
  void *pGains;
  void *pLevels; ///< not used without a dark frame
};

/// A frame, or a part of one, to correct.
struct SFrameRun {
  const void *pSource;
  void *pDestination;
  std::size_t nPixels;
  const void *pGains;
  const void *pLevels; ///< not used without a dark frame
};

using FnComputeTable = void (*)(const STableRun &stRun);
using FnApplyTable = void (*)(const SFrameRun &stRun);

/// Functions by bit depth less FLATFIELD_MIN_BIT_DEPTH; then by whether there is a dark frame.
struct SFlatFieldKernels {
  platform::EInstructionLevel eLevel; ///< that the compiler really used
  FnComputeTable afnCompute[FLATFIELD_BIT_DEPTHS][2];
  /// Last by whether the destination is the source; otherwise they do not overlap.
  FnApplyTable afnApply[FLATFIELD_BIT_DEPTHS][2][2];
};

/// \return null for a level that was not built
const SFlatFieldKernels *FindSFlatFieldKernels(platform::EInstructionLevel eLevel);

} // namespace ffc::ombrix
