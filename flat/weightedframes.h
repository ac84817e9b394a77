/// \file
/// Weighted frames in place of averaged ones, as tables are computed from.
#pragma once

#include <cstdint>
#include <optional>

#include "pluginobject/shadingcorrection/process/acquisition/framebuffer.h"
#include "pluginobject/shadingcorrection/process/acquisition/frameformat.h"
#include "reference/weightedreference.h"

namespace ffc::flat {

/// Bright and dark frames of one format, added up.
struct SAddedFrames {
  process::SFrameFormat stFormat;
  int32_t nBayerType = 0; ///< 0 mono, 1 to 4
  reference::SFrameSums stBright;
  reference::SFrameSums stDark; ///< no frames: the dark level is 0
  std::optional<reference::SCameraNoise> stCamera;
  uint32_t nThreads = 1;
};

/// In 16 bits whatever the frames have: a table has the same form for every depth, and takes the fraction.
struct SWeightedFrames {
  process::SFrameFormat stFormat;
  process::CFrameBuffer bright;
  process::CFrameBuffer dark; ///< without memory where there are no dark frames
  reference::SReferenceResult stResult;
};

/// \return 0; -2 when there is no memory; -3 for a format or counts that there are not
[[nodiscard]] int32_t WeightFrames(const SAddedFrames &stAdded, SWeightedFrames &stWeighted);

} // namespace ffc::flat
