/// \file
/// A frame as the window shows it.
#pragma once

#include <cstdint>
#include <optional>

#include <QImage>
#include <QString>

#include "genapi/sensorformat.h"
#include "host/viewer/framepipeline.h"
#include "host/window/stretch.h"

namespace ffc::host {

struct SDisplayOptions {
  bool bColor = true;                ///< a mosaic in colour, else its bare samples
  bool bMarkOverexposed = false;     ///< samples from the threshold on in a colour that no scene has
  double dThreshold = 100;           ///< from where on a sample is over-exposed, percent of the format's maximum
  std::optional<SGreyRange> stRange; ///< none: the format's full range
};

/// The colour of over-exposed pixels.
constexpr QRgb OVEREXPOSED = 0xFFFF2D2D;

/// The format of a frame of a sensor's own samples whose bytes fit its size; null for any other, of which there are no
/// figures.
const genapi::SSensorFormat *GetShownFormat(const SFrameCopy &stFrame);

/// The least sample that is over-exposed, DN.
uint32_t GetOverexposedGrey(const genapi::SPixelFormat &stFormat, double dThreshold);

/// The frame at 8 bits per channel and at its own size. The colours of a mosaic are interpolated from the nearest
/// pixels of each colour; for display only.
/// \return null for a frame that cannot be shown, or when memory is short
QImage MakeDisplayPicture(const SFrameCopy &stFrame, const SDisplayOptions &stOptions);

/// Value of one sample in DN; the place lies within the frame.
uint32_t GetSample(const SFrameCopy &stFrame, const genapi::SSensorFormat &stFormat, uint32_t nColumn, uint32_t nLine);

/// What the status line says of one pixel: "x 12  y 7  2944 DN  71.9 %", with the colour of a mosaic's pixel; empty
/// outside the frame.
QString GetPixelText(const SFrameCopy &stFrame, int nColumn, int nLine);

} // namespace ffc::host
