/// \file
/// Grey along the middle of an image, before and after, as a plot.
#pragma once

#include <QImage>

#include "genapi/sensorformat.h"
#include "quality/framestack.h"
#include "quality/profile.h"

namespace ffc::quality {

/// Of a mosaic, the profile of the green pixels.
SProfile MakeRowProfile(const CFrameStack &stStack, genapi::EColorLayout eLayout);

/// Draws both profiles, or the first alone where the second is empty, over the range of greys that they need. Needs a
/// QApplication, on a display or off screen.
QImage DrawProfilePlot(const SProfile &stBefore, const SProfile &stAfter, const QString &strTitle);

} // namespace ffc::quality
