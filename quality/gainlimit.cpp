#include "quality/gainlimit.h"

namespace ffc::quality {
namespace {

bool HaveOneSize(const CFrameStack &stFirst, const CFrameStack &stSecond)
{
  return stFirst.GetFrameCount() > 0 && stSecond.GetFrameCount() > 0 && stFirst.GetWidth() == stSecond.GetWidth() &&
         stFirst.GetHeight() == stSecond.GetHeight() && stFirst.GetBitDepth() == stSecond.GetBitDepth();
}

} // namespace

uint64_t CountPixelsAtGainLimit(const CFrameStack &stRaw, const CFrameStack &stDark, const CFrameStack &stCorrected)
{
  if (!HaveOneSize(stRaw, stDark) || !HaveOneSize(stRaw, stCorrected)) {
    return 0;
  }
  uint64_t nCount = 0;
  for (uint32_t nLine = 0; nLine < stRaw.GetHeight(); ++nLine) {
    for (uint32_t nColumn = 0; nColumn < stRaw.GetWidth(); ++nColumn) {
      const double dSignal = stRaw.GetMean(nColumn, nLine) - stDark.GetMean(nColumn, nLine);
      nCount += dSignal <= 0 || stCorrected.GetMean(nColumn, nLine) >= GAIN_LIMIT * dSignal ? 1U : 0U;
    }
  }
  return nCount;
}

} // namespace ffc::quality
