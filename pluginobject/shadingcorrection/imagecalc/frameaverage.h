/// \file
/// Sums and averages of frames. Arguments are checked by the caller.
#pragma once

#include <cstdint>

namespace ffc::imagecalc {

/// Adds a frame to the sums, which wrap round at 2^32.
/// \param pFrame nPixelCount pixels of the bit depth's type
void AddFrame(const void *pFrame, int32_t nBitDepth, int64_t nPixelCount, uint32_t *pAccumulator);

/// Writes the truncated averages, cut to the pixel's type.
/// \param nFrameCount at least 1
/// \param pFrame nPixelCount pixels of the bit depth's type
void AverageFrames(const uint32_t *pAccumulator, int64_t nPixelCount, uint32_t nFrameCount, int32_t nBitDepth,
                   void *pFrame);

} // namespace ffc::imagecalc
