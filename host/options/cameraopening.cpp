#include "host/options/cameraopening.h"

#include <cmath>
#include <cstdlib>
#include <string>

#include "camera/realcameras.h"
#include "camera/replay/replaycamera.h"
#include "camera/simulated/simulatedcamera.h"

namespace ffc::host {
namespace {

/// Entries are named after the pixels of a block: "BlockSize_1024".
const std::string BLOCK_PREFIX = "BlockSize_";

GenApi::IEnumeration *FindBlockSize(ICamera &camera)
{
  return dynamic_cast<GenApi::IEnumeration *>(camera.GetDeviceNodeMap()->GetNode("FFCBlockSize"));
}

std::unique_ptr<ICamera> OpenSimulated(const SHostOptions &stOptions, std::string *pstrError)
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

std::unique_ptr<ICamera> OpenReplay(const SHostOptions &stOptions, std::string *pstrError)
{
  SReplayCameraOptions stCamera;
  stCamera.strFolder = stOptions.strReplayFolder;
  stCamera.strPixelFormat = stOptions.strPixelFormat;
  return CreateReplayCamera(stCamera, pstrError);
}

/// A real camera keeps the format that it is set to unless the user asks for another.
std::unique_ptr<ICamera> OpenReal(const SHostOptions &stOptions, std::string *pstrError)
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

SOpenedCamera OpenCamera(const SHostOptions &stOptions)
{
  SOpenedCamera stOpened;
  std::string strError;
  if (!stOptions.strCameraId.empty()) {
    stOpened.pCamera = OpenReal(stOptions, &strError);
  } else if (!stOptions.strReplayFolder.empty()) {
    stOpened.pCamera = OpenReplay(stOptions, &strError);
  } else {
    stOpened.pCamera = OpenSimulated(stOptions, &strError);
  }
  if (stOpened.pCamera == nullptr) {
    stOpened.strError = QStringLiteral("camera: %1").arg(QString::fromStdString(strError));
  }
  return stOpened;
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

QString SelectBlockSize(ICamera &camera, uint32_t nSide)
{
  if (nSide == 0) {
    return {};
  }
  GenApi::IEnumeration *pBlockSize = FindBlockSize(camera);
  try {
    if (pBlockSize != nullptr) {
      pBlockSize->FromString((BLOCK_PREFIX + std::to_string(nSide * nSide)).c_str());
      return {};
    }
  } catch (const GenICam::GenericException &exception) {
    return QStringLiteral("block size %1: %2").arg(nSide).arg(QString::fromUtf8(exception.GetDescription()));
  }
  return QStringLiteral("this camera has no coefficient blocks");
}

uint32_t ReadBlockSize(ICamera &camera)
{
  GenApi::IEnumeration *pBlockSize = FindBlockSize(camera);
  if (pBlockSize == nullptr) {
    return 0;
  }
  try {
    const std::string strEntry = pBlockSize->ToString().c_str();
    const bool bKnown = strEntry.compare(0, BLOCK_PREFIX.size(), BLOCK_PREFIX) == 0;
    return bKnown ? uint32_t(std::lround(std::sqrt(std::atof(strEntry.c_str() + BLOCK_PREFIX.size())))) : 0;
  } catch (const GenICam::GenericException &) {
    return 0;
  }
}

} // namespace ffc::host
