#include "pluginobject/shadingcorrection/imagecalc/frameaverage.h"

#include "pluginobject/shadingcorrection/imagecalc/kernels/imagekernels.h"

namespace ffc::imagecalc {

namespace {

constexpr int32_t BYTE_BIT_DEPTH = 8;

// How to divide by a number of frames, exactly for every 32-bit sum. The fields are those of one of the kernels.
struct SDivision {
  bool bPowerOfTwo;
  bool bWide; // the multiplier has a 33rd bit
  SReciprocal stReciprocal;
};

// After Granlund and Montgomery, "Division by Invariant Integers using Multiplication": with the multiplier rounded up,
// sum x (its error) must stay below 2^(32 + shift), for which the error may be 2^shift.
SDivision GetDivision(uint32_t nDivisor)
{
  if (nDivisor < 2) {
    return {true, false, {0, 0}};
  }
  uint32_t nShift = 0;
  for (; uint64_t{1} << nShift < nDivisor; ++nShift) {
    const uint64_t nMultiplier = (uint64_t{1} << (32 + nShift)) / nDivisor + 1;
    const uint64_t nError = nMultiplier * nDivisor - (uint64_t{1} << (32 + nShift));
    if (nError <= uint64_t{1} << nShift) {
      return {false, false, {static_cast<uint32_t>(nMultiplier), nShift}};
    }
  }
  if (uint64_t{1} << nShift == nDivisor) {
    return {true, false, {0, nShift}};
  }
  const uint64_t nMultiplier = (((uint64_t{1} << nShift) - nDivisor) << 32) / nDivisor + 1;
  return {false, true, {static_cast<uint32_t>(nMultiplier), nShift - 1}};
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
  const SImageKernels &stKernels = GetImageKernels();
  const SDivision stDivision = GetDivision(nFrameCount);
  if (stDivision.bPowerOfTwo) {
    stKernels.afnShift[bWords](pAccumulator, nPixels, stDivision.stReciprocal.nShift, pFrame);
  } else if (stDivision.bWide) {
    stKernels.afnDivide[bWords](pAccumulator, nPixels, stDivision.stReciprocal, pFrame);
  } else {
    stKernels.afnMultiply[bWords](pAccumulator, nPixels, stDivision.stReciprocal, pFrame);
  }
}

} // namespace ffc::imagecalc
