/// \file
/// Grey along the middle of an image, before and after, as a plot.
#pragma once

#include <QImage>
#include <QVector>

#include "camera/sensorformat.h"
#include "host/quality/framestack.h"

/// A row profile: grey against column.
struct SRowProfile {
  QVector<double> listColumns; ///< pixels
  QVector<double> listGrays;   ///< DN
};

/// The mean of the middle 32 lines (all lines of a lower image), column by column. Of a mosaic, the green
/// pixels of each pair of columns.
SRowProfile MakeRowProfile(const CFrameStack &stStack, EColorLayout eLayout);

/// Draws both profiles over the range of greys that they need. Needs a QApplication, on a display or off screen.
QImage DrawProfilePlot(const SRowProfile &stBefore, const SRowProfile &stAfter, const QString &strTitle);
