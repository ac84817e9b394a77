/// \file
/// How well a flat corrects flats of other levels.
#pragma once

#include <QJsonObject>

#include "tools/ffc/framestacks.h"

namespace ffc::tool {

struct SLevel {
  QString strName; ///< of the folder or file
  uint32_t nFrames = 0;
  double dSignal = 0;       ///< DN above dark
  double dLevelPercent = 0; ///< brightness with the dark level, of full scale
  double dBefore = 0;       ///< PRNU after the high-pass, percent, of the worst channel
  double dAfter = 0;
  double dShadingAfter = 0; ///< percent
  double dClipped = 0;      ///< percent of the samples as they came
  bool bGood = false;       ///< dAfter is within the limit
};

struct SLevels {
  std::vector<SLevel> listLevels; ///< by rising level
  double dLimit = 0;              ///< percent, PRNU after the high-pass
  bool bLimitGiven = false;
  std::size_t nBest = 0; ///< the level of the smallest residual
};

/// Files of one folder are one level; a file with several frames is one by itself.
std::vector<QStringList> SplitIntoLevels(const QStringList &listFiles, const SOptions &stOptions);

/// \param stDark dark frames, before and after
/// \param dLimit percent; below 0: twice the smallest residual, and at least 0.1
/// \return a trouble with one of the files
std::optional<STrouble> MeasureLevels(const std::vector<QStringList> &listLevels, CStackReader &reader,
                                      const SStacks &stDark, double dLimit, SLevels &stLevels);

/// Decides which levels are good. Sorts by level.
void JudgeLevels(SLevels &stLevels);

QJsonObject MakeLevelsJson(const SLevels &stLevels);
/// A table, and from where to where the correction is good enough.
QString MakeLevelsText(const SLevels &stLevels);
/// Which level a flat should be made at.
QString AdviseLevel(const SLevels &stLevels);

} // namespace ffc::tool
