#include "pluginobject/shadingcorrection/imagecalc/frameaverage.h"

#include "pluginobject/shadingcorrection/imagecalc/kernels/imagekernels.h"

namespace {

constexpr int32_t BYTE_BIT_DEPTH = 8;

// The smallest exponent of 2 whose power is not below the number, which is at least 1.
uint32_t GetCeilingLog2(uint32_t nNumber)
{
  uint32_t nLog = 0;
  while ((uint64_t{1} << nLog) < nNumber) {
    ++nLog;
  }
  return nLog;
}

// After Granlund and Montgomery, "Division by Invariant Integers using Multiplication": exact for every 32-bit number.
// \param nDivisor at least 2
SReciprocal GetReciprocal(uint32_t nDivisor)
{
  const uint32_t nLog = GetCeilingLog2(nDivisor);
  const uint64_t nMultiplier = (((uint64_t{1} << nLog) - nDivisor) << 32) / nDivisor + 1;
  return {static_cast<uint32_t>(nMultiplier), nLog - 1};
}

} // namespace

void AddFrame(const void *pFrame, int32_t nBitDepth, int64_t nPixelCount, uint32_t *pAccumulator)
{
  GetImageKernels().afnAdd[nBitDepth != BYTE_BIT_DEPTH](pFrame, static_cast<std::size_t>(nPixelCount), pAccumulator);
}

void AverageFrames(const uint32_t *pAccumulator, int64_t nPixelCount, uint32_t nFrameCount, int32_t nBitDepth,
                   void *pFrame)
{
  const bool bWords = nBitDepth != BYTE_BIT_DEPTH;
  const auto nPixels = static_cast<std::size_t>(nPixelCount);
  const uint32_t nLog = GetCeilingLog2(nFrameCount);
  if (uint64_t{1} << nLog == nFrameCount) {
    GetImageKernels().afnShift[bWords](pAccumulator, nPixels, nLog, pFrame);
  } else {
    GetImageKernels().afnDivide[bWords](pAccumulator, nPixels, GetReciprocal(nFrameCount), pFrame);
  }
}
