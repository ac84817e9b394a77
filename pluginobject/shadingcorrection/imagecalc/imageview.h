/// \file
/// An image of the caller's.
#pragma once

#include <cstddef>
#include <cstdint>

#include "pluginobject/shadingcorrection/imagecalc/bayertype.h"

namespace ffc::imagecalc {

/// The bit depths of images: 8 to 16.
constexpr bool IsBitDepthInRange(int32_t nBitDepth)
{
  return nBitDepth >= 8 && nBitDepth <= 16;
}

/// Pixels row by row, without padding: bytes for a depth of 8, else 16-bit words with the value in their low bits.
struct SImageView {
  const void *pPixels = nullptr;
  int64_t nWidth = 0;  ///< pixels
  int64_t nHeight = 0; ///< pixels
  int32_t nBitDepth = 0;
  int32_t nBayerType = BAYER_TYPE_MONO; ///< the layout of its colours

  bool HasWords() const { return nBitDepth != 8; }
  std::size_t GetPixelBytes() const { return HasWords() ? 2 : 1; }
};

} // namespace ffc::imagecalc
