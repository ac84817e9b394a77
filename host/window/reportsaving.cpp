#include "host/window/reportsaving.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>

#include "frames/wholefile.h"
#include "host/measurement/background.h"
#include "host/window/waitbox.h"
#include "quality/htmlreport.h"

namespace ffc::host {
namespace {

QString Translate(const char *pText)
{
  return QCoreApplication::translate("ReportSaving", pText);
}

const QString FOLDER_KEY = QStringLiteral("report/folder");

/// Beside the report, as a list and as a map; nothing where there are none.
Result<> SaveDefects(const QFileInfo &info, const quality::SReport &stReport)
{
  if (stReport.listDefects.empty()) {
    return {};
  }
  const QString strBase = info.dir().filePath(info.completeBaseName() + QStringLiteral("-defects"));
  return RunUntilFailure(
    [&] {
      return frames::SaveWholeFile(strBase + QStringLiteral(".csv"), quality::MakeDefectsCsv(stReport.listDefects));
    },
    [&] {
      return frames::SaveWholeFile(strBase + QStringLiteral(".xml"),
                                   quality::MakeDefectsXml(stReport.listDefects, stReport.nWidth, stReport.nHeight));
    });
}

/// What is not known is left out.
QByteArray MakeTimedJson(const quality::SResult &stResult, double dLimitPercent, const QDateTime &dtMeasured)
{
  QJsonObject json = QJsonDocument::fromJson(quality::MakeJson(stResult, dLimitPercent)).object();
  json.insert(QStringLiteral("measured_at"),
              dtMeasured.toOffsetFromUtc(dtMeasured.offsetFromUtc()).toString(Qt::ISODate));
  if (stResult.stReport.nFrameCount == 0) {
    for (const char *pKey : {"frame_count", "expect_gray", "expect_gray_dn"}) {
      json.remove(QLatin1String(pKey));
    }
  }
  return QJsonDocument(json).toJson(QJsonDocument::Indented);
}

} // namespace

QString AskReportPath(QWidget *pParent)
{
  QSettings settings;
  const QDir dir(settings.value(FOLDER_KEY, QDir::homePath()).toString());
  QString strPath =
    QFileDialog::getSaveFileName(pParent, Translate("Save report"),
                                 dir.filePath(QStringLiteral("flat-field-report.html")), Translate("Report (*.html)"));
  if (!strPath.isEmpty()) {
    settings.setValue(FOLDER_KEY, QFileInfo(strPath).absolutePath());
    strPath += QFileInfo(strPath).suffix().isEmpty() ? QStringLiteral(".html") : QString();
  }
  return strPath;
}

Result<> SaveReport(const QString &strPath, const std::shared_ptr<const quality::SResult> &pResult,
                    double dLimitPercent, const QDateTime &dtMeasured, QWidget *pParent)
{
  CWaitBox box(Translate("Save report"), pParent);
  CBackground background;
  QByteArray byteHtml;
  background.Start([&]() -> std::function<void()> {
    QByteArray byteMade = quality::MakeHtmlReport(*pResult, dLimitPercent, dtMeasured);
    return [&byteHtml, byteMade] { byteHtml = byteMade; };
  });
  box.ShowProgress(Translate("Writing the report"), 0, 0);
  background.Wait();
  if (box.IsCancelled()) {
    return {};
  }
  if (byteHtml.isEmpty()) {
    return Failure(Translate("There is not enough memory."));
  }
  const QFileInfo info(strPath);
  const QString strJson = info.dir().filePath(info.completeBaseName() + QStringLiteral(".json"));
  return RunUntilFailure(
    [&] { return frames::SaveWholeFile(strPath, byteHtml); },
    [&] { return frames::SaveWholeFile(strJson, MakeTimedJson(*pResult, dLimitPercent, dtMeasured)); },
    [&] { return SaveDefects(info, pResult->stReport); });
}

} // namespace ffc::host
