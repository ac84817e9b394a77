/// \file
/// What the plots show of one frame.
#pragma once

#include <optional>
#include <vector>

#include <QLine>
#include <QString>
#include <QVector>

#include "host/viewer/framepipeline.h"
#include "quality/blockmeans.h"
#include "quality/profile.h"

namespace ffc::host {

constexpr int HISTOGRAM_BINS = 256; ///< over the range of the format, whatever its depth

struct SPlaneAnalysis {
  QString strName; ///< the plane's: "Mono", "R", "G", "B"
  quality::SProfile stRow;
  quality::SProfile stColumn;
  quality::SProfile stLine;      ///< along the line that was asked for
  QVector<double> listHistogram; ///< pixels per bin
};

struct SFrameAnalysis {
  std::vector<SPlaneAnalysis> listPlanes; ///< empty for a frame that cannot be analysed
  /// Means of blocks of 32 x 32, each plane's in percent of that plane's own mean, averaged over the planes.
  quality::SBlockMeans stBlocks;
  uint32_t nMaximum = 0; ///< DN, of the format
};

/// On any thread. Takes some 4 bytes of memory per pixel meanwhile.
/// \param line whose profile is wanted, within the frame; none: no profile
SFrameAnalysis AnalyseFrame(const SFrameCopy &stFrame, const std::optional<QLine> &line = std::nullopt);

} // namespace ffc::host
