#include "host/window/camerapresets.h"

#include <QSettings>
#include <QUrl>

#include "host/viewer/featuretext.h"
#include "host/window/cameramemory.h"

namespace ffc::host {
namespace {

/// In the order in which a camera takes them: a region must fit what stands before it.
const char *const FEATURES[] = {
  "PixelFormat", "BinningHorizontal", "BinningVertical",     "Width", "Height", "OffsetX", "OffsetY", "ExposureTime",
  "Gain",        "BlackLevel",        "AcquisitionFrameRate"};

} // namespace

CCameraPresets::CCameraPresets(camera::ICamera &camera)
  : m_map(*camera.GetDeviceNodeMap()), m_strGroup(FindCameraGroup(camera) + QStringLiteral("/presets"))
{
}

QString CCameraPresets::GetGroup(const QString &strName) const
{
  return m_strGroup + QLatin1Char('/') + ToSettingsKey(strName);
}

QStringList CCameraPresets::ListNames() const
{
  QSettings settings;
  settings.beginGroup(m_strGroup);
  QStringList listNames;
  for (const QString &strKey : settings.childGroups()) {
    listNames << QUrl::fromPercentEncoding(strKey.toLatin1());
  }
  return listNames;
}

void CCameraPresets::Save(const QString &strName)
{
  Remove(strName);
  QSettings settings;
  settings.beginGroup(GetGroup(strName));
  for (const char *pFeature : FEATURES) {
    const std::string strValue = ReadFeature(m_map, pFeature);
    if (!strValue.empty()) {
      settings.setValue(QLatin1String(pFeature), QString::fromStdString(strValue));
    }
  }
}

void CCameraPresets::Remove(const QString &strName)
{
  QSettings().remove(GetGroup(strName));
}

QStringList CCameraPresets::Apply(const QString &strName)
{
  QSettings settings;
  settings.beginGroup(GetGroup(strName));
  QStringList listRefused;
  // Whatever size comes, it fits at the sensor's corner.
  QStringList listIgnored;
  Write(QStringLiteral("OffsetX"), QStringLiteral("0"), listIgnored);
  Write(QStringLiteral("OffsetY"), QStringLiteral("0"), listIgnored);
  for (const char *pFeature : FEATURES) {
    const QString strFeature = QLatin1String(pFeature);
    if (settings.contains(strFeature)) {
      Write(strFeature, settings.value(strFeature).toString(), listRefused);
    }
  }
  return listRefused;
}

void CCameraPresets::Write(const QString &strFeature, const QString &strValue, QStringList &listRefused)
{
  GenApi::INode *pNode = m_map.GetNode(strFeature.toUtf8().constData());
  auto *pValue = dynamic_cast<GenApi::IValue *>(pNode);
  if (pValue == nullptr || QString::fromStdString(ReadText(*pValue)) == strValue) {
    return;
  }
  if (!GenApi::IsWritable(pNode)) {
    listRefused << QStringLiteral("%1: %2").arg(strFeature, strValue);
    return;
  }
  try {
    pValue->FromString(strValue.toUtf8().constData());
  } catch (const GenICam::GenericException &exception) {
    listRefused
      << QStringLiteral("%1: %2 (%3)").arg(strFeature, strValue, QString::fromUtf8(exception.GetDescription()));
  }
}

} // namespace ffc::host
