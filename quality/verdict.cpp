#include "quality/verdict.h"

#include <algorithm>

#include <QCoreApplication>

namespace ffc::quality {
namespace {

constexpr double GROWN = 2.0; ///< times the shading of the measurement before

QString Translate(const char *pText)
{
  return QCoreApplication::translate("Verdict", pText);
}

QString Percent(double dPercent)
{
  return QString::number(dPercent, 'f', 2);
}

} // namespace

EVerdict JudgeShading(const SUniformity &stBefore, const SUniformity &stAfter, double dLimitPercent)
{
  if (stAfter.listPlanes.empty() || stAfter.listPlanes.size() != stBefore.listPlanes.size()) {
    return EVerdict::Unknown;
  }
  EVerdict eVerdict = EVerdict::Pass;
  for (std::size_t nPlane = 0; nPlane < stAfter.listPlanes.size(); ++nPlane) {
    const double dAfter = stAfter.listPlanes[nPlane].dShadingPercent;
    if (dAfter > stBefore.listPlanes[nPlane].dShadingPercent) {
      return EVerdict::Worse;
    }
    eVerdict = dAfter > dLimitPercent ? EVerdict::Fail : eVerdict;
  }
  return eVerdict;
}

QString DescribeVerdict(EVerdict eVerdict, const SUniformity &stAfter, double dLimitPercent)
{
  const QString strShading = Percent(stAfter.stOverall.dShadingPercent);
  switch (eVerdict) {
  case EVerdict::Pass: return Translate("PASS: shading %1 %, limit %2 %").arg(strShading, Percent(dLimitPercent));
  case EVerdict::Fail: return Translate("FAIL: shading %1 %, limit %2 %").arg(strShading, Percent(dLimitPercent));
  case EVerdict::Worse: return Translate("FAIL: the correction makes the image less even than it was");
  case EVerdict::Unknown: break;
  }
  return Translate("Not measured");
}

EDrift JudgeDrift(double dThenPercent, double dNowPercent, double dLimitPercent)
{
  if (!(dNowPercent > 0)) {
    return EDrift::Unknown;
  }
  if (dNowPercent > dLimitPercent) {
    return EDrift::Beyond;
  }
  return dThenPercent >= 0 && dNowPercent > GROWN * dThenPercent ? EDrift::Grown : EDrift::Steady;
}

QString DescribeDrift(EDrift eDrift, double dThenPercent, double dNowPercent, double dLimitPercent)
{
  const QString strNow =
    dThenPercent < 0
      ? Translate("shading of a fresh flat is %1 %").arg(Percent(dNowPercent))
      : Translate("shading of a fresh flat is %1 %, it was %2 %").arg(Percent(dNowPercent), Percent(dThenPercent));
  switch (eDrift) {
  case EDrift::Steady: return Translate("No drift: %1").arg(strNow);
  case EDrift::Grown: return Translate("Drifting: %1; acquire anew soon").arg(strNow);
  case EDrift::Beyond:
    return Translate("Drifted beyond %1 %: %2; acquire and execute anew").arg(Percent(dLimitPercent), strNow);
  case EDrift::Unknown: break;
  }
  return Translate("Not measured");
}

} // namespace ffc::quality
