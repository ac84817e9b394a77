#include "quality/limits.h"

#include <algorithm>
#include <cmath>

#include <QStringList>

namespace ffc::quality {

const std::vector<SLimitedFigure> &GetLimitedFigures()
{
  static const std::vector<SLimitedFigure> LIST = {
    {"shading", "shading", "%", &SLimits::dShading, &SUniformityFigures::dShadingPercent,
     [](const SUniformity &st) { return st.stOverall.dShadingPercent; }, false},
    {"prnu", "PRNU", "%", &SLimits::dPrnu, &SUniformityFigures::dPrnuPercent,
     [](const SUniformity &st) { return st.stOverall.dPrnuPercent; }, true},
    {"dsnu", "DSNU", "DN", &SLimits::dDsnu, &SUniformityFigures::dDsnuDn,
     [](const SUniformity &st) { return st.stOverall.dDsnuDn; }, true},
    {"prnu-high-pass", "PRNU high-pass", "%", &SLimits::dPrnuHighPass, nullptr,
     [](const SUniformity &st) { return TakeWorst(st.listHighPass).stPrnu.dTotal; }, true},
    {"dsnu-high-pass", "DSNU high-pass", "DN", &SLimits::dDsnuHighPass, nullptr,
     [](const SUniformity &st) { return TakeWorst(st.listHighPass).stDsnu.dTotal; }, true},
  };
  return LIST;
}

Result<SLimits> ParseLimits(const QString &strLimits)
{
  SLimits stLimits;
  const auto &listFigures = GetLimitedFigures();
  for (const QString &strLimit : strLimits.split(',', Qt::SkipEmptyParts)) {
    const QString strName = strLimit.section('=', 0, 0).trimmed();
    bool bNumber = false;
    const double dLimit = strLimit.section('=', 1).toDouble(&bNumber);
    const auto it = std::find_if(listFigures.begin(), listFigures.end(), [&](const SLimitedFigure &stFigure) {
      return strName == QLatin1String(stFigure.pKey);
    });
    if (it == listFigures.end() || !bNumber || !(dLimit >= 0) || std::isinf(dLimit)) {
      return Failure("takes shading, prnu, dsnu, prnu-high-pass and dsnu-high-pass with numbers, such as "
                     "shading=1.0,prnu=0.5; not \"" +
                     strLimits.toStdString() + "\".");
    }
    stLimits.*(it->pLimit) = dLimit;
  }
  return stLimits;
}

} // namespace ffc::quality
