#include "host/options/cameraopening.h"

#include <string>

#include "camera/realcameras.h"
#include "camera/replay/replaycamera.h"
#include "camera/simulated/simulatedcamera.h"

namespace ffc::host {
namespace {

std::unique_ptr<ICamera> OpenSimulated(const SCameraOptions &stOptions, std::string *pstrError)
{
  SSimulatedCameraOptions stCamera;
  stCamera.strPixelFormat = stOptions.strPixelFormat.empty() ? stCamera.strPixelFormat : stOptions.strPixelFormat;
  stCamera.nWidth = stOptions.nWidth;
  stCamera.nHeight = stOptions.nHeight;
  stCamera.nSeed = stOptions.nSeed;
  stCamera.eMode = stOptions.eMode;
  stCamera.strFlashFile = stOptions.strFlashFile;
  return CreateSimulatedCamera(stCamera, pstrError);
}

std::unique_ptr<ICamera> OpenReplay(const SCameraOptions &stOptions, std::string *pstrError)
{
  SReplayCameraOptions stCamera;
  stCamera.strFolder = stOptions.strReplayFolder;
  stCamera.strPixelFormat = stOptions.strPixelFormat;
  return CreateReplayCamera(stCamera, pstrError);
}

/// A real camera keeps the format that it is set to unless the user asks for another.
std::unique_ptr<ICamera> OpenReal(const SCameraOptions &stOptions, std::string *pstrError)
{
  std::unique_ptr<ICamera> pCamera = OpenRealCamera(stOptions.strCameraId, pstrError);
  if (pCamera == nullptr || stOptions.strPixelFormat.empty()) {
    return pCamera;
  }
  try {
    auto *pFormat = dynamic_cast<GenApi::IValue *>(pCamera->GetDeviceNodeMap()->GetNode("PixelFormat"));
    if (pFormat != nullptr) {
      pFormat->FromString(stOptions.strPixelFormat.c_str());
      return pCamera;
    }
    *pstrError = "the camera's pixel format cannot be set";
  } catch (const GenICam::GenericException &exception) {
    *pstrError = exception.GetDescription();
  }
  return nullptr;
}

} // namespace

OpenedCamera OpenCamera(const SCameraOptions &stOptions)
{
  std::unique_ptr<ICamera> pCamera;
  std::string strError;
  if (!stOptions.strCameraId.empty()) {
    pCamera = OpenReal(stOptions, &strError);
  } else if (!stOptions.strReplayFolder.empty()) {
    pCamera = OpenReplay(stOptions, &strError);
  } else {
    pCamera = OpenSimulated(stOptions, &strError);
  }
  if (pCamera == nullptr) {
    return Failure("camera: " + strError);
  }
  return OpenedCamera(std::move(pCamera));
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
