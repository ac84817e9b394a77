#include "host/cameraopening.h"

#include <cmath>
#include <cstdlib>
#include <string>

#include "camera/replay/replaycamera.h"
#include "camera/simulated/simulatedcamera.h"

namespace {

/// Entries are named after the pixels of a block: "BlockSize_1024".
const std::string BLOCK_PREFIX = "BlockSize_";

GenApi::IEnumeration *FindBlockSize(ICamera &camera)
{
  return dynamic_cast<GenApi::IEnumeration *>(camera.GetDeviceNodeMap()->GetNode("FFCBlockSize"));
}

} // namespace

SOpenedCamera OpenCamera(const SHostOptions &stOptions)
{
  SOpenedCamera stOpened;
  std::string strError;
  if (stOptions.strReplayFolder.empty()) {
    SSimulatedCameraOptions stCamera;
    stCamera.strPixelFormat = stOptions.strPixelFormat.empty() ? stCamera.strPixelFormat : stOptions.strPixelFormat;
    stCamera.nWidth = stOptions.nWidth;
    stCamera.nHeight = stOptions.nHeight;
    stCamera.nSeed = stOptions.nSeed;
    stCamera.eMode = stOptions.eMode;
    stCamera.strFlashFile = stOptions.strFlashFile;
    stOpened.pCamera = CreateSimulatedCamera(stCamera, &strError);
  } else {
    SReplayCameraOptions stCamera;
    stCamera.strFolder = stOptions.strReplayFolder;
    stCamera.strPixelFormat = stOptions.strPixelFormat;
    stOpened.pCamera = CreateReplayCamera(stCamera, &strError);
  }
  if (stOpened.pCamera == nullptr) {
    stOpened.strError = QStringLiteral("camera: %1").arg(QString::fromStdString(strError));
  }
  return stOpened;
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
