#include "quality/framecountadvice.h"

#include <iterator>

#include "genapi/framecounts.h"

#include <cmath>

#include <QCoreApplication>

namespace ffc::quality {
namespace {

/// Noise at half of the pattern adds an eighth to what is left of it: more frames would hardly show.
constexpr double WELL_BELOW = 4.0; ///< times the break-even count

/// The first offered count from dFrames on; 0 when all are too few.
int RoundUp(double dFrames)
{
  for (const int nCount : genapi::FRAME_COUNTS) {
    if (nCount >= dFrames) {
      return nCount;
    }
  }
  return 0;
}

QString Translate(const char *pText)
{
  return QCoreApplication::translate("FrameCountAdvice", pText);
}

} // namespace

SFrameCountAdvice AdviseFrameCount(const SNoise &stNoise)
{
  using EVerdict = SFrameCountAdvice::EVerdict;
  SFrameCountAdvice stAdvice;
  if (!(stNoise.dTemporal > 0)) {
    return stAdvice;
  }
  stAdvice.dPattern = stNoise.dPattern;
  stAdvice.dNoise = stNoise.dTemporal / std::sqrt(static_cast<double>(stAdvice.nAdvised));
  if (!(stNoise.dPattern > 0)) {
    stAdvice.eVerdict = EVerdict::NoPattern;
    return stAdvice;
  }
  const double dRatio = stNoise.dTemporal / stNoise.dPattern;
  stAdvice.dBreakEven = dRatio * dRatio;
  stAdvice.nBreakEven = RoundUp(stAdvice.dBreakEven);
  const int nWellBelow = RoundUp(stAdvice.dBreakEven * WELL_BELOW);
  stAdvice.nAdvised = nWellBelow == 0 ? *std::rbegin(genapi::FRAME_COUNTS) : nWellBelow;
  stAdvice.dNoise = stNoise.dTemporal / std::sqrt(static_cast<double>(stAdvice.nAdvised));
  stAdvice.eVerdict = stAdvice.nBreakEven == 0 ? EVerdict::NeverEnough
                      : stAdvice.nAdvised == 1 ? EVerdict::OneIsEnough
                                               : EVerdict::TakeMore;
  return stAdvice;
}

SFrameCountAdvice AdviseFrameCount(const std::vector<SNoise> &listNoise)
{
  SFrameCountAdvice stWorst;
  for (const SNoise &stNoise : listNoise) {
    const SFrameCountAdvice stAdvice = AdviseFrameCount(stNoise);
    const bool bDrowned = stAdvice.eVerdict == SFrameCountAdvice::EVerdict::NoPattern;
    if (stWorst.eVerdict == SFrameCountAdvice::EVerdict::Unknown || bDrowned ||
        stAdvice.dBreakEven > stWorst.dBreakEven) {
      stWorst = stAdvice;
    }
    if (bDrowned) {
      break;
    }
  }
  return stWorst;
}

QString DescribeAdvice(const SFrameCountAdvice &stAdvice)
{
  using EVerdict = SFrameCountAdvice::EVerdict;
  switch (stAdvice.eVerdict) {
  case EVerdict::Unknown: return Translate("Not enough different frames to tell a frame count.");
  case EVerdict::NoPattern: return Translate("No pixel pattern can be seen beneath the noise; take 16 frames.");
  case EVerdict::OneIsEnough: return Translate("One frame is enough: its noise is well below the pixel pattern.");
  case EVerdict::NeverEnough:
    return Translate("Even 16 frames add more noise than they remove pattern (break-even at %1); "
                     "take 16, with more light.")
      .arg(std::ceil(stAdvice.dBreakEven), 0, 'f', 0);
  case EVerdict::TakeMore: break;
  }
  if (stAdvice.nAdvised == stAdvice.nBreakEven) {
    return Translate("Nothing less than %1 frames breaks even; take %1.").arg(stAdvice.nAdvised);
  }
  return stAdvice.nBreakEven == 1
           ? Translate("1 frame only breaks even, take %1.").arg(stAdvice.nAdvised)
           : Translate("%1 frames only break even, take %2.").arg(stAdvice.nBreakEven).arg(stAdvice.nAdvised);
}

} // namespace ffc::quality
