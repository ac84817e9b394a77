#include "quality/htmlreport.h"

#include <QBuffer>
#include <QCoreApplication>

#include "quality/nonuniformityreport.h"

namespace ffc::quality {
namespace {

constexpr int MAX_PICTURE_WIDTH = 800; ///< pixels

const char *const STYLE = "body{font:14px/1.45 sans-serif;color:#222;max-width:1000px;margin:24px auto;padding:0 16px}"
                          "h1{font-size:22px;margin:0 0 4px}h2{font-size:16px;margin:28px 0 8px}"
                          "table{border-collapse:collapse}td,th{padding:3px 14px 3px 0;border-bottom:1px solid #ddd;"
                          "text-align:left}td.n,th.n{text-align:right;font-variant-numeric:tabular-nums}"
                          ".verdict{display:inline-block;padding:4px 12px;color:#fff;font-weight:bold}"
                          "p.verdict{margin:2px 0}.pass{background:#2e7d32}.fail{background:#b3261e}"
                          ".worse{background:#b3261e}.none{background:#6b6e73}"
                          "figure{display:inline-block;width:48%;margin:0 1% 12px 0;vertical-align:top}"
                          "figure.wide{width:98%}img{width:100%;border:1px solid #ccc}"
                          "figcaption{color:#666;font-size:12px}small{color:#666}";

QString Translate(const char *pText)
{
  return QCoreApplication::translate("HtmlReport", pText);
}

QString MakeDataUri(const QImage &imgPicture)
{
  const bool bScale = imgPicture.width() > MAX_PICTURE_WIDTH;
  const QImage imgSmall = bScale ? imgPicture.scaledToWidth(MAX_PICTURE_WIDTH, Qt::SmoothTransformation) : imgPicture;
  QByteArray bytePng;
  QBuffer buffer(&bytePng);
  buffer.open(QIODevice::WriteOnly);
  imgSmall.save(&buffer, "PNG");
  return QStringLiteral("data:image/png;base64,") + QString::fromLatin1(bytePng.toBase64());
}

void AddFigure(QString &strPage, const QImage &imgPicture, const QString &strCaption, const char *pClass = "")
{
  if (!imgPicture.isNull()) {
    strPage += QStringLiteral("<figure class=\"%1\"><img alt=\"%2\" src=\"%3\"><figcaption>%2</figcaption></figure>\n")
                 .arg(QLatin1String(pClass), strCaption.toHtmlEscaped(), MakeDataUri(imgPicture));
  }
}

QString MakeFigureTable(const SReport &stReport)
{
  QString strTable = QStringLiteral("<table><tr><th></th><th class=\"n\">%1</th><th class=\"n\">%2</th></tr>\n")
                       .arg(Translate("before"), Translate("after"));
  for (const SFigureRow &stRow : ListFigureRows(stReport)) {
    strTable += QStringLiteral("<tr><td>%1</td><td class=\"n\">%2</td><td class=\"n\">%3</td></tr>\n")
                  .arg(stRow.strName.toHtmlEscaped(), stRow.strBefore, stRow.strAfter);
  }
  return strTable + QStringLiteral("</table>\n");
}

QString MakePairs(const QList<std::pair<QString, QString>> &listPairs)
{
  QString strTable = QStringLiteral("<table>\n");
  for (const auto &[strName, strValue] : listPairs) {
    strTable +=
      QStringLiteral("<tr><td>%1</td><td>%2</td></tr>\n").arg(strName.toHtmlEscaped(), strValue.toHtmlEscaped());
  }
  return strTable + QStringLiteral("</table>\n");
}

const char *GetClass(EVerdict eVerdict)
{
  switch (eVerdict) {
  case EVerdict::Pass: return "pass";
  case EVerdict::Fail: return "fail";
  case EVerdict::Worse: return "worse";
  default: return "none";
  }
}

QString MakeVerdict(const SReport &stReport, const SLimits &stLimits)
{
  const SVerdict stVerdict = Judge(stReport.stBefore, stReport.stAfter, stLimits);
  const QStringList listLines = DescribeVerdict(stVerdict);
  QString strVerdict;
  for (int nLine = 0; nLine < listLines.size(); ++nLine) {
    const bool bFigures = stVerdict.eVerdict != EVerdict::Unknown;
    const EVerdict eVerdict =
      bFigures ? stVerdict.listFigures[static_cast<std::size_t>(nLine)].eVerdict : EVerdict::Unknown;
    strVerdict += QStringLiteral("<p class=\"verdict %1\">%2</p><br>\n")
                    .arg(QLatin1String(GetClass(eVerdict)), listLines[nLine].toHtmlEscaped());
  }
  return strVerdict;
}

void AddRow(QList<SFigureRow> &listRows, const QString &strName, double dBefore, double dAfter, int nDecimals)
{
  listRows << SFigureRow{strName, QString::number(dBefore, 'f', nDecimals), QString::number(dAfter, 'f', nDecimals)};
}

/// PRNU or DSNU.
void AddNonuniformityRow(QList<SFigureRow> &listRows, const QString &strName, double dBefore, double dAfter,
                         int nDecimals)
{
  listRows << SFigureRow{strName, DescribeFigure(dBefore, nDecimals), DescribeFigure(dAfter, nDecimals)};
}

void AddPlaneRows(QList<SFigureRow> &listRows, const QString &strPlane, const SUniformityFigures &stBefore,
                  const SUniformityFigures &stAfter, bool bWithoutDark)
{
  const auto Name = [&strPlane](const char *pText) {
    return strPlane.isEmpty() ? Translate(pText) : QStringLiteral("%1  %2").arg(strPlane, Translate(pText));
  };
  AddRow(listRows, Name(QT_TRANSLATE_NOOP("HtmlReport", "Shading, %")), stBefore.dShadingPercent,
         stAfter.dShadingPercent, 2);
  AddRow(listRows, Name(QT_TRANSLATE_NOOP("HtmlReport", "Corner / centre")), stBefore.dCornerToCentre,
         stAfter.dCornerToCentre, 3);
  if (!bWithoutDark) {
    AddNonuniformityRow(listRows, Name(QT_TRANSLATE_NOOP("HtmlReport", "PRNU with shading, %")), stBefore.dPrnuPercent,
                        stAfter.dPrnuPercent, 2);
    AddNonuniformityRow(listRows, Name(QT_TRANSLATE_NOOP("HtmlReport", "DSNU with shading, DN")), stBefore.dDsnuDn,
                        stAfter.dDsnuDn, 2);
  }
  AddRow(listRows, Name(QT_TRANSLATE_NOOP("HtmlReport", "Mean grey, DN")), stBefore.dMeanGray, stAfter.dMeanGray, 1);
  AddRow(listRows, Name(QT_TRANSLATE_NOOP("HtmlReport", "Clipped, %")), stBefore.dClippedPercent,
         stAfter.dClippedPercent, 3);
}

/// After the standard's correction for uneven illumination, of the worst channel.
void AddHighPassRows(QList<SFigureRow> &listRows, const SUniformity &stBefore, const SUniformity &stAfter)
{
  if (stBefore.listHighPass.empty() || stAfter.listHighPass.empty()) {
    return;
  }
  const SWorstParts stThen = TakeWorst(stBefore.listHighPass);
  const SWorstParts stNow = TakeWorst(stAfter.listHighPass);
  AddNonuniformityRow(listRows, Translate("PRNU, high-pass, %"), stThen.stPrnu.dTotal, stNow.stPrnu.dTotal, 3);
  AddNonuniformityRow(listRows, Translate("PRNU of rows, %"), stThen.stPrnu.dRow, stNow.stPrnu.dRow, 3);
  AddNonuniformityRow(listRows, Translate("PRNU of columns, %"), stThen.stPrnu.dColumn, stNow.stPrnu.dColumn, 3);
  AddNonuniformityRow(listRows, Translate("PRNU of pixels, %"), stThen.stPrnu.dPixel, stNow.stPrnu.dPixel, 3);
  AddNonuniformityRow(listRows, Translate("DSNU, high-pass, DN"), stThen.stDsnu.dTotal, stNow.stDsnu.dTotal, 3);
}

} // namespace

QList<SFigureRow> ListFigureRows(const SReport &stReport)
{
  QList<SFigureRow> listRows;
  const auto &listBefore = stReport.stBefore.listPlanes;
  const SUniformity &stAfter = stReport.bBaseline ? stReport.stBefore : stReport.stAfter;
  const auto &listAfter = stAfter.listPlanes;
  for (std::size_t nPlane = 0; nPlane < listBefore.size() && nPlane < listAfter.size(); ++nPlane) {
    const QString strPlane = listBefore.size() > 1 ? QString::fromStdString(listBefore[nPlane].strName) : QString();
    AddPlaneRows(listRows, strPlane, listBefore[nPlane], listAfter[nPlane], stReport.stBefore.bWithoutDark);
  }
  AddHighPassRows(listRows, stReport.stBefore, stAfter);
  for (SFigureRow &stRow : listRows) {
    stRow.strAfter = stReport.bBaseline ? QStringLiteral("-") : stRow.strAfter;
  }
  return listRows;
}

QStringList ListFindings(const SResult &stResult)
{
  QStringList listFindings = stResult.listBrightRemarks;
  listFindings += stResult.listAdvice.isEmpty() ? QStringList{DescribeAdvice(stResult.stAdvice)} : stResult.listAdvice;
  for (const SNoise &stNoise : stResult.listNoise) {
    listFindings << Translate("%1: noise of one frame %2 DN, pixel pattern %3 DN, at a mean of %4 DN")
                      .arg(QString::fromStdString(stNoise.strName))
                      .arg(stNoise.dTemporal, 0, 'f', 2)
                      .arg(stNoise.dPattern, 0, 'f', 2)
                      .arg(stNoise.dMean, 0, 'f', 1);
  }
  listFindings += MakeFigureNotes(stResult.stReport);
  if (!stResult.stReport.listDefects.empty()) {
    listFindings << Translate("Defect pixels: %1 (saving the report writes them as CSV and XML beside it)")
                      .arg(stResult.stReport.listDefects.size());
  }
  if (stResult.stReport.bBaseline) {
    listFindings << Translate("Without a correction: how even the image is by itself");
  } else if (stResult.stReport.stBefore.bWithoutDark) {
    listFindings << Translate("Clipped by the correction: %1 samples").arg(stResult.nNewlyClipped);
  } else if (stResult.bSameExposures) {
    listFindings << Translate("Clipped by the correction: %1 samples; held at the gain limit: %2 pixels")
                      .arg(stResult.nNewlyClipped)
                      .arg(stResult.nAtGainLimit);
  } else {
    listFindings << Translate("The camera corrects: before and after are different exposures");
  }
  return listFindings + stResult.stReport.listNotes;
}

QByteArray MakeHtmlReport(const SResult &stResult, const SLimits &stLimits, const QDateTime &dtMade)
{
  const SReport &stReport = stResult.stReport;
  const QString strTitle = Translate("Flat-field correction: %1").arg(stReport.strCamera);
  QString strPage =
    QStringLiteral("<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>%1</title>"
                   "<style>%2</style></head><body>\n<h1>%1</h1>\n<small>%3</small>\n")
      .arg(strTitle.toHtmlEscaped(), QLatin1String(STYLE), dtMade.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")));
  strPage += MakeVerdict(stReport, stLimits);
  strPage += QStringLiteral("<h2>%1</h2>\n").arg(Translate("Figures")) + MakeFigureTable(stReport);
  strPage +=
    QStringLiteral("<h2>%1</h2>\n").arg(Translate("How it was measured")) + MakePairs(ListConditions(stReport));
  strPage += QStringLiteral("<h2>%1</h2>\n<ul>\n").arg(Translate("Findings"));
  for (const QString &strFinding : ListFindings(stResult)) {
    strPage += QStringLiteral("<li>%1</li>\n").arg(strFinding.toHtmlEscaped());
  }
  strPage += QStringLiteral("</ul>\n<h2>%1</h2>\n").arg(Translate("Pictures"));
  AddFigure(strPage, stResult.stPictures.imgBefore, Translate("Before"));
  AddFigure(strPage, stResult.stPictures.imgAfter, Translate("After"));
  AddFigure(strPage, stResult.stPictures.imgContrastBefore, Translate("Before, unevenness stretched"));
  AddFigure(strPage, stResult.stPictures.imgContrastAfter, Translate("After, stretched alike"));
  AddFigure(strPage, stResult.imgProfile, Translate("Grey along the middle"), "wide");
  strPage += QStringLiteral("<h2>%1</h2>\n").arg(Translate("Settings")) + MakePairs(stResult.listSettings);
  strPage += QStringLiteral("</body></html>\n");
  return strPage.toUtf8();
}

} // namespace ffc::quality
