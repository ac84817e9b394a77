/// \file
/// Whether a corrected image is flat enough.
#pragma once

#include <vector>

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include "quality/limits.h"
#include "quality/uniformity.h"

namespace ffc::quality {

enum class EVerdict {
  Unknown,  ///< not measured
  Baseline, ///< measured without a correction: there is nothing to compare
  Open,     ///< no limit was stated, and it is no worse than before
  Pass,     ///< within the limit, and no worse than before
  Fail,     ///< beyond the limit
  Worse     ///< worse than without correction, whatever the limit
};

/// One figure.
struct SJudgedFigure {
  const SLimitedFigure *pFigure = nullptr;
  EVerdict eVerdict = EVerdict::Unknown;
  std::string strPlane; ///< the one that got worse; empty: the whole image, or the worst plane
  double dBefore = 0;
  double dAfter = 0;
  double dLimit = -1; ///< below 0: none
};

struct SVerdict {
  EVerdict eVerdict = EVerdict::Unknown;  ///< the worst of the figures'; Pass only where some limit was stated
  std::vector<SJudgedFigure> listFigures; ///< shading, PRNU, DSNU, and those others that have a limit

  /// Whether every figure that a limit was stated for passes; also without any limit.
  bool KeepsLimits() const;
};

/// Judges every colour plane. A figure that is worse than before is never a pass, but for a DSNU below what rounding to
/// whole numbers hides.
/// \param stAfter empty for a baseline
SVerdict Judge(const SUniformity &stBefore, const SUniformity &stAfter, const SLimits &stLimits);

/// A line for each figure, in the language of the program; one line where nothing was measured.
QStringList DescribeVerdict(const SVerdict &stVerdict);

/// "pass", "fail", "worse", "open", "baseline", "unknown"
const char *GetVerdictName(EVerdict eVerdict);

/// Adds the verdict, each figure's, and the limits that were stated.
void InsertVerdict(const SVerdict &stVerdict, QJsonObject &json);

/// What a fresh flat says of the coefficients in use.
enum class EDrift {
  Unknown, ///< nothing was measured
  Steady,  ///< within the limit
  Grown,   ///< within the limit, but more than twice as uneven as when it was measured first
  Beyond   ///< not within the limit any more
};

/// \param dThenPercent shading at the measurement before, or negative when there was none
EDrift JudgeDrift(double dThenPercent, double dNowPercent, double dLimitPercent);

QString DescribeDrift(EDrift eDrift, double dThenPercent, double dNowPercent, double dLimitPercent);

} // namespace ffc::quality
