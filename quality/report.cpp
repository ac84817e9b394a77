#include "quality/report.h"

#include <cstddef>
#include <functional>
#include <utility>
#include <vector>

#include <QJsonArray>
#include <QJsonObject>
#include <QTextStream>

#include "camera/correctionmode.h"
#include "quality/nonuniformityreport.h"

namespace ffc::quality {

using camera::ECorrectionMode;

namespace {

const char *const METHOD =
  "PRNU, DSNU after EMVA 1288 Release 4.0: s^2 = s^2_measured - s^2_temporal / L; with shading, and "
  "after its high-pass";

const char *const OTHER_EXPOSURES = "different exposures, so that newly clipped samples cannot be counted";

/// One figure: its key, its row in the table, its place in the record.
struct SFigure {
  const char *pKey;
  const char *pLabel;
  double SUniformityFigures::*pValue;
};

const SFigure FIGURES[] = {
  {"shading_percent", "shading, %", &SUniformityFigures::dShadingPercent},
  {"corner_to_centre", "corner to centre", &SUniformityFigures::dCornerToCentre},
  {"prnu_percent", "PRNU with shading, %", &SUniformityFigures::dPrnuPercent},
  {"dsnu_dn", "DSNU with shading", &SUniformityFigures::dDsnuDn},
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

QString ExplainHostPrnu(int nFrameCount)
{
  if (nFrameCount == 0) {
    return QStringLiteral(
      "PRNU got worse: the noise of the frames that the coefficients were made of is now in every image");
  }
  const QString strReference = nFrameCount == 1 ? QStringLiteral("is one single frame")
                                                : QStringLiteral("averages only %1 frames").arg(nFrameCount);
  const QString strAdvice = nFrameCount < 16 ? QStringLiteral("; use 16 frames") : QString();
  return QStringLiteral("PRNU got worse: the bright reference %1, so its own noise is now in every image%2")
    .arg(strReference, strAdvice);
}

bool HasExpectGray(const SReport &stReport)
{
  return stReport.eMode != ECorrectionMode::Vignetting;
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
  Columns listColumns = {{"before", &stReport.stBefore}, {"after", &stReport.stAfter}};
  if (stReport.stAfterReload) {
    listColumns.emplace_back("reloaded", &*stReport.stAfterReload);
  }
  return listColumns;
}

void AppendRow(QString &strTable, const QString &strLabel, const Columns &listColumns,
               const std::function<double(const SUniformity &)> &fnFigure)
{
  strTable += QStringLiteral("  %1").arg(strLabel, -20);
  for (const auto &[pName, pUniformity] : listColumns) {
    strTable += QStringLiteral("%1").arg(fnFigure(*pUniformity), 12, 'f', 4);
  }
  strTable += QLatin1Char('\n');
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
        return TakeWorst(stUniformity.listHighPass).*pKind.*pPart;
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
              [nPlane](const SUniformity &stUniformity) { return stUniformity.listPlanes[nPlane].dShadingPercent; });
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
              [&stFigure](const SUniformity &stUniformity) { return stUniformity.stOverall.*stFigure.pValue; });
  }
  AppendHighPassRows(strTable, listColumns);
  AppendPlaneRows(strTable, listColumns);
  return strTable;
}

QString MakeHeading(const SReport &stReport)
{
  QString strHeading;
  QTextStream stream(&strHeading);
  stream << stReport.strCamera << ", " << stReport.strPixelFormat << ", " << stReport.nWidth << " x "
         << stReport.nHeight << "\n";
  if (stReport.nFrameCount > 0) {
    stream << "coefficients from " << stReport.nFrameCount << " bright frame(s)";
  } else {
    stream << "coefficients from a file";
  }
  if (stReport.nBlockSize > 0) {
    stream << ", in blocks of " << stReport.nBlockSize << " x " << stReport.nBlockSize;
  }
  if (HasExpectGray(stReport)) {
    stream << ", expected grey " << stReport.nExpectGray << " of 255 (" << stReport.nExpectGrayDn << " DN)";
  }
  stream << "\nmeasured on " << stReport.nBrightFrames << " bright and " << stReport.nDarkFrames
         << " dark fresh frames\n\n";
  stream.flush();
  return strHeading;
}

} // namespace

void MeasureFigures(const SFigureStacks &stStacks, SReport &stReport)
{
  stReport.nBrightFrames = stStacks.stBrightBefore.GetFrameCount();
  stReport.nDarkFrames = stStacks.stDarkBefore.GetFrameCount();
  stReport.stBefore = MeasureUniformity(stStacks.stBrightBefore, stStacks.stDarkBefore, stStacks.eLayout);
  stReport.stAfter = MeasureUniformity(stStacks.stBrightAfter, stStacks.stDarkAfter, stStacks.eLayout);
  stReport.listDefects = FindDefects(stStacks.stBrightBefore, stStacks.stDarkBefore, stStacks.eLayout, {});
}

QStringList MakeFigureNotes(const SReport &stReport)
{
  const bool bByHost = stReport.eMode == ECorrectionMode::None;
  QStringList listNotes;
  if (stReport.stAfter.stOverall.dPrnuPercent > stReport.stBefore.stOverall.dPrnuPercent) {
    listNotes << (bByHost ? ExplainHostPrnu(stReport.nFrameCount)
                          : QStringLiteral("PRNU got worse: the camera evens out whole blocks, not single pixels"));
  }
  if (stReport.stAfter.stOverall.dDsnuDn > stReport.stBefore.stOverall.dDsnuDn) {
    listNotes << (bByHost ? QStringLiteral("DSNU got worse: the dark reference is one single frame, so its own noise "
                                           "is now in every dark image")
                          : QStringLiteral("DSNU got worse: the camera's gain lifts the dark signal with the light"));
  }
  if (stReport.dNewlyClippedPercent > 0) {
    listNotes << QStringLiteral("%1 % of the samples are clipped by the correction; choose a lower expected grey")
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
    {"defect_pixels", static_cast<int>(stReport.listDefects.size())},
    {"before", MakeUniformityJson(stReport.stBefore)},
    {"after", MakeUniformityJson(stReport.stAfter)},
    {"notes", QJsonArray::fromStringList(stReport.listNotes + MakeFigureNotes(stReport))},
  };
  const bool bKnown = stReport.nFrameCount > 0;
  if (bKnown) {
    json.insert(QStringLiteral("frame_count"), stReport.nFrameCount);
  }
  if (bKnown && HasExpectGray(stReport)) {
    json.insert(QStringLiteral("expect_gray"), stReport.nExpectGray);
    json.insert(QStringLiteral("expect_gray_dn"), stReport.nExpectGrayDn);
  }
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
  if (stReport.eMode == ECorrectionMode::None) {
    strTable += QStringLiteral("  ProcessImage: %1 frames/s, %2 megapixels/s\n")
                  .arg(stReport.dFramesPerSecond, 0, 'f', 1)
                  .arg(stReport.dMegapixelsPerSecond, 0, 'f', 1);
  } else {
    strTable += QStringLiteral("  before and after: %1\n").arg(QLatin1String(OTHER_EXPOSURES));
  }
  strTable += QStringLiteral("  %1\n").arg(QLatin1String(METHOD));
  if (!stReport.listDefects.empty()) {
    strTable += QStringLiteral("  %1\n").arg(SummarizeDefects(stReport.listDefects));
  }
  for (const QString &strNote : stReport.listNotes + MakeFigureNotes(stReport)) {
    strTable += QStringLiteral("  note: %1\n").arg(strNote);
  }
  return strTable;
}

} // namespace ffc::quality
