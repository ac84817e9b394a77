#include "quality/qualityresult.h"

#include <QJsonArray>
#include <QJsonObject>

namespace ffc::quality {
namespace {

QJsonArray MakeNoiseJson(const std::vector<SNoise> &listNoise)
{
  QJsonArray json;
  for (const SNoise &stNoise : listNoise) {
    json.append(QJsonObject{{"plane", QString::fromStdString(stNoise.strName)},
                            {"mean_dn", stNoise.dMean},
                            {"temporal_dn", stNoise.dTemporal},
                            {"pattern_dn", stNoise.dPattern}});
  }
  return json;
}

} // namespace

QJsonObject MakeJson(const SResult &stResult, const SLimits &stLimits)
{
  const SReport &stReport = stResult.stReport;
  QJsonObject json = MakeReportJson(stReport);
  QJsonObject jsonSettings;
  for (const auto &[strName, strValue] : stResult.listSettings) {
    jsonSettings.insert(strName, strValue);
  }
  json.insert(QStringLiteral("settings"), jsonSettings);
  InsertVerdict(Judge(stReport.stBefore, stReport.stAfter, stLimits), json);
  json.insert(QStringLiteral("noise"), MakeNoiseJson(stResult.listNoise));
  json.insert(QStringLiteral("advised_frames"), stResult.stAdvice.nAdvised);
  json.insert(QStringLiteral("break_even_frames"), stResult.stAdvice.dBreakEven);
  json.insert(QStringLiteral("advice"), QJsonArray::fromStringList(stResult.listAdvice));
  json.insert(QStringLiteral("bright_field_remarks"), QJsonArray::fromStringList(stResult.listBrightRemarks));
  if (stResult.bSameExposures && !stReport.bBaseline) {
    json.insert(QStringLiteral("newly_clipped_samples"), static_cast<double>(stResult.nNewlyClipped));
    json.insert(QStringLiteral("pixels_at_gain_limit"), static_cast<double>(stResult.nAtGainLimit));
  }
  return json;
}

} // namespace ffc::quality
