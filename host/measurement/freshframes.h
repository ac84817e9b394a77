/// \file
/// Frames of the running stream, taken for figures.
#pragma once

#include <cstdint>

#include "genapi/sensorformat.h"
#include "host/viewer/framecollector.h"
#include "platform/result.h"
#include "quality/pairedstacks.h"

namespace ffc::host {

/// Fresh frames of each scene that a figure is taken on.
constexpr uint32_t MEASURED_FRAMES = 16;

struct SStreamFormat {
  const genapi::SSensorFormat *pFormat = nullptr;
  uint32_t nWidth = 0; ///< pixels
  uint32_t nHeight = 0;
};

/// Of a new frame: the latest may be of a format that an acquisition selected for itself.
Result<SStreamFormat> ReadStreamFormat(CFrameCollector &collector,
                                       CFramePipeline::EWanted eWanted = CFramePipeline::EWanted::Any);

/// Takes MEASURED_FRAMES exposures, as they came and as they were corrected, into emptied stacks.
/// \param eWanted any: what nobody corrected counts as it came
Result<> TakePairs(CFrameCollector &collector, const SStreamFormat &stFormat, quality::CPairedStacks &stStacks,
                   CFramePipeline::EWanted eWanted = CFramePipeline::EWanted::Corrected);

/// Takes MEASURED_FRAMES frames into an emptied stack: corrected ones, or any as they came.
Result<> TakeFrames(CFrameCollector &collector, const SStreamFormat &stFormat, CFramePipeline::EWanted eWanted,
                    quality::CFrameStack &stStack);

/// Lets frames go by that may still be of the scene, or the correction, before a change.
Result<> SkipFrames(CFrameCollector &collector, uint32_t nFrames);

} // namespace ffc::host
