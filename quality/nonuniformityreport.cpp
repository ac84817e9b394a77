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

/// A variance that is not above 0 once the noise is taken off has no root: then the others may add up to more than the
/// total.
QString DescribePart(double dFigure, const QString &strUnit)
{
  return dFigure > 0 ? QString::number(dFigure, 'f', 3) + strUnit : QStringLiteral("below noise");
}

} // namespace

QJsonObject MakeNonuniformityJson(const SUniformity &stUniformity)
{
  return {{"plain", MakeChannelsJson(stUniformity.listPlain)},
          {"high_pass", MakeChannelsJson(stUniformity.listHighPass)}};
}

QString DescribeParts(const SNonuniformityParts &stParts, const QString &strUnit)
{
  return QStringLiteral("%1 (rows %2, columns %3, pixels %4)")
    .arg(DescribePart(stParts.dTotal, QLatin1Char(' ') + strUnit), DescribePart(stParts.dRow, {}),
         DescribePart(stParts.dColumn, {}), DescribePart(stParts.dPixel, {}));
}

} // namespace ffc::quality
