#include "quality/verdict.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include <QCoreApplication>
#include <QJsonArray>

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

/// What translators see of the labels of the figures.
[[maybe_unused]] const char *const LABELS[] = {
  QT_TRANSLATE_NOOP("Verdict", "shading"), QT_TRANSLATE_NOOP("Verdict", "PRNU"), QT_TRANSLATE_NOOP("Verdict", "DSNU"),
  QT_TRANSLATE_NOOP("Verdict", "PRNU high-pass"), QT_TRANSLATE_NOOP("Verdict", "DSNU high-pass")};

/// DN below which nobody sees that DSNU has grown: what rounding to whole numbers adds.
const double HIDDEN_DN = 1.0 / std::sqrt(12.0);

/// By how much figures may differ that are shown with two decimals.
constexpr double NOT_SHOWN = 0.005;

bool IsWorse(const SLimitedFigure &stFigure, double dBefore, double dAfter)
{
  const bool bHidden = std::string_view(stFigure.pUnit) == "DN" && dAfter <= HIDDEN_DN;
  return dAfter - dBefore > NOT_SHOWN && !bHidden;
}

/// Finds the plane that got worse, if any.
void ComparePlanes(const SUniformity &stBefore, const SUniformity &stAfter, SJudgedFigure &stJudged)
{
  const SLimitedFigure &stFigure = *stJudged.pFigure;
  for (std::size_t nPlane = 0; stFigure.pPlane != nullptr && nPlane < stAfter.listPlanes.size(); ++nPlane) {
    const double dBefore = stBefore.listPlanes[nPlane].*stFigure.pPlane;
    const double dAfter = stAfter.listPlanes[nPlane].*stFigure.pPlane;
    if (IsWorse(stFigure, dBefore, dAfter)) {
      stJudged.eVerdict = EVerdict::Worse;
      stJudged.strPlane = stAfter.listPlanes.size() > 1 ? stAfter.listPlanes[nPlane].strName : std::string();
      stJudged.dBefore = dBefore;
      stJudged.dAfter = dAfter;
      return;
    }
  }
}

/// \param stJudged has figure and limit; gets the rest
void JudgeFigure(const SUniformity &stBefore, const SUniformity &stAfter, SJudgedFigure &stJudged)
{
  const SLimitedFigure &stFigure = *stJudged.pFigure;
  if (stBefore.listPlanes.empty() || (stFigure.bNeedsDark && stBefore.bWithoutDark)) {
    return;
  }
  stJudged.dBefore = stFigure.fnOverall(stBefore);
  if (stAfter.listPlanes.empty()) {
    stJudged.eVerdict = EVerdict::Baseline;
    return;
  }
  if (stAfter.listPlanes.size() != stBefore.listPlanes.size()) {
    return;
  }
  stJudged.dAfter = stFigure.fnOverall(stAfter);
  const bool bWorse = IsWorse(stFigure, stJudged.dBefore, stJudged.dAfter);
  stJudged.eVerdict = bWorse                               ? EVerdict::Worse
                      : stJudged.dLimit < 0                ? EVerdict::Open
                      : stJudged.dAfter <= stJudged.dLimit ? EVerdict::Pass
                                                           : EVerdict::Fail;
  if (!bWorse) {
    ComparePlanes(stBefore, stAfter, stJudged);
  }
}

