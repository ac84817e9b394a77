/// \file
/// What the gains of a host-side coefficient table show.
#pragma once

#include <cstdint>
#include <vector>

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

/// How many pixels have which gain. Those at the limit are counted nowhere: they would stretch the range.
struct SGainHistogram {
  double dFrom = 0; ///< of the first of the bins, which are equally wide
  double dTo = 0;   ///< of the last
  std::vector<uint64_t> listCounts;
};

SGainHistogram MeasureGainHistogram(const process::CFrameBuffer &table, uint64_t nPixels, uint32_t nBins);

/// The gains as a picture, the smallest black, the largest white and those at the limit red, and their histogram beside
/// it. The picture of a large sensor shows every second pixel, or third, and so on.
/// \return null without memory
QImage PlotGains(const process::CFrameBuffer &table, uint32_t nWidth, uint32_t nHeight);

} // namespace ffc::tool
