/// \file
/// Pictures of stacks of frames.
#pragma once

#include <QImage>

#include "genapi/sensorformat.h"
#include "quality/framestack.h"

namespace ffc::quality {

/// The mean image as a viewer shows it, 8 bits per channel: grey, or for a mosaic a colour picture of half
/// the width and height, one pixel per 2 x 2 cell.
QImage MakeViewPicture(const CFrameStack &stStack, genapi::EColorLayout eLayout);

/// How far a pixel may lie from its plane's mean, relative to that mean, to fill half the grey scale.
/// \return the largest deviation of a block mean in any plane, at least 0.001
double GetContrastRange(const CFrameStack &stStack, genapi::EColorLayout eLayout);

/// The mean image stretched to show unevenness: each pixel relative to its plane's mean, -dRange black, 0
/// middle grey, +dRange white. With one range for two images their contrast can be compared.
QImage MakeContrastPicture(const CFrameStack &stStack, genapi::EColorLayout eLayout, double dRange);

/// The mean images before and after, as a viewer shows them, and stretched about their means, both alike.
struct SPictures {
  QImage imgBefore;
  QImage imgAfter;
  QImage imgContrastBefore;
  QImage imgContrastAfter;
};

SPictures MakePictures(const CFrameStack &stBefore, const CFrameStack &stAfter, genapi::EColorLayout eLayout);

} // namespace ffc::quality
