/// \file
/// A 3x3 box filter. Arguments are checked by the caller.
#pragma once

#include <cstdint>

/// Writes a smoothed copy of an image. Each inner pixel becomes ((sum + 4) x 455) >> 12 of itself and its
/// eight immediate neighbours, whatever their colours; the border is copied.
/// \param pSource, pDestination pixels of the bit depth's type; must not overlap
/// \param nWidth, nHeight more than twice the border
/// \param nBorder at least 1
void SmoothPixels(const void *pSource, void *pDestination, int32_t nBitDepth, int32_t nWidth, int32_t nHeight,
                  int32_t nBorder);
