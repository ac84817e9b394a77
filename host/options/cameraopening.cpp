#include "host/options/cameraopening.h"

#include <string>
#include <utility>

#include "camera/realcameras.h"
#include "camera/replay/replaycamera.h"
#include "camera/simulated/simulatedcamera.h"

namespace ffc::host {
namespace {

/// A camera, or why there is none.
OpenedCamera Answer(std::unique_ptr<ICamera> pCamera, const std::string &strError)
{
  if (pCamera == nullptr) {
    return Failure("camera: " + strError);
  }
  return OpenedCamera(std::move(pCamera));
}

OpenedCamera OpenSimulated(const SCameraOptions &stOptions)
{
  SSimulatedCameraOptions stCamera;
  stCamera.strPixelFormat = stOptions.strPixelFormat.empty() ? stCamera.strPixelFormat : stOptions.strPixelFormat;
  stCamera.nWidth = stOptions.nWidth;
  stCamera.nHeight = stOptions.nHeight;
  stCamera.nSeed = stOptions.nSeed;
  stCamera.eMode = stOptions.eMode;
  stCamera.strFlashFile = stOptions.strFlashFile;
  std::string strError;
  std::unique_ptr<ICamera> pCamera = CreateSimulatedCamera(stCamera, &strError);
  return Answer(std::move(pCamera), strError);
}

OpenedCamera OpenReplay(const SCameraOptions &stOptions)
{
  SReplayCameraOptions stCamera;
  stCamera.strFolder = stOptions.strReplayFolder;
  stCamera.strPixelFormat = stOptions.strPixelFormat;
  std::string strError;
  std::unique_ptr<ICamera> pCamera = CreateReplayCamera(stCamera, &strError);
  return Answer(std::move(pCamera), strError);
}

Result<> SelectPixelFormat(ICamera &camera, const std::string &strPixelFormat)
{
  try {
    auto *pFormat = dynamic_cast<GenApi::IValue *>(camera.GetDeviceNodeMap()->GetNode("PixelFormat"));
    if (pFormat == nullptr) {
      return Failure("camera: the camera's pixel format cannot be set");
    }
    pFormat->FromString(strPixelFormat.c_str());
    return {};
  } catch (const GenICam::GenericException &exception) {
    return Failure(std::string("camera: ") + exception.GetDescription());
  }
}

/// A real camera keeps the format that it is set to unless the user asks for another.
OpenedCamera OpenReal(const SCameraOptions &stOptions)
{
  std::string strError;
  std::unique_ptr<ICamera> pCamera = OpenRealCamera(stOptions.strCameraId, &strError);
  if (pCamera != nullptr && !stOptions.strPixelFormat.empty()) {
    const Result<> selected = SelectPixelFormat(*pCamera, stOptions.strPixelFormat);
    if (!selected) {
      return selected.GetFailure();
    }
  }
  return Answer(std::move(pCamera), strError);
}

} // namespace

OpenedCamera OpenCamera(const SCameraOptions &stOptions)
{
  if (!stOptions.strCameraId.empty()) {
    return OpenReal(stOptions);
  }
  return stOptions.strReplayFolder.empty() ? OpenSimulated(stOptions) : OpenReplay(stOptions);
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
