/// \file
/// Grey along one direction of an image.
#pragma once

#include <QVector>

#include "quality/framestack.h"

namespace ffc::quality {

/// Grey against column or line.
struct SProfile {
  QVector<double> listPositions; ///< pixels; of a mosaic the middle of each pair of columns or lines
  QVector<double> listGrays;     ///< DN
};

/// Grey along the lines: the mean of the plane's pixels in the middle 32 lines (all lines of a lower image), column
/// by column; of a mosaic in pairs of columns. Only for a stack with frames.
SProfile MakeRowProfile(const CFrameStack &stStack, const SColorPlane &stPlane);

/// The same down the columns: the middle 32 columns, line by line.
SProfile MakeColumnProfile(const CFrameStack &stStack, const SColorPlane &stPlane);

} // namespace ffc::quality
