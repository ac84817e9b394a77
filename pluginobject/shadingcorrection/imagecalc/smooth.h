/// \file
/// A 3x3 box filter. Arguments are checked by the caller.
#pragma once

#include <cstdint>

#include "pluginobject/shadingcorrection/imagecalc/imageview.h"

namespace ffc::imagecalc {

/// Writes a smoothed copy of an image. Each inner pixel becomes ((sum + 4) x 455) >> 12 of itself and its
/// eight immediate neighbours, whatever their colours; the border is copied.
/// \param stSource with sides of more than twice the border
/// \param pDestination room for an image like the source, which it must not overlap
/// \param nBorder at least 1
void SmoothPixels(const SImageView &stSource, void *pDestination, int32_t nBorder);

} // namespace ffc::imagecalc