QString DescribeFigure(const SJudgedFigure &stJudged)
{
  const QString strUnit = QLatin1String(stJudged.pFigure->pUnit);
  const auto fnNumber = [&strUnit](double dValue) { return QStringLiteral("%1 %2").arg(Percent(dValue), strUnit); };
  QString strName = Translate(stJudged.pFigure->pLabel);
  if (!stJudged.strPlane.empty()) {
    strName = Translate("%1 of %2").arg(strName, QString::fromStdString(stJudged.strPlane));
  }
  const QString strAfter = fnNumber(stJudged.dAfter);
  const QString strBefore = fnNumber(stJudged.dBefore);
  switch (stJudged.eVerdict) {
  case EVerdict::Baseline: return Translate("Baseline: %1 %2").arg(strName, strBefore);
  case EVerdict::Open: return Translate("No limit: %1 %2").arg(strName, strAfter);
  case EVerdict::Pass: return Translate("PASS: %1 %2, limit %3").arg(strName, strAfter, fnNumber(stJudged.dLimit));
  case EVerdict::Fail: return Translate("FAIL: %1 %2, limit %3").arg(strName, strAfter, fnNumber(stJudged.dLimit));
  case EVerdict::Worse: return Translate("WORSE: %1 %2, before the correction %3").arg(strName, strAfter, strBefore);
  case EVerdict::Unknown: break;
  }
  return Translate("Not measured: %1, for want of dark frames").arg(strName);
}

} // namespace

const char *GetVerdictName(EVerdict eVerdict)
{
  switch (eVerdict) {
  case EVerdict::Baseline: return "baseline";
  case EVerdict::Open: return "open";
  case EVerdict::Pass: return "pass";
  case EVerdict::Fail: return "fail";
  case EVerdict::Worse: return "worse";
  case EVerdict::Unknown: break;
  }
  return "unknown";
}

bool SVerdict::KeepsLimits() const
{
  return std::all_of(listFigures.begin(), listFigures.end(), [](const SJudgedFigure &stFigure) {
    return stFigure.dLimit < 0 || stFigure.eVerdict == EVerdict::Pass;
  });
}

SVerdict Judge(const SUniformity &stBefore, const SUniformity &stAfter, const SLimits &stLimits)
{
  SVerdict stVerdict;
  for (const SLimitedFigure &stFigure : GetLimitedFigures()) {
    SJudgedFigure stJudged;
    stJudged.pFigure = &stFigure;
    stJudged.dLimit = stLimits.*stFigure.pLimit;
    if (stFigure.pPlane == nullptr && stJudged.dLimit < 0) {
      continue;
    }
    JudgeFigure(stBefore, stAfter, stJudged);
    stVerdict.eVerdict = std::max(stVerdict.eVerdict, stJudged.eVerdict);
    stVerdict.listFigures.push_back(stJudged);
  }
  // What was asked for and not measured does not pass.
  if (stVerdict.eVerdict == EVerdict::Pass && !stVerdict.KeepsLimits()) {
    stVerdict.eVerdict = EVerdict::Fail;
  }
  return stVerdict;
}

QStringList DescribeVerdict(const SVerdict &stVerdict)
{
  if (stVerdict.eVerdict == EVerdict::Unknown) {
    return {Translate("Not measured")};
  }
  QStringList listLines;
  for (const SJudgedFigure &stJudged : stVerdict.listFigures) {
    listLines << DescribeFigure(stJudged);
  }
  return listLines;
}

void InsertVerdict(const SVerdict &stVerdict, QJsonObject &json)
{
  QJsonArray jsonFigures;
  QJsonObject jsonLimits;
  for (const SJudgedFigure &stJudged : stVerdict.listFigures) {
    const QString strKey = QLatin1String(stJudged.pFigure->pKey);
    QJsonObject jsonFigure{{"figure", strKey},
                           {"unit", QLatin1String(stJudged.pFigure->pUnit)},
                           {"verdict", QLatin1String(GetVerdictName(stJudged.eVerdict))}};
    if (stJudged.dLimit >= 0) {
      jsonFigure.insert(QStringLiteral("limit"), stJudged.dLimit);
      jsonLimits.insert(strKey, stJudged.dLimit);
    }
    jsonFigures.append(jsonFigure);
  }
  json.insert(QStringLiteral("verdict"), QLatin1String(GetVerdictName(stVerdict.eVerdict)));
  json.insert(QStringLiteral("verdicts"), jsonFigures);
  json.insert(QStringLiteral("limits"), jsonLimits);
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
