#include "host/options/cameraopening.h"

#include <string>
#include <utility>

#include "camera/realcameras.h"
#include "camera/software/replay/replaycamera.h"
#include "camera/software/simulated/simulatedcamera.h"
#include "host/viewer/cameratexts.h"

namespace ffc::host {

using camera::AreRealCamerasSupported;
using camera::CreateReplayCamera;
using camera::CreateSimulatedCamera;
using camera::ICamera;
using camera::ListRealCameras;
using camera::OpenRealCamera;
using camera::SRealCameraInfo;
using camera::SReplayCameraOptions;
using camera::SSimulatedCameraOptions;

namespace {

OpenedCamera OpenSimulated(const SCameraOptions &stOptions)
{
  SSimulatedCameraOptions stCamera;
  stCamera.strPixelFormat = stOptions.strPixelFormat.empty() ? stCamera.strPixelFormat : stOptions.strPixelFormat;
  stCamera.nWidth = stOptions.nWidth;
  stCamera.nHeight = stOptions.nHeight;
  stCamera.nSeed = stOptions.nSeed;
  stCamera.eMode = stOptions.eMode;
  stCamera.strFlashFile = stOptions.strFlashFile;
  return CreateSimulatedCamera(stCamera);
}

OpenedCamera OpenReplay(const SCameraOptions &stOptions)
{
  SReplayCameraOptions stCamera;
  stCamera.strFolder = stOptions.strReplayFolder;
  stCamera.eAlignment = stOptions.eAlignment;
  stCamera.strPixelFormat = stOptions.strPixelFormat;
  return CreateReplayCamera(stCamera);
}

/// Those that can be selected now, with commas.
std::string ListPixelFormats(ICamera &camera)
{
  std::string strList;
  auto *pFormat = dynamic_cast<GenApi::IEnumeration *>(camera.GetDeviceNodeMap()->GetNode("PixelFormat"));
  GenApi::NodeList_t listEntries;
  if (pFormat != nullptr) {
    pFormat->GetEntries(listEntries);
  }
  for (GenApi::INode *pNode : listEntries) {
    if (GenApi::IsAvailable(pNode->GetAccessMode())) {
      strList +=
        (strList.empty() ? "" : ", ") + std::string(dynamic_cast<GenApi::IEnumEntry &>(*pNode).GetSymbolic().c_str());
    }
  }
  return strList.empty() ? "none" : strList;
}

Result<> SelectPixelFormat(ICamera &camera, const std::string &strPixelFormat)
{
  try {
    auto *pFormat = dynamic_cast<GenApi::IValue *>(camera.GetDeviceNodeMap()->GetNode("PixelFormat"));
    if (pFormat == nullptr) {
      return Failure("the camera's pixel format cannot be set");
    }
    pFormat->FromString(strPixelFormat.c_str());
    return {};
  } catch (const GenICam::GenericException &exception) {
    return Failure(exception.GetDescription() + std::string("; the camera has ") + ListPixelFormats(camera));
  }
}

/// A real camera keeps the format that it is set to unless the user asks for another.
OpenedCamera OpenReal(const SCameraOptions &stOptions)
{
  OpenedCamera opened = OpenRealCamera(stOptions.strCameraId);
  if (opened && !stOptions.strPixelFormat.empty()) {
    const Result<> selected = SelectPixelFormat(*opened.GetValue(), stOptions.strPixelFormat);
    if (!selected) {
      return selected.GetFailure();
    }
  }
  return opened;
}

OpenedCamera OpenSource(const SCameraOptions &stOptions)
{
  if (!stOptions.strCameraId.empty()) {
    return OpenReal(stOptions);
  }
  return stOptions.strReplayFolder.empty() ? OpenSimulated(stOptions) : OpenReplay(stOptions);
}

std::string MakeLine(const QString &strText)
{
  return "\t" + strText.toStdString() + "\n";
}

/// Lines behind a camera's own; takes control of it meanwhile.
std::string DescribeOpened(const std::string &strId)
{
  const OpenedCamera opened = OpenRealCamera(strId);
  if (!opened) {
    return MakeLine(QString::fromStdString(opened.GetError()));
  }
  ICamera &camera = *opened.GetValue();
  std::string strText;
  for (const QString &strNote : DescribeFeatureNotes(camera.GetFeatureNotes())) {
    strText += MakeLine(strNote);
  }
  if (strText.empty()) {
    strText = MakeLine(QStringLiteral("All features that the plug-in needs follow the standard."));
  }
  const QString strTriggers = DescribeTriggers(camera);
  return strTriggers.isEmpty() ? strText
                               : strText + MakeLine(QStringLiteral("Frames wait for a trigger: %1.").arg(strTriggers));
}

} // namespace

OpenedCamera OpenCamera(const SCameraOptions &stOptions)
{
  OpenedCamera opened = OpenSource(stOptions);
  return opened ? std::move(opened) : OpenedCamera(Failure("camera: " + opened.GetError()));
}

std::string DescribeRealCameras(bool bVerbose)
{
  std::string strText;
  for (const SRealCameraInfo &stInfo : ListRealCameras()) {
    strText +=
      stInfo.strId + "\t" + stInfo.strProtocol + "\t" + stInfo.strAddress + "\t" + stInfo.GetDisplayName() + "\n";
    strText += bVerbose ? DescribeOpened(stInfo.strId) : std::string();
  }
  if (!strText.empty()) {
    return strText;
  }
  return AreRealCamerasSupported() ? "no real camera answers\n"
                                   : "this program was built without support for real cameras\n";
}

} // namespace ffc::host
