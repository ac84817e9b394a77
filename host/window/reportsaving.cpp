#include "host/window/reportsaving.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>

#include "frames/wholefile.h"
#include "host/measurement/background.h"
#include "host/measurement/defectfiles.h"
#include "host/window/savebox.h"
#include "host/window/waitbox.h"
#include "quality/htmlreport.h"

namespace ffc::host {
namespace {

QString Translate(const char *pText)
{
  return QCoreApplication::translate("ReportSaving", pText);
}

const QString FOLDER_KEY = QStringLiteral("report/folder");

/// What is written for a page begins so.
QString GetBase(const QString &strPath)
{
  const QFileInfo info(strPath);
  return info.dir().filePath(info.completeBaseName());
}

QString GetJsonPath(const QString &strPath)
{
  return GetBase(strPath) + QStringLiteral(".json");
}

QString GetDefectsBase(const QString &strPath)
{
  return GetBase(strPath) + QStringLiteral("-defects");
}

QStringList ListReportFiles(const QString &strPath)
{
  const QString strDefects = GetDefectsBase(strPath);
  return {strPath, GetJsonPath(strPath), strDefects + QStringLiteral(".csv"), strDefects + QStringLiteral(".xml")};
}

QByteArray MakeTimedJson(const quality::SResult &stResult, const quality::SLimits &stLimits,
                         const QDateTime &dtMeasured)
{
  QJsonObject json = quality::MakeJson(stResult, stLimits);
  json.insert(QStringLiteral("measured_at"),
              dtMeasured.toOffsetFromUtc(dtMeasured.offsetFromUtc()).toString(Qt::ISODate));
  return QJsonDocument(json).toJson(QJsonDocument::Indented);
}

} // namespace

QString AskReportPath(QWidget *pParent)
{
  QSettings settings;
  const QDir dir(settings.value(FOLDER_KEY, QDir::homePath()).toString());
  const SSaveBox stBox = {Translate("Save report"),
                          dir.filePath(QStringLiteral("flat-field-report.html")),
                          {Translate("Report (*.html)")},
                          QString()};
  QString strPath = AskSavePath(pParent, stBox, QStringLiteral("html"), ListReportFiles);
  if (!strPath.isEmpty()) {
    settings.setValue(FOLDER_KEY, QFileInfo(strPath).absolutePath());
  }
  return strPath;
}

Result<> SaveReport(const QString &strPath, const std::shared_ptr<const quality::SResult> &pResult,
                    const quality::SLimits &stLimits, const QDateTime &dtMeasured, QWidget *pParent)
{
  CWaitBox box(Translate("Save report"), pParent);
  box.SetClosingText(Translate("The window closes when the report is written."));
  CBackground background;
  QByteArray byteHtml;
  background.Start([&]() -> std::function<void()> {
    QByteArray byteMade = quality::MakeHtmlReport(*pResult, stLimits, dtMeasured);
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
  return RunUntilFailure(
    [&] { return frames::SaveWholeFile(strPath, byteHtml); },
    [&] { return frames::SaveWholeFile(GetJsonPath(strPath), MakeTimedJson(*pResult, stLimits, dtMeasured)); },
    [&] { return SaveDefects(GetDefectsBase(strPath), pResult->stReport); });
}

} // namespace ffc::host
