#include "quality/nonuniformityreport.h"

#include <QJsonArray>

namespace ffc::quality {
namespace {

QJsonObject MakeVariancesJson(const SSpatialVariances &stVariances)
{
  return {{"rows", static_cast<int>(stVariances.nRows)},
          {"columns", static_cast<int>(stVariances.nColumns)},
          {"frames", static_cast<int>(stVariances.nFrames)},
          {"sigma2_y_stack", stVariances.dTemporal},
          {"s2_y_measured", stVariances.dMeasured},
          {"s2_y", stVariances.dTotal},
          {"s2_y_cav", stVariances.dColumnAverage},
          {"s2_y_rav", stVariances.dRowAverage},
          {"s2_y_row", stVariances.dRow},
          {"s2_y_col", stVariances.dColumn},
          {"s2_y_pixel", stVariances.dPixel}};
}

QJsonArray MakeChannelsJson(const std::vector<SNonuniformity> &listFigures)
{
  QJsonArray json;
  for (const SNonuniformity &stFigures : listFigures) {
    json.append(QJsonObject{{"channel", QString::fromStdString(stFigures.strName)},
                            {"signal_dn", stFigures.dSignal},
                            {"dsnu1288_dn", stFigures.stDsnu.dTotal},
                            {"dsnu1288_row_dn", stFigures.stDsnu.dRow},
                            {"dsnu1288_col_dn", stFigures.stDsnu.dColumn},
                            {"dsnu1288_pixel_dn", stFigures.stDsnu.dPixel},
                            {"prnu1288_percent", stFigures.stPrnu.dTotal},
                            {"prnu1288_row_percent", stFigures.stPrnu.dRow},
                            {"prnu1288_col_percent", stFigures.stPrnu.dColumn},
                            {"prnu1288_pixel_percent", stFigures.stPrnu.dPixel},
                            {"bright", MakeVariancesJson(stFigures.stBright)},
                            {"dark", MakeVariancesJson(stFigures.stDark)}});
  }
  return json;
}

} // namespace

QJsonObject MakeNonuniformityJson(const SUniformity &stUniformity)
{
  return {{"plain", MakeChannelsJson(stUniformity.listPlain)},
          {"high_pass", MakeChannelsJson(stUniformity.listHighPass)}};
}

QString DescribeParts(const SNonuniformityParts &stParts, const QString &strUnit)
{
  return QStringLiteral("%1 %2 (rows %3, columns %4, pixels %5)")
    .arg(stParts.dTotal, 0, 'f', 3)
    .arg(strUnit)
    .arg(stParts.dRow, 0, 'f', 3)
    .arg(stParts.dColumn, 0, 'f', 3)
    .arg(stParts.dPixel, 0, 'f', 3);
}

} // namespace ffc::quality
