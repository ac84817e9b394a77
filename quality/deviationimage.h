/// \file
/// How far each pixel of a channel lies from the channel's mean.
#pragma once

#include <vector>

#include "quality/framestack.h"

namespace ffc::quality {

/// Deviations from the mean, DN, line by line.
struct SDeviationImage {
  uint32_t nColumns = 0;
  uint32_t nRows = 0;
  uint32_t nFrames = 0; ///< averaged in each pixel
  std::vector<double> listValues;
};

/// Of the mean image of one stack, less that of the other where there is one: the dark frames for the image of DSNU,
/// bright less dark for that of PRNU. Stacks of one size, with frames. Needs 8 bytes per pixel of the channel.
/// \param pHighPass null: without the correction for uneven illumination
SDeviationImage MakeDeviationImage(const CFrameStack &stack, const CFrameStack *pLess, const SChannel &stChannel,
                                   const EHighPass *pHighPass);

} // namespace ffc::quality
