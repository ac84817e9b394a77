/// \file
/// What a host needs of a camera.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <GenApi/GenApi.h>

#include "camera/featurenote.h"
#include "platform/result.h"

namespace ffc::camera {

class ICameraLink;

/// One delivered frame. Valid during the callback only.
struct SCameraFrame {
  const void *pBuffer = nullptr; ///< tightly packed lines
  uint32_t nSize = 0;            ///< bytes
  uint32_t nWidth = 0;           ///< pixels per line
  uint32_t nHeight = 0;          ///< lines
  uint32_t nPixelFormat = 0;     ///< PFNC code
  uint64_t nFrameId = 0;         ///< counts the camera's frames since it was made; a lost one leaves a gap
};

/// A camera: three node maps, and frames on a thread of the camera's own.
///
/// All operations are called from one thread (the host's). None throws; a failure is a result with its text.
class ICamera {
public:
  /// Runs on the camera's own thread, one frame at a time.
  using FrameCallback = std::function<void(const SCameraFrame &stFrame)>;

  virtual ~ICamera() = default;

  /// "Maker Model (serial)", as a viewer shows it.
  virtual std::string GetDisplayName() const = 0;

  /// Features that describe the delivered image: OutPixelFormat, OutputPayloadSize, OutputWidth,
  /// OutputHeight, DeviceDisplayName.
  virtual GenApi::INodeMap *GetOutputNodeMap() = 0;
  /// StreamBufferHandlingMode.
  virtual GenApi::INodeMap *GetStreamNodeMap() = 0;
  /// The camera's own features. TLParamsLocked is 1 between Start and Stop.
  virtual GenApi::INodeMap *GetDeviceNodeMap() = 0;

  /// Where the device map is not as the camera has it. Of the camera as it was when it was opened.
  virtual std::vector<SFeatureNote> GetFeatureNotes() const { return {}; }

  /// Set while the camera is stopped.
  virtual void SetFrameCallback(FrameCallback fnCallback) = 0;
  /// Starts the stream; does nothing when it runs.
  virtual Result<> Start() = 0;
  /// Stops the stream; when it returns no callback runs and none will. Does nothing when stopped.
  virtual void Stop() = 0;
  /// From any thread.
  virtual bool IsStreaming() const = 0;

  /// Null for a camera that cannot be lost.
  virtual ICameraLink *GetLink() { return nullptr; }
};

} // namespace ffc::camera
