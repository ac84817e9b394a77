#include "pluginobject/shadingcorrection/imagecalc/frameaverage.h"

#include <cstddef>
#include <cstring>

#include "pluginobject/shadingcorrection/imagecalc/calcstatus.h"
#include "pluginobject/shadingcorrection/imagecalc/imageview.h"
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

int32_t CheckSum(const void *pFrame, const void *pSums, int32_t nBitDepth, int64_t nPixelCount, int32_t nFrameCount)
{
  if (pFrame == nullptr || pSums == nullptr) {
    return IMAGECALC_STATUS_INVALID_ARGUMENT;
  }
  const bool bInRange = IsBitDepthInRange(nBitDepth) && nPixelCount >= 1 && nFrameCount >= 1;
  return bInRange ? IMAGECALC_STATUS_SUCCESS : IMAGECALC_STATUS_OUT_OF_RANGE;
}

void AddFrame(const void *pFrame, int32_t nBitDepth, int64_t nPixelCount, uint32_t *pAccumulator)
{
  GetImageKernels().afnAdd[nBitDepth != BYTE_BIT_DEPTH](pFrame, static_cast<std::size_t>(nPixelCount), pAccumulator);
}

uint32_t AddFrameNarrow(const void *pFrame, int32_t nBitDepth, int64_t nPixelCount, void *pSums)
{
  return GetImageKernels().afnAddNarrow[nBitDepth != BYTE_BIT_DEPTH](pFrame, static_cast<std::size_t>(nPixelCount),
                                                                     pSums);
}

void TakeFrameNarrow(const void *pFrame, int32_t nBitDepth, int64_t nPixelCount, void *pSums)
{
  GetImageKernels().afnTakeNarrow[nBitDepth != BYTE_BIT_DEPTH](pFrame, static_cast<std::size_t>(nPixelCount), pSums);
}

// From the end: what the upper half of the sums becomes lies behind all of them.
void WidenSums(void *pSums, int64_t nCount)
{
  auto *const pBytes = static_cast<unsigned char *>(pSums);
  auto nLeft = static_cast<std::size_t>(nCount);
  while (nLeft > 1) {
    const std::size_t nUpper = nLeft / 2;
    nLeft -= nUpper;
    GetImageKernels().fnWiden(pBytes + nLeft * sizeof(uint16_t), nUpper, pBytes + nLeft * sizeof(uint32_t));
  }
  if (nLeft == 1) {
    uint16_t nNarrow = 0;
    std::memcpy(&nNarrow, pBytes, sizeof nNarrow);
    const uint32_t nWide = nNarrow;
    std::memcpy(pBytes, &nWide, sizeof nWide);
  }
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

bool AverageFramesNarrow(const void *pSums, int64_t nPixelCount, uint32_t nFrameCount, int32_t nBitDepth, void *pFrame)
{
  const SDivision stDivision = GetDivision(nFrameCount);
  if (stDivision.bPowerOfTwo) {
    GetImageKernels().afnShiftNarrow[nBitDepth != BYTE_BIT_DEPTH](pSums, static_cast<std::size_t>(nPixelCount),
                                                                  stDivision.stReciprocal.nShift, pFrame);
  }
  return stDivision.bPowerOfTwo;
}

} // namespace ffc::imagecalc
