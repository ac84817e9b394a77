/// \file
/// Sums and averages of frames. But for CheckSum, arguments are checked by the caller.
#pragma once

#include <cstdint>

namespace ffc::imagecalc {

/// Checks what a frame is added to, or averaged from.
/// \return -101 for a missing buffer, else -102 for a bit depth outside 8 to 16 or a count below 1
[[nodiscard]] int32_t CheckSum(const void *pFrame, const void *pSums, int32_t nBitDepth, int64_t nPixelCount,
                               int32_t nFrameCount = 1);

/// Adds a frame to the sums, which wrap round at 2^32.
/// \param pFrame nPixelCount pixels of the bit depth's type
void AddFrame(const void *pFrame, int32_t nBitDepth, int64_t nPixelCount, uint32_t *pAccumulator);

/// The same in 16 bits, wrapping round at 2^16.
/// \return all bits that any of the pixels has: none is larger than that
uint32_t AddFrameNarrow(const void *pFrame, int32_t nBitDepth, int64_t nPixelCount, void *pSums);
/// Takes a frame back that was added in 16 bits.
void TakeFrameNarrow(const void *pFrame, int32_t nBitDepth, int64_t nPixelCount, void *pSums);
/// Turns sums of 16 bits into ones of 32, in the same place.
/// \param pSums 4 bytes for each
void WidenSums(void *pSums, int64_t nCount);

/// Writes the truncated averages, cut to the pixel's type.
/// \param nFrameCount at least 1
/// \param pFrame nPixelCount pixels of the bit depth's type
void AverageFrames(const uint32_t *pAccumulator, int64_t nPixelCount, uint32_t nFrameCount, int32_t nBitDepth,
                   void *pFrame);
/// The same of sums of 16 bits.
/// \return false, without writing, for a frame count that is no power of two
[[nodiscard]] bool AverageFramesNarrow(const void *pSums, int64_t nPixelCount, uint32_t nFrameCount, int32_t nBitDepth,
                                       void *pFrame);

} // namespace ffc::imagecalc
