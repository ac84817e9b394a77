/// \file
/// Whether a coefficient table can have the shape that it is read in.
#pragma once

#include <cstdint>
#include <optional>

namespace ffc::quality {

/// Size of an image, pixels.
struct STableShape {
  uint32_t nWidth = 0;
  uint32_t nHeight = 0;
};

/// Looks for a seam in the gains of a table. A pixel's gain resembles that of the pixel two lines below, which lies two
/// widths behind it. Where the gains of another width with the same number of pixels resemble each other far more, the
/// table has that width. Pixels are compared in runs, so that their own pattern does not hide the shading.
///
/// A table is not found where two of the stated lines are whole lines of it, as with whole multiples of its width.
/// \param pGains of nWidth x nHeight pixels
/// \return the shape that fits; none where the stated one does, or where the gains are too even to tell
std::optional<STableShape> FindOtherShape(const uint16_t *pGains, uint32_t nWidth, uint32_t nHeight);

} // namespace ffc::quality
