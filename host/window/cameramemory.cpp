#include "host/window/cameramemory.h"

#include <QSettings>
#include <QUrl>

#include "host/viewer/featuretext.h"

namespace ffc::host {
namespace {

const QString FILE_KEY = QStringLiteral("file");
const QString FRAMES_KEY = QStringLiteral("frames");
const QString GRAY_KEY = QStringLiteral("expectGray");
const QString LIMITS_GROUP = QStringLiteral("limits");

const QString PRESETS_TAKEN_KEY = QStringLiteral("presetsTaken");

/// What is there already stays.
void CopyGroup(QSettings &settings, const QString &strFrom, const QString &strTo)
{
  settings.beginGroup(strFrom);
  const QStringList listKeys = settings.allKeys();
  settings.endGroup();
  for (const QString &strKey : listKeys) {
    const QString strNew = strTo + QLatin1Char('/') + strKey;
    if (!settings.contains(strNew)) {
      settings.setValue(strNew, settings.value(strFrom + QLatin1Char('/') + strKey));
    }
  }
}

/// Version 1 kept the memory under the camera's display name, and the presets under the serial number alone: these stay
/// there, for a camera of another maker may have the same.
void TakeFormerGroups(const QString &strDisplayName, const QString &strSerial, const QString &strGroup)
{
  QSettings settings;
  const QString strFormer = QStringLiteral("cameras/") + ToSettingsKey(strDisplayName);
  if (strFormer != strGroup) {
    CopyGroup(settings, strFormer, strGroup);
    settings.remove(strFormer);
  }
  const QString strTaken = strGroup + QLatin1Char('/') + PRESETS_TAKEN_KEY;
  if (!settings.contains(strTaken)) {
    CopyGroup(settings,
              QStringLiteral("presets/") + ToSettingsKey(strSerial.isEmpty() ? QStringLiteral("unknown") : strSerial),
              strGroup + QStringLiteral("/presets"));
    settings.setValue(strTaken, true);
  }
}

} // namespace

QString ToSettingsKey(const QString &strName)
{
  return QString::fromLatin1(QUrl::toPercentEncoding(strName));
}

QString FindCameraGroup(camera::ICamera &camera)
{
  GenApi::INodeMap &map = *camera.GetDeviceNodeMap();
  const QString strMaker = QString::fromStdString(ReadFeature(map, "DeviceVendorName"));
  const QString strSerial = QString::fromStdString(ReadFeature(map, "DeviceSerialNumber"));
  const QString strDisplayName = QString::fromStdString(camera.GetDisplayName());
  QString strGroup = QStringLiteral("cameras/") +
                     ToSettingsKey(strSerial.isEmpty() ? strDisplayName : strMaker + QLatin1Char(' ') + strSerial);
  TakeFormerGroups(strDisplayName, strSerial, strGroup);
  return strGroup;
}

SCameraMemory LoadCameraMemory(const QString &strGroup)
{
  QSettings settings;
  settings.beginGroup(strGroup);
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

void SaveCameraMemory(const QString &strGroup, const SCameraMemory &stMemory)
{
  QSettings settings;
  settings.beginGroup(strGroup);
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
