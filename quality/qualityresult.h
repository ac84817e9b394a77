/// \file
/// Everything that one quality measurement found.
#pragma once

#include <utility>
#include <vector>

#include <QImage>
#include <QList>
#include <QString>

#include "quality/framecountadvice.h"
#include "quality/noise.h"
#include "quality/pictures.h"
#include "quality/referenceadvice.h"
#include "quality/report.h"
#include "quality/verdict.h"

namespace ffc::quality {

struct SResult {
  SReport stReport;
  std::vector<SNoise> listNoise; ///< of the raw bright frames, by plane
  SFrameCountAdvice stAdvice;
  QStringList listAdvice;        ///< what would make the reference better, in sentences
  QStringList listBrightRemarks; ///< what speaks against the bright field, in sentences
  bool bSameExposures = true;    ///< before and after; what follows is known only then
  uint64_t nNewlyClipped = 0;    ///< samples of all measured bright frames
  uint64_t nAtGainLimit = 0;     ///< pixels
  SPictures stPictures;
  QImage imgProfile;
  QList<std::pair<QString, QString>> listSettings; ///< feature and value
};

/// The result as report.json has it, with noise, advice and counts.
/// \param stLimits the user's, with the verdict that follows from them
QJsonObject MakeJson(const SResult &stResult, const SLimits &stLimits);

} // namespace ffc::quality
