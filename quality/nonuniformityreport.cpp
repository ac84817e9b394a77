#include "quality/nonuniformityreport.h"

#include <QCoreApplication>
#include <QJsonArray>

namespace ffc::quality {
namespace {

QString Translate(const char *pText)
{
  return QCoreApplication::translate("NonuniformityReport", pText);
}

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

QString DescribeFigure(double dFigure, int nDecimals, const QString &strUnit)
{
  return dFigure > 0 ? QString::number(dFigure, 'f', nDecimals) + strUnit : Translate("below noise");
}

QString DescribeParts(const SNonuniformityParts &stParts, const QString &strUnit)
{
  constexpr int DECIMALS = 3;
  return QStringLiteral("%1 (rows %2, columns %3, pixels %4)")
    .arg(DescribeFigure(stParts.dTotal, DECIMALS, QLatin1Char(' ') + strUnit), DescribeFigure(stParts.dRow, DECIMALS),
         DescribeFigure(stParts.dColumn, DECIMALS), DescribeFigure(stParts.dPixel, DECIMALS));
}

} // namespace ffc::quality
