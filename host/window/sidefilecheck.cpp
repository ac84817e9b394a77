#include "host/window/sidefilecheck.h"

#include <algorithm>
#include <optional>
#include <vector>

#include <QCoreApplication>
#include <QDateTime>
#include <QFileInfo>

#include "frames/sidefile.h"
#include "frames/wholefile.h"
#include "genapi/sensorformat.h"
#include "host/measurement/tablefile.h"
#include "host/viewer/featuretext.h"
#include "quality/tableshape.h"

namespace ffc::host {
namespace {

QString Translate(const char *pText)
{
  return QCoreApplication::translate("SideFileCheck", pText);
}

QString ReadText(GenApi::INodeMap &deviceMap, const char *pFeature)
{
  return QString::fromStdString(ReadFeature(deviceMap, pFeature));
}

/// What the table's own lines say, where nobody wrote down its shape.
QString DescribeSeam(const QString &strFile, GenApi::INodeMap &deviceMap)
{
  const uint32_t nWidth = ReadText(deviceMap, "Width").toUInt();
  const uint32_t nHeight = ReadText(deviceMap, "Height").toUInt();
  const std::vector<uint16_t> listGains = ReadGains(strFile, nWidth, nHeight);
  const std::optional<quality::STableShape> stShape =
    listGains.empty() ? std::nullopt : quality::FindOtherShape(listGains.data(), nWidth, nHeight);
  return stShape
           ? Translate("The coefficients %1 look as if they were made for %2 x %3, but the camera delivers %4 x %5: "
                       "the image would have stripes.")
               .arg(QFileInfo(strFile).fileName())
               .arg(stShape->nWidth)
               .arg(stShape->nHeight)
               .arg(nWidth)
               .arg(nHeight)
           : QString();
}

} // namespace

QString DescribeMisfit(const QString &strFile, GenApi::INodeMap &deviceMap)
{
  const Result<std::optional<frames::SSideFile>> side = frames::ReadSideFile(strFile);
  const QString strName = QFileInfo(strFile).fileName();
  if (!side) {
    return Translate("The file beside the coefficients %1 cannot be used: it %2")
      .arg(strName, QString::fromStdString(side.GetError()));
  }
  if (!side.GetValue()) {
    return DescribeSeam(strFile, deviceMap);
  }
  const frames::SSideFile &stSide = *side.GetValue();
  const QString strMade =
    QStringLiteral("%1 x %2 %3").arg(stSide.nWidth).arg(stSide.nHeight).arg(stSide.strPixelFormat);
  const QString strCamera =
    QStringLiteral("%1 x %2 %3")
      .arg(ReadText(deviceMap, "Width"), ReadText(deviceMap, "Height"), ReadText(deviceMap, "PixelFormat"));
  return strMade == strCamera ? QString()
                              : Translate("The coefficients %1 were made for %2, but the camera delivers %3.")
                                  .arg(strName, strMade, strCamera);
}

Result<> WriteSideFile(const QString &strFile, const SCoefficientOrigin &stOrigin, const SFrameShape &stShape,
                       GenApi::INodeMap &deviceMap, const QString &strPrograms)
{
  const genapi::SSensorFormat *pFormat = genapi::FindSensorFormat(stShape.nPixelFormat);
  if (pFormat == nullptr || stOrigin.strSha256.isEmpty()) {
    return Failure(Translate("%1 cannot be read again").arg(strFile));
  }
  frames::SSideFile stSide;
  stSide.nWidth = stShape.nWidth;
  stSide.nHeight = stShape.nHeight;
  stSide.strPixelFormat = QLatin1String(pFormat->pName);
  stSide.strCamera = ReadText(deviceMap, "DeviceModelName");
  stSide.strSerial = ReadText(deviceMap, "DeviceSerialNumber");
  stSide.bDarkUsed = stOrigin.eDarkField == quality::EDarkField::Used;
  stSide.nDarkFrames = stSide.bDarkUsed ? 1 : 0;
  stSide.nBrightFrames = static_cast<uint32_t>(stOrigin.nFrames);
  stSide.strMethod = stOrigin.strMethod;
  stSide.strNoise = stOrigin.strNoise;
  stSide.nExpectGray = static_cast<uint32_t>(std::max(0, stOrigin.nExpectGray));
  stSide.strCreated = QDateTime::currentDateTimeUtc().toString(Qt::ISODate);
  stSide.strTool = strPrograms;
  stSide.strSha256 = stOrigin.strSha256;
  return frames::SaveWholeFile(frames::GetSideFilePath(strFile), frames::MakeSideFile(stSide));
}

} // namespace ffc::host
