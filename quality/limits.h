/// \file
/// The highest figures that pass, as people state them.
#pragma once

#include <QString>

#include "platform/result.h"
#include "quality/uniformity.h"

namespace ffc::quality {

/// Highest figures that pass; below 0: any.
struct SLimits {
  double dShading = -1;      ///< percent
  double dPrnu = -1;         ///< percent
  double dDsnu = -1;         ///< DN
  double dPrnuHighPass = -1; ///< percent
  double dDsnuHighPass = -1; ///< DN

  bool NeedDark() const { return dPrnu >= 0 || dDsnu >= 0 || dPrnuHighPass >= 0 || dDsnuHighPass >= 0; }
  bool IsEmpty() const { return dShading < 0 && !NeedDark(); }
};

/// A figure that can have a limit.
struct SLimitedFigure {
  const char *pKey;   ///< as people type it: "prnu-high-pass"
  const char *pLabel; ///< "PRNU high-pass"
  const char *pUnit;
  double SLimits::*pLimit;
  double SUniformityFigures::*pPlane;         ///< null for a figure of the whole image only
  double (*fnOverall)(const SUniformity &st); ///< the worst plane's
  bool bNeedsDark;
};

/// Shading, PRNU and DSNU, and the latter two after the high-pass.
const std::vector<SLimitedFigure> &GetLimitedFigures();

/// Reads "shading=1.0,prnu=0.5,dsnu=2". What is not named may be anything.
/// \return what is wrong as the end of a sentence that begins with the option's name
Result<SLimits> ParseLimits(const QString &strLimits);

} // namespace ffc::quality
