/// \file
/// DSNU and PRNU after EMVA 1288 Release 4.0 Linear: in total, and of rows, columns and pixels.
#pragma once

#include <string>
#include <vector>

#include "quality/framestack.h"

namespace ffc::quality {

/// Of the mean image of L frames, in DN^2. What is left when the noise is taken off may be slightly negative.
struct SSpatialVariances {
  uint32_t nRows = 0;        ///< M
  uint32_t nColumns = 0;     ///< N
  uint32_t nFrames = 0;      ///< L
  double dTemporal = 0;      ///< sigma^2_y.stack
  double dMeasured = 0;      ///< s^2_y.measured
  double dTotal = 0;         ///< s^2_y
  double dColumnAverage = 0; ///< s^2_y.cav
  double dRowAverage = 0;    ///< s^2_y.rav
  double dRow = 0;           ///< s^2_y.row
  double dColumn = 0;        ///< s^2_y.col
  double dPixel = 0;         ///< s^2_y.pixel
};

/// The figures of one kind, each 0 where the noise hides it.
struct SNonuniformityParts {
  double dTotal = 0;
  double dRow = 0;
  double dColumn = 0;
  double dPixel = 0;
};

/// Of one channel.
struct SNonuniformity {
  std::string strName;
  double dSignal = 0; ///< mu_y - mu_y.dark, DN, always of the frames as they came
  SSpatialVariances stBright;
  SSpatialVariances stDark;
  SNonuniformityParts stDsnu; ///< DSNU_1288 in DN
  SNonuniformityParts stPrnu; ///< PRNU_1288 in percent
};

/// Needs frames in both stacks, of one size. A single frame says nothing about temporal noise: none is then taken off.
/// \param bHighPass after the correction for uneven illumination; only where both stacks were prepared for it
/// \return one per channel; none where they were not, or where the image is too small for the filter
std::vector<SNonuniformity> MeasureNonuniformity(const CFrameStack &stBright, const CFrameStack &stDark,
                                                 genapi::EColorLayout eLayout, bool bHighPass);

/// Solves the three equations that tie the variances of rows, columns and pixels to those of the averages:
/// cav = col + pixel / M, rav = row + pixel / N, total = row + col + pixel.
void SplitVariance(SSpatialVariances &stVariances);

} // namespace ffc::quality
