#include "host/cameraopening.h"

#include "camera/replay/replaycamera.h"
#include "camera/simulated/simulatedcamera.h"

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
