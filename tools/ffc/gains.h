/// \file
/// What the gains of a host-side coefficient table show.
#pragma once

#include <cstdint>

#include <QImage>

#include "pluginobject/shadingcorrection/process/acquisition/framebuffer.h"

namespace ffc::tool {

/// Gains as factors: 4096 in the table is 1.
struct SGains {
  double dSmallest = 0;
  double dLargest = 0;
  double dMean = 0;
  uint64_t nAtLimit = 0; ///< pixels whose gain is held at the largest number that there is
};

/// \param nPixels at least 1; the table has at least twice as many bytes
SGains MeasureGains(const process::CFrameBuffer &table, uint64_t nPixels);

/// The gains as a grey picture, the smallest black and the largest white; pixels at the limit count for none of them.
QImage PaintGains(const process::CFrameBuffer &table, uint32_t nWidth, uint32_t nHeight);

} // namespace ffc::tool
