/// \file
/// How many bright frames a reference should be made of.
#pragma once

#include <vector>

#include <QString>

#include "quality/noise.h"

namespace ffc::quality {

/// What N frames leave: the average of N frames carries the noise of one, divided by the root of N, into every
/// corrected image, in exchange for the pixels' pattern.
struct SFrameCountAdvice {
  enum class EVerdict {
    Unknown,     ///< nothing was measured
    NoPattern,   ///< the noise drowns the pattern
    OneIsEnough, ///< even one frame is well below the pattern
    TakeMore,    ///< nBreakEven frames only break even, nAdvised do better
    NeverEnough  ///< 16 frames carry more noise in than they take pattern out
  };
  EVerdict eVerdict = EVerdict::Unknown;
  double dBreakEven = 0; ///< frames at which noise equals pattern; any positive number
  int nBreakEven = 0;    ///< the offered count that first reaches it
  int nAdvised = 16;     ///< the offered count that brings the noise to half of the pattern, or 16
  double dNoise = 0;     ///< DN that the advised count leaves
  double dPattern = 0;   ///< DN that it takes away
};

/// Of one plane. With noise s and pattern p, N frames break even at N = (s / p)^2.
SFrameCountAdvice AdviseFrameCount(const SNoise &stNoise);

/// Of the plane that needs the most frames.
SFrameCountAdvice AdviseFrameCount(const std::vector<SNoise> &listNoise);

/// The advice in a sentence, in the language of the program.
QString DescribeAdvice(const SFrameCountAdvice &stAdvice);

} // namespace ffc::quality
