#include "host/window/cameramemory.h"

#include <QSettings>
#include <QUrl>

namespace ffc::host {
namespace {

const QString FILE_KEY = QStringLiteral("file");
const QString FRAMES_KEY = QStringLiteral("frames");
const QString GRAY_KEY = QStringLiteral("expectGray");
const QString LIMITS_GROUP = QStringLiteral("limits");

/// Slashes in a maker's name would be groups of their own.
QString GetGroup(const QString &strCamera)
{
  return QStringLiteral("cameras/") + QString::fromLatin1(QUrl::toPercentEncoding(strCamera));
}

} // namespace

SCameraMemory LoadCameraMemory(const QString &strCamera)
{
  QSettings settings;
  settings.beginGroup(GetGroup(strCamera));
  SCameraMemory stMemory;
  stMemory.strFile = settings.value(FILE_KEY).toString();
  stMemory.nFrames = settings.value(FRAMES_KEY, stMemory.nFrames).toInt();
  stMemory.nExpectGray = settings.value(GRAY_KEY, stMemory.nExpectGray).toInt();
  settings.beginGroup(LIMITS_GROUP);
  for (const quality::SLimitedFigure &stFigure : quality::GetLimitedFigures()) {
    const QVariant value = settings.value(QLatin1String(stFigure.pKey));
    if (value.isValid()) {
      stMemory.stLimits.emplace(stMemory.stLimits.value_or(quality::SLimits{})).*stFigure.pLimit = value.toDouble();
    }
  }
  return stMemory;
}

void SaveCameraMemory(const QString &strCamera, const SCameraMemory &stMemory)
{
  QSettings settings;
  settings.beginGroup(GetGroup(strCamera));
  settings.setValue(FILE_KEY, stMemory.strFile);
  settings.setValue(FRAMES_KEY, stMemory.nFrames);
  settings.setValue(GRAY_KEY, stMemory.nExpectGray);
  if (!stMemory.stLimits) {
    return;
  }
  settings.beginGroup(LIMITS_GROUP);
  for (const quality::SLimitedFigure &stFigure : quality::GetLimitedFigures()) {
    settings.setValue(QLatin1String(stFigure.pKey), (*stMemory.stLimits).*stFigure.pLimit);
  }
}

} // namespace ffc::host
