#include "host/recording/framesettings.h"

#include <QDateTime>

#include "frames/correctionmark.h"
#include "host/viewer/featuretext.h"
#include "host/viewer/viewer.h"

namespace ffc::host {
namespace {

struct SSetting {
  const char *pFeature;
  const char *pName;
  bool bNumber;
};

constexpr SSetting SETTINGS[] = {
  {"DeviceVendorName", "vendor", false},
  {"DeviceModelName", "camera", false},
  {"DeviceSerialNumber", "serial", false},
  {"PixelFormat", "pixelFormat", false},
  {"ExposureTime", "exposureTime", true},
  {"Gain", "gain", true},
  {"BlackLevel", "blackLevel", true},
  {"DeviceTemperature", "temperature", true},
  {"OffsetX", "offsetX", true},
  {"OffsetY", "offsetY", true},
  {"BinningHorizontal", "binningHorizontal", true},
  {"BinningVertical", "binningVertical", true},
  {"AcquisitionFrameRate", "frameRate", true},
};

const QString CORRECTED = QStringLiteral("corrected");
const QString TIME = QStringLiteral("time");

QString FormatTime(int64_t nMilliseconds)
{
  return QDateTime::fromMSecsSinceEpoch(nMilliseconds, Qt::UTC).toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss.zzz'Z'"));
}

} // namespace

QJsonObject ReadFrameSettings(GenApi::INodeMap &deviceMap)
{
  QJsonObject settings;
  for (const SSetting &stSetting : SETTINGS) {
    const QString strText = QString::fromStdString(ReadFeature(deviceMap, stSetting.pFeature));
    bool bNumber = false;
    const double dNumber = strText.toDouble(&bNumber);
    if (stSetting.bNumber && bNumber) {
      settings.insert(QLatin1String(stSetting.pName), dNumber);
    } else if (!stSetting.bNumber && !strText.isEmpty()) {
      settings.insert(QLatin1String(stSetting.pName), strText);
    }
  }
  return settings;
}

QJsonObject DescribeFrame(QJsonObject settings, const SRecordedFrame &stFrame)
{
  settings.insert(CORRECTED, stFrame.stCopy.bCorrected);
  if (stFrame.nTime != 0) {
    settings.insert(QStringLiteral("frameId"), static_cast<double>(stFrame.nFrameId));
    settings.insert(TIME, FormatTime(stFrame.nTime));
  }
  return settings;
}

frames::Texts MakeFrameTexts(const QJsonObject &frame, const QString &strMark)
{
  frames::Texts mapTexts{{frames::TEXT_DESCRIPTION, frames::ToLine(frame)},
                         {QStringLiteral("Software"), GetToolName()}};
  if (frame.contains(TIME)) {
    QString strTime = frame.value(TIME).toString();
    strTime.chop(1); // the zone
    mapTexts[frames::TEXT_TIME] = strTime;
  }
  if (frame.value(CORRECTED).toBool()) {
    mapTexts[frames::TEXT_CORRECTION] = strMark;
  }
  return mapTexts;
}

} // namespace ffc::host
