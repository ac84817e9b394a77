#include "host/quality/report.h"

#include <cstddef>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>

namespace {

const char *const METHOD =
  "PRNU and DSNU after EMVA 1288, temporal noise removed (s^2 = s^2_measured - s^2_temporal / L), no high-pass";

/// One figure: its key, its row in the table, its place in the record.
struct SFigure {
  const char *pKey;
  const char *pLabel;
  double SUniformityFigures::*pValue;
};

const SFigure FIGURES[] = {
  {"shading_percent", "shading, %", &SUniformityFigures::dShadingPercent},
  {"corner_to_centre", "corner to centre", &SUniformityFigures::dCornerToCentre},
  {"prnu_percent", "PRNU, %", &SUniformityFigures::dPrnuPercent},
  {"dsnu_dn", "DSNU, DN", &SUniformityFigures::dDsnuDn},
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
  return json;
}

void AppendRow(QString &strTable, const QString &strLabel, double dBefore, double dAfter)
{
  strTable += QStringLiteral("  %1%2%3\n").arg(strLabel, -20).arg(dBefore, 12, 'f', 4).arg(dAfter, 12, 'f', 4);
}

void AppendPlaneRows(QString &strTable, const SReport &stReport)
{
  const std::size_t nPlanes = stReport.stBefore.listPlanes.size();
  if (nPlanes < 2 || stReport.stAfter.listPlanes.size() != nPlanes) {
    return;
  }
  for (std::size_t nPlane = 0; nPlane < nPlanes; ++nPlane) {
    const SUniformityFigures &stBefore = stReport.stBefore.listPlanes[nPlane];
    AppendRow(strTable, QStringLiteral("shading of %1, %").arg(QString::fromStdString(stBefore.strName)),
              stBefore.dShadingPercent, stReport.stAfter.listPlanes[nPlane].dShadingPercent);
  }
}

} // namespace

QStringList MakeFigureNotes(const SReport &stReport)
{
  QStringList listNotes;
  if (stReport.stAfter.stOverall.dPrnuPercent > stReport.stBefore.stOverall.dPrnuPercent) {
    const QString strReference = stReport.nFrameCount == 1
                                   ? QStringLiteral("is one single frame")
                                   : QStringLiteral("averages only %1 frames").arg(stReport.nFrameCount);
    const QString strAdvice = stReport.nFrameCount < 16 ? QStringLiteral("; use 16 frames") : QString();
    listNotes << QStringLiteral("PRNU got worse: the bright reference %1, so its own noise is now in every image%2")
                   .arg(strReference, strAdvice);
  }
  if (stReport.stAfter.stOverall.dDsnuDn > stReport.stBefore.stOverall.dDsnuDn) {
    listNotes << QStringLiteral("DSNU got worse: the dark reference is one single frame, so its own noise is now in "
                                "every dark image");
  }
  if (stReport.dNewlyClippedPercent > 0) {
    listNotes << QStringLiteral("%1 % of the samples are clipped by the correction; choose a lower expected grey")
                   .arg(stReport.dNewlyClippedPercent, 0, 'g', 3);
  }
  return listNotes;
}

QByteArray MakeReportJson(const SReport &stReport)
{
  const SThroughput &stThroughput = stReport.stThroughput;
  const QJsonObject jsonThroughput{{"frames_per_second", stThroughput.GetFramesPerSecond()},
                                   {"megapixels_per_second", stThroughput.GetMegapixelsPerSecond()}};
  const QJsonObject json{
    {"camera", stReport.strCamera},
    {"pixel_format", stReport.strPixelFormat},
    {"width", int(stReport.nWidth)},
    {"height", int(stReport.nHeight)},
    {"frame_count", stReport.nFrameCount},
    {"expect_gray", stReport.nExpectGray},
    {"expect_gray_dn", stReport.nExpectGrayDn},
    {"measured_bright_frames", int(stReport.nBrightFrames)},
    {"measured_dark_frames", int(stReport.nDarkFrames)},
    {"newly_clipped_percent", stReport.dNewlyClippedPercent},
    {"method", QLatin1String(METHOD)},
    {"before", MakeUniformityJson(stReport.stBefore)},
    {"after", MakeUniformityJson(stReport.stAfter)},
    {"throughput", jsonThroughput},
    {"notes", QJsonArray::fromStringList(stReport.listNotes + MakeFigureNotes(stReport))},
  };
  return QJsonDocument(json).toJson(QJsonDocument::Indented);
}

QString MakeReportTable(const SReport &stReport)
{
  QString strTable;
  QTextStream stream(&strTable);
  stream << stReport.strCamera << ", " << stReport.strPixelFormat << ", " << stReport.nWidth << " x "
         << stReport.nHeight << "\n";
  stream << "coefficients from " << stReport.nFrameCount << " bright frame(s), expected grey " << stReport.nExpectGray
         << " of 255 (" << stReport.nExpectGrayDn << " DN)\n";
  stream << "measured on " << stReport.nBrightFrames << " bright and " << stReport.nDarkFrames
         << " dark fresh frames\n\n";
  stream.flush();
  strTable += QStringLiteral("  %1%2%3\n").arg(QString(), -20).arg("before", 12).arg("after", 12);
  for (const SFigure &stFigure : FIGURES) {
    AppendRow(strTable, QLatin1String(stFigure.pLabel), stReport.stBefore.stOverall.*stFigure.pValue,
              stReport.stAfter.stOverall.*stFigure.pValue);
  }
  AppendPlaneRows(strTable, stReport);
  strTable += QStringLiteral("\n  ProcessImage: %1 frames/s, %2 megapixels/s\n")
                .arg(stReport.stThroughput.GetFramesPerSecond(), 0, 'f', 1)
                .arg(stReport.stThroughput.GetMegapixelsPerSecond(), 0, 'f', 1);
  strTable += QStringLiteral("  %1\n").arg(QLatin1String(METHOD));
  for (const QString &strNote : stReport.listNotes + MakeFigureNotes(stReport)) {
    strTable += QStringLiteral("  note: %1\n").arg(strNote);
  }
  return strTable;
}
