/// \file
/// Figures of one frame's samples: how many are over-exposed, a region, a line.
#pragma once

#include <optional>
#include <vector>

#include <QLine>
#include <QRect>
#include <QString>

#include "host/viewer/framepipeline.h"
#include "quality/profile.h"

namespace ffc::host {

/// The samples as the sensor gave them, where those were kept, else the frame itself.
const SFrameCopy &GetSamples(const SFrameCopy &stFrame);

/// Percent of the samples from a threshold on; nothing for a frame of which there are no figures.
/// \param dThreshold percent of the format's maximum
std::optional<double> GetOverexposedPercent(const SFrameCopy &stFrame, double dThreshold);

/// Of the samples of one colour in a region.
struct SRegionFigures {
  QString strPlane; ///< "Mono", "R", "G", "B"
  uint64_t nSamples = 0;
  double dMean = 0;             ///< DN
  double dDeviation = 0;        ///< DN, standard deviation from place to place: pattern and noise
  std::optional<double> dNoise; ///< DN, standard deviation from frame to frame
};

/// \param rcRegion within the frame
/// \param pPrevious the frame before, for the noise, where it is of the same kind; null: the noise is not known
/// \return one for each colour that has samples there; empty for a frame of which there are no figures
std::vector<SRegionFigures> MeasureRegion(const SFrameCopy &stFrame, const QRect &rcRegion,
                                          const SFrameCopy *pPrevious);

/// "mean 2047.3 DN, noise 12.1 DN, deviation 30.2 DN (64 x 32 px)", for each colour of a mosaic.
QString DescribeRegion(const std::vector<SRegionFigures> &listFigures, const QRect &rcRegion);

struct SLineProfile {
  QString strPlane;
  quality::SProfile stProfile; ///< against the distance from the line's beginning, pixels
};

/// The samples that a line passes, one for each pixel of its longer side.
/// \param line within the frame
std::vector<SLineProfile> MakeLineProfiles(const SFrameCopy &stFrame, const QLine &line);

} // namespace ffc::host
