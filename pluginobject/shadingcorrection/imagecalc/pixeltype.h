/// \file
/// The pixel type that belongs to a bit depth.
#pragma once

#include <cstdint>

/// Calls a function with a pixel of the depth's type, which it takes as a sign only: uint8_t for a bit
/// depth of 8, uint16_t for every other. Chosen once per image, outside the loops.
template <typename TFunction>
void WithPixelType(int32_t nBitDepth, TFunction function)
{
  if (nBitDepth == 8) {
    function(uint8_t{});
  } else {
    function(uint16_t{});
  }
}
