#include "camera/software/simulated/simulatedcamera.h"

#include <algorithm>
#include <new>

#include "camera/software/simulated/simulatedsensor.h"
#include "camera/software/softwarecamera.h"

namespace ffc::camera {

using genapi::FindSensorFormat;
using genapi::GetSensorFormats;
using genapi::SSensorFormat;

namespace {

constexpr uint32_t MIN_SIZE = 16;
constexpr uint32_t MAX_SIZE = 16384;
constexpr double HOT_PIXELS = 1.0 / 65536.0; // of the camera whose dead pixels can be corrected

bool IsSensorSize(uint32_t nSize)
{
  return nSize >= MIN_SIZE && nSize <= MAX_SIZE && nSize % 2 == 0;
}

// A lens fall-off is corrected in 8, 10 and 12 bit only.
bool IsOffered(const SSensorFormat &stFormat, ECorrectionMode eMode)
{
  return eMode != ECorrectionMode::Vignetting || stFormat.nBitDepth == 8 || stFormat.nBitDepth == 10 ||
         stFormat.nBitDepth == 12;
}

// The formats of the sensor that the options ask for.
std::vector<SSensorFormat> GetFormats(const SSimulatedCameraOptions &stOptions)
{
  std::vector<SSensorFormat> listFormats = GetSensorFormats(FindSensorFormat(stOptions.strPixelFormat)->eLayout);
  const auto isMissing = [&](const SSensorFormat &stFormat) { return !IsOffered(stFormat, stOptions.eMode); };
  listFormats.erase(std::remove_if(listFormats.begin(), listFormats.end(), isMissing), listFormats.end());
  return listFormats;
}

// Where dead pixels can be corrected there are some.
SSensorModel GetSensorModel(const SSimulatedCameraOptions &stOptions)
{
  SSensorModel stModel;
  stModel.dHotPixels = stOptions.eMode == ECorrectionMode::FlatField ? HOT_PIXELS : 0.0;
  return stModel;
}

// Whether the options make a camera.
Result<> CheckOptions(const SSimulatedCameraOptions &stOptions)
{
  if (FindSensorFormat(stOptions.strPixelFormat) == nullptr) {
    return Failure("The simulated camera has no pixel format \"" + stOptions.strPixelFormat + "\".");
  }
  if (!IsOffered(*FindSensorFormat(stOptions.strPixelFormat), stOptions.eMode)) {
    return Failure("The simulated camera does not correct vignetting in " + stOptions.strPixelFormat +
                   ", but in 8, 10 and 12 bit.");
  }
  if (!IsSensorSize(stOptions.nWidth) || !IsSensorSize(stOptions.nHeight)) {
    return Failure("The simulated camera cannot be " + std::to_string(stOptions.nWidth) + " x " +
                   std::to_string(stOptions.nHeight) + ": width and height are even numbers from " +
                   std::to_string(MIN_SIZE) + " to " + std::to_string(MAX_SIZE) + ".");
  }
  if (!(stOptions.dCornerFalloff >= 0.05 && stOptions.dCornerFalloff <= 1.0)) {
    return Failure("The corner fall-off of the simulated camera must lie between 0.05 and 1.");
  }
  if (!(stOptions.dFrameRate >= MIN_FRAME_RATE && stOptions.dFrameRate <= MAX_FRAME_RATE)) {
    return Failure("The frame rate of the simulated camera must lie between 0.1 and 10000.");
  }
  return {};
}

} // namespace

Result<std::unique_ptr<ICamera>> CreateSimulatedCamera(const SSimulatedCameraOptions &stOptions)
{
  if (const Result<> result = CheckOptions(stOptions); !result) {
    return result.GetFailure();
  }
  try {
    SCameraDescription stDescription;
    stDescription.strVendor = "Simulated";
    stDescription.strModel = stOptions.strPixelFormat;
    stDescription.strSerial = "SIM" + std::to_string(stOptions.nSeed);
    stDescription.listFormats = GetFormats(stOptions);
    stDescription.strPixelFormat = stOptions.strPixelFormat;
    stDescription.nSensorWidth = stOptions.nWidth;
    stDescription.nSensorHeight = stOptions.nHeight;
    stDescription.bRegionOfInterest = true;
    stDescription.bArrangeableScene = true;
    stDescription.dFrameRate = stOptions.dFrameRate;
    if (stOptions.eMode != ECorrectionMode::None) {
      // 1.4 of 255, between two grey values: the dark level of a block is truncated, and at the edge of a grey
      // value it would be another one from block to block.
      stDescription.dBlackLevel = 0.55;
    }
    auto pSensor = std::make_unique<CSimulatedSensor>(stOptions.nWidth, stOptions.nHeight, stOptions.dCornerFalloff,
                                                      stOptions.nSeed, GetSensorModel(stOptions));
    auto pCamera = std::make_unique<CSoftwareCamera>(stDescription, std::move(pSensor));
    if (stOptions.eMode != ECorrectionMode::None) {
      const SSelfCorrectionOptions stCorrection = {stOptions.eMode, stOptions.strFlashFile, stOptions.strPixelFormat};
      if (const Result<> result = pCamera->AddSelfCorrection(stDescription, stCorrection); !result) {
        return result.GetFailure();
      }
    }
    return pCamera;
  } catch (const std::bad_alloc &) {
    return Failure("There is not enough memory for the simulated camera.");
  }
}

} // namespace ffc::camera
