#include "quality/report.h"

#include <cstddef>
#include <functional>
#include <utility>
#include <vector>

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonObject>

#include "camera/correctionmode.h"
#include "quality/nonuniformityreport.h"

namespace ffc::quality {

using camera::ECorrectionMode;

namespace {

constexpr const char *METHOD =
  QT_TRANSLATE_NOOP("Report", "PRNU, DSNU after EMVA 1288 Release 4.0: s^2 = s^2_measured - s^2_temporal / L; with "
                              "shading, and high-pass");

constexpr int DECIMALS = 4; ///< in the table

const char *const OTHER_EXPOSURES = "different exposures, so that newly clipped samples cannot be counted";

/// One figure: its key, its row in the table, its place in the record.
struct SFigure {
  const char *pKey;
  const char *pLabel;
  double SUniformityFigures::*pValue;
  bool bNonuniformity = false; ///< freed of noise; needs dark frames
};

const SFigure FIGURES[] = {
  {"shading_percent", "shading, %", &SUniformityFigures::dShadingPercent},
  {"corner_to_centre", "corner to centre", &SUniformityFigures::dCornerToCentre},
  {"prnu_percent", "PRNU with shading, %", &SUniformityFigures::dPrnuPercent, true},
  {"dsnu_dn", "DSNU with shading", &SUniformityFigures::dDsnuDn, true},
  {"mean_gray", "mean grey, DN", &SUniformityFigures::dMeanGray},
  {"clipped_percent", "clipped, %", &SUniformityFigures::dClippedPercent},
};

QJsonObject MakeFiguresJson(const SUniformityFigures &stFigures)
{
  QJsonObject json;
  for (const SFigure &stFigure : FIGURES) {
    json.insert(QLatin1String(stFigure.pKey), stFigures.*stFigure.pValue);
  }
  return json;
}

QJsonObject MakeUniformityJson(const SUniformity &stUniformity)
{
  QJsonObject json = MakeFiguresJson(stUniformity.stOverall);
  QJsonObject jsonPlanes;
  for (const SUniformityFigures &stPlane : stUniformity.listPlanes) {
    jsonPlanes.insert(QString::fromStdString(stPlane.strName), MakeFiguresJson(stPlane));
  }
  json.insert(QStringLiteral("planes"), jsonPlanes);
  json.insert(QStringLiteral("emva1288"), MakeNonuniformityJson(stUniformity));
  if (!stUniformity.listHighPass.empty()) {
    const SWorstParts stWorst = TakeWorst(stUniformity.listHighPass);
    json.insert(QStringLiteral("prnu_high_pass_percent"), stWorst.stPrnu.dTotal);
    json.insert(QStringLiteral("dsnu_high_pass_dn"), stWorst.stDsnu.dTotal);
  }
  return json;
}

QString Translate(const char *pText)
{
  return QCoreApplication::translate("Report", pText);
}

QString ExplainHostPrnu(const SReport &stReport)
{
  const int nFrameCount = stReport.nFrameCount;
  if (nFrameCount == 0 || stReport.bWeighted) {
    return Translate(
      "PRNU got worse: the noise of the frames that the coefficients were made of is now in every image");
  }
  if (nFrameCount == 1) {
    return Translate("PRNU got worse: the bright reference is one single frame, so its own noise is now in every "
                     "image; use 16 frames");
  }
  const QString strExplained =
    Translate("PRNU got worse: the bright reference averages only %1 frames, so its own noise is now in every image")
      .arg(nFrameCount);
  return nFrameCount < 16 ? strExplained + Translate("; use 16 frames") : strExplained;
}

QString ExplainDsnu(const SReport &stReport)
{
  if (stReport.eMode != ECorrectionMode::None) {
    return Translate("DSNU got worse: the camera's gain lifts the dark signal with the light");
  }
  switch (stReport.eDarkField) {
  case EDarkField::Used:
    return Translate(
      "DSNU got worse: the dark reference is one single frame, so its own noise is now in every dark image");
  case EDarkField::None:
    return Translate("DSNU got worse: the coefficients have no dark field, so the gains lift the dark signal with the "
                     "light; take a dark field first");
  case EDarkField::Unknown: break;
  }
  return Translate(
    "DSNU got worse: the noise of the coefficients' dark field, or the gains, are now in every dark image");
}

bool HasExpectGray(const SReport &stReport)
{
  return stReport.eMode != ECorrectionMode::Vignetting && stReport.nExpectGray >= 0;
}

void AddCoefficients(const SReport &stReport, QJsonObject &json)
{
  if (stReport.nFrameCount > 0) {
    json.insert(QStringLiteral("frame_count"), stReport.nFrameCount);
    json.insert(QStringLiteral("reference"),
                stReport.bWeighted ? QStringLiteral("weighted") : QStringLiteral("average"));
  }
  if (stReport.eDarkField != EDarkField::Unknown) {
    json.insert(QStringLiteral("dark_frame_count"), stReport.eDarkField == EDarkField::Used ? stReport.nDarkCount : 0);
  }
  if (HasExpectGray(stReport)) {
    json.insert(QStringLiteral("expect_gray"), stReport.nExpectGray);
    json.insert(QStringLiteral("expect_gray_dn"), stReport.nExpectGrayDn);
  }
}

void AddHostFigures(const SReport &stReport, QJsonObject &json)
{
  json.insert(QStringLiteral("exposures"), QStringLiteral("the same before and after"));
  json.insert(QStringLiteral("newly_clipped_percent"), stReport.dNewlyClippedPercent);
  json.insert(QStringLiteral("throughput"), QJsonObject{{"frames_per_second", stReport.dFramesPerSecond},
                                                        {"megapixels_per_second", stReport.dMegapixelsPerSecond}});
}

void AddCameraFigures(const SReport &stReport, QJsonObject &json)
{
  json.insert(QStringLiteral("exposures"), QLatin1String(OTHER_EXPOSURES));
  json.insert(QStringLiteral("block_size"), static_cast<int>(stReport.nBlockSize));
  if (stReport.stAfterReload) {
    json.insert(QStringLiteral("after_reload"), MakeUniformityJson(*stReport.stAfterReload));
    json.insert(QStringLiteral("reload_tolerance_percent"), RELOAD_TOLERANCE_PERCENT);
  }
}

/// The columns of the table: what they are called, and their figures.
using Columns = std::vector<std::pair<const char *, const SUniformity *>>;

Columns ListColumns(const SReport &stReport)
{
  Columns listColumns = {{"before", &stReport.stBefore}};
  if (!stReport.bBaseline) {
    listColumns.emplace_back("after", &stReport.stAfter);
  }
  if (stReport.stAfterReload) {
    listColumns.emplace_back("reloaded", &*stReport.stAfterReload);
  }
  return listColumns;
}

void AppendRow(QString &strTable, const QString &strLabel, const Columns &listColumns,
               const std::function<QString(const SUniformity &)> &fnFigure)
{
  strTable += QStringLiteral("  %1").arg(strLabel, -20);
  for (const auto &[pName, pUniformity] : listColumns) {
    strTable += QStringLiteral("%1").arg(fnFigure(*pUniformity), 12);
  }
  strTable += QLatin1Char('\n');
}

QString DescribeOverall(const SUniformity &stUniformity, const SFigure &stFigure)
{
  const double dFigure = stUniformity.stOverall.*stFigure.pValue;
  if (!stFigure.bNonuniformity) {
    return QString::number(dFigure, 'f', DECIMALS);
  }
  return stUniformity.bWithoutDark ? QStringLiteral("unknown") : DescribeFigure(dFigure, DECIMALS);
}

/// The figures after the high-pass, of the worst channel, where all columns have them.
void AppendHighPassRows(QString &strTable, const Columns &listColumns)
{
  for (const auto &[pName, pUniformity] : listColumns) {
    if (pUniformity->listHighPass.empty()) {
      return;
    }
  }
  const auto fnAppend = [&](const QString &strName, SNonuniformityParts SWorstParts::*pKind) {
    const auto fnRow = [&](const QString &strLabel, double SNonuniformityParts::*pPart) {
      AppendRow(strTable, strLabel, listColumns, [pKind, pPart](const SUniformity &stUniformity) {
        return DescribeFigure(TakeWorst(stUniformity.listHighPass).*pKind.*pPart, DECIMALS);
      });
    };
    fnRow(strName, &SNonuniformityParts::dTotal);
    fnRow(QStringLiteral("  its rows"), &SNonuniformityParts::dRow);
    fnRow(QStringLiteral("  its columns"), &SNonuniformityParts::dColumn);
    fnRow(QStringLiteral("  its pixels"), &SNonuniformityParts::dPixel);
  };
  fnAppend(QStringLiteral("PRNU high-pass, %"), &SWorstParts::stPrnu);
  fnAppend(QStringLiteral("DSNU high-pass, DN"), &SWorstParts::stDsnu);
}

void AppendPlaneRows(QString &strTable, const Columns &listColumns)
{
  const std::size_t nPlanes = listColumns.front().second->listPlanes.size();
  for (const auto &[pName, pUniformity] : listColumns) {
    if (nPlanes < 2 || pUniformity->listPlanes.size() != nPlanes) {
      return;
    }
  }
  for (std::size_t nPlane = 0; nPlane < nPlanes; ++nPlane) {
    const QString strPlane = QString::fromStdString(listColumns.front().second->listPlanes[nPlane].strName);
    AppendRow(strTable, QStringLiteral("shading of %1, %").arg(strPlane), listColumns,
              [nPlane](const SUniformity &stUniformity) {
                return QString::number(stUniformity.listPlanes[nPlane].dShadingPercent, 'f', DECIMALS);
              });
  }
}

QString MakeFigureTable(const SReport &stReport)
{
  const Columns listColumns = ListColumns(stReport);
  QString strTable = QString(22, QLatin1Char(' '));
  for (const auto &[pName, pUniformity] : listColumns) {
    strTable += QStringLiteral("%1").arg(QLatin1String(pName), 12);
  }
  strTable += QLatin1Char('\n');
  for (const SFigure &stFigure : FIGURES) {
    AppendRow(strTable, QLatin1String(stFigure.pLabel), listColumns,
              [&stFigure](const SUniformity &stUniformity) { return DescribeOverall(stUniformity, stFigure); });
  }
  AppendHighPassRows(strTable, listColumns);
  AppendPlaneRows(strTable, listColumns);
  return strTable;
}

QString DescribeBrightFrames(const SReport &stReport)
{
  if (stReport.nFrameCount <= 0) {
    return Translate("from an unknown number of bright frames");
  }
  if (stReport.nFrameCount == 1) {
    return stReport.bWeighted ? Translate("from 1 bright frame, weighted") : Translate("from 1 bright frame");
  }
  return (stReport.bWeighted ? Translate("from %1 bright frames, weighted")
                             : Translate("from %1 bright frames, averaged"))
    .arg(stReport.nFrameCount);
}

QString DescribeDarkFrames(const SReport &stReport)
{
  switch (stReport.eDarkField) {
  case EDarkField::None: return Translate(", no dark frame");
  case EDarkField::Used:
    return stReport.nDarkCount == 1 ? Translate(", and 1 dark frame")
                                    : Translate(", and %1 dark frames").arg(stReport.nDarkCount);
  case EDarkField::Unknown: break;
  }
  return {};
}

QString DescribeCoefficients(const SReport &stReport)
{
  QString strText = DescribeBrightFrames(stReport) + DescribeDarkFrames(stReport);
  if (stReport.nBlockSize > 0) {
    strText += Translate(", in blocks of %1 x %1").arg(stReport.nBlockSize);
  }
  return strText;
}

QString DescribeExposures(const SReport &stReport)
{
  return stReport.eMode != ECorrectionMode::None
           ? QStringLiteral("  before and after: %1\n").arg(QLatin1String(OTHER_EXPOSURES))
           : QStringLiteral("  ProcessImage: %1 frames/s, %2 megapixels/s\n")
               .arg(stReport.dFramesPerSecond, 0, 'f', 1)
               .arg(stReport.dMegapixelsPerSecond, 0, 'f', 1);
}

QString MakeHeading(const SReport &stReport)
{
  QString strHeading = QStringLiteral("%1, %2, %3 x %4\n")
                         .arg(stReport.strCamera, stReport.strPixelFormat)
                         .arg(stReport.nWidth)
                         .arg(stReport.nHeight);
  for (const auto &[strName, strValue] : ListConditions(stReport)) {
    strHeading += QStringLiteral("%1: %2\n").arg(strName, strValue);
  }
  return strHeading + QLatin1Char('\n');
}

} // namespace

void MeasureFigures(const SFigureStacks &stStacks, SReport &stReport)
{
  stReport.nBrightFrames = stStacks.stBrightBefore.GetFrameCount();
  stReport.nDarkFrames = stStacks.stDarkBefore.GetFrameCount();
  stReport.stBefore = MeasureUniformity(stStacks.stBrightBefore, stStacks.stDarkBefore, stStacks.eLayout);
  stReport.bBaseline = stStacks.stBrightAfter.GetFrameCount() == 0;
  stReport.stAfter = MeasureUniformity(stStacks.stBrightAfter, stStacks.stDarkAfter, stStacks.eLayout);
  stReport.listDefects = FindDefects(stStacks.stBrightBefore, stStacks.stDarkBefore, stStacks.eLayout, {});
}

QList<std::pair<QString, QString>> ListConditions(const SReport &stReport)
{
  QList<std::pair<QString, QString>> listConditions;
  if (stReport.bBaseline) {
    listConditions.append({Translate("Coefficients"), Translate("none: a baseline without correction")});
  } else {
    listConditions.append({Translate("Coefficients"), DescribeCoefficients(stReport)});
    if (!stReport.strCoefficientFile.isEmpty()) {
      listConditions.append({Translate("Coefficient file"), stReport.strCoefficientFile});
    }
    if (HasExpectGray(stReport)) {
      listConditions.append({Translate("Expected grey"),
                             Translate("%1 of 255 (%2 DN)").arg(stReport.nExpectGray).arg(stReport.nExpectGrayDn)});
    }
  }
  listConditions.append(
    {Translate("Measured on"),
     Translate("%1 bright and %2 dark fresh frames").arg(stReport.nBrightFrames).arg(stReport.nDarkFrames)});
  listConditions.append({Translate("Method"), Translate(METHOD)});
  listConditions.append({Translate("Units"), Translate("% of the mean; DN, the samples' own numbers")});
  if (!stReport.strPrograms.isEmpty()) {
    listConditions.append({Translate("Versions"), stReport.strPrograms});
  }
  return listConditions;
}

QStringList MakeFigureNotes(const SReport &stReport)
{
  if (stReport.bBaseline) {
    return {};
  }
  const bool bByHost = stReport.eMode == ECorrectionMode::None;
  QStringList listNotes;
  if (stReport.stAfter.stOverall.dPrnuPercent > stReport.stBefore.stOverall.dPrnuPercent) {
    listNotes << (bByHost ? ExplainHostPrnu(stReport)
                          : Translate("PRNU got worse: the camera evens out whole blocks, not single pixels"));
  }
  if (stReport.stAfter.stOverall.dDsnuDn > stReport.stBefore.stOverall.dDsnuDn) {
    listNotes << ExplainDsnu(stReport);
  }
  if (stReport.dNewlyClippedPercent > 0) {
    listNotes << Translate("%1 % of the samples are clipped by the correction; choose a lower expected grey")
                   .arg(stReport.dNewlyClippedPercent, 0, 'g', 3);
  }
  return listNotes;
}

QJsonObject MakeReportJson(const SReport &stReport)
{
  QJsonObject json{
    {"camera", stReport.strCamera},
    {"mode", QLatin1String(camera::GetModeName(stReport.eMode))},
    {"pixel_format", stReport.strPixelFormat},
    {"width", static_cast<int>(stReport.nWidth)},
    {"height", static_cast<int>(stReport.nHeight)},
    {"measured_bright_frames", static_cast<int>(stReport.nBrightFrames)},
    {"measured_dark_frames", static_cast<int>(stReport.nDarkFrames)},
    {"method", QLatin1String(METHOD)},
    {"units", "percent of the mean; DN, the samples' own numbers"},
    {"defect_pixels", static_cast<int>(stReport.listDefects.size())},
    {"before", MakeUniformityJson(stReport.stBefore)},
    {"notes", QJsonArray::fromStringList(stReport.listNotes + MakeFigureNotes(stReport))},
  };
  for (const auto &[pKey, strText] :
       {std::pair("coefficient_file", stReport.strCoefficientFile), {"versions", stReport.strPrograms}}) {
    if (!strText.isEmpty()) {
      json.insert(QLatin1String(pKey), strText);
    }
  }
  if (stReport.bBaseline) {
    json.insert(QStringLiteral("baseline"), true);
    return json;
  }
  json.insert(QStringLiteral("after"), MakeUniformityJson(stReport.stAfter));
  AddCoefficients(stReport, json);
  if (stReport.eMode == ECorrectionMode::None) {
    AddHostFigures(stReport, json);
  } else {
    AddCameraFigures(stReport, json);
  }
  return json;
}

QString MakeReportTable(const SReport &stReport)
{
  QString strTable = MakeHeading(stReport) + MakeFigureTable(stReport) + QLatin1Char('\n');
  if (!stReport.bBaseline) {
    strTable += DescribeExposures(stReport);
  }
  if (!stReport.listDefects.empty()) {
    strTable += QStringLiteral("  %1\n").arg(SummarizeDefects(stReport.listDefects));
  }
  for (const QString &strNote : stReport.listNotes + MakeFigureNotes(stReport)) {
    strTable += QStringLiteral("  note: %1\n").arg(strNote);
  }
  return strTable;
}

} // namespace ffc::quality
