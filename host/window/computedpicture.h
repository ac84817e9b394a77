/// \file
/// Frames that are no sensor's own samples, as the window shows them.
#pragma once

#include <QImage>

#include "host/viewer/framepipeline.h"

namespace ffc::host {

/// RGB and BGR in their colours, YUV by its brightness, whatever has one number of 8 or 16 bits for each pixel in grey.
/// \return null for any other format, for a frame whose bytes do not fit its size, or when memory is short
QImage MakeComputedPicture(const SFrameCopy &stFrame);

} // namespace ffc::host
