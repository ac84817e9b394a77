#include "host/options/cameraopening.h"

#include <string>
#include <utility>

#include "camera/realcameras.h"
#include "camera/replay/replaycamera.h"
#include "camera/simulated/simulatedcamera.h"

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
  stCamera.strPixelFormat = stOptions.strPixelFormat;
  return CreateReplayCamera(stCamera);
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
    return Failure(exception.GetDescription());
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

} // namespace

OpenedCamera OpenCamera(const SCameraOptions &stOptions)
{
  OpenedCamera opened = OpenSource(stOptions);
  return opened ? std::move(opened) : OpenedCamera(Failure("camera: " + opened.GetError()));
}

std::string DescribeRealCameras()
{
  std::string strText;
  for (const SRealCameraInfo &stInfo : ListRealCameras()) {
    strText +=
      stInfo.strId + "\t" + stInfo.strProtocol + "\t" + stInfo.strAddress + "\t" + stInfo.GetDisplayName() + "\n";
  }
  if (!strText.empty()) {
    return strText;
  }
  return AreRealCamerasSupported() ? "no real camera answers\n"
                                   : "this program was built without support for real cameras\n";
}

} // namespace ffc::host
