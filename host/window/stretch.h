/// \file
/// Which greys the display shows as black and as white. For the eye only: figures come from the samples.
#pragma once

#include <cstdint>
#include <vector>

#include <QString>

#include "host/viewer/framepipeline.h"

namespace ffc::host {

/// How the display's black and white are chosen.
enum class EStretch {
  FullRange, ///< that of the format
  Auto,      ///< from what each frame has; halves of a split view alike
  PerImage,  ///< the same, each half of a split view for itself
  Fixed      ///< as the user sets it
};

/// Greys shown as black and as white, DN.
struct SGreyRange {
  double dBlack = 0;
  double dWhite = 255;

  bool operator==(const SGreyRange &stOther) const { return dBlack == stOther.dBlack && dWhite == stOther.dWhite; }
};

/// The greys that all but a thousandth of the samples at either end lie between. Looks at half a million samples at
/// most, spread over the frame.
/// \return at least 4 DN, within the format; 0 to 255 for a frame of which there are no figures
SGreyRange FindGreyRange(const SFrameCopy &stFrame);

/// One range over both.
SGreyRange Unite(const SGreyRange &stFirst, const SGreyRange &stSecond);

/// 0 to the format's maximum.
SGreyRange GetFullRange(uint32_t nMaximum);

/// What the display shows of each sample.
/// \param nSamples how many values a sample can have, whatever its format says
std::vector<uint8_t> MakeGreyTable(const SGreyRange &stRange, uint32_t nSamples);

/// What stands on the image that is stretched so.
QString DescribeRange(const SGreyRange &stRange);

} // namespace ffc::host
