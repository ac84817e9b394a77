#include "host/window/sidefilecheck.h"

#include <QCoreApplication>
#include <QFileInfo>

#include "frames/sidefile.h"
#include "host/viewer/featuretext.h"

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
    return {};
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

} // namespace ffc::host
