/// \file
/// A simulated camera under test.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "camera/software/simulated/simulatedcamera.h"
#include "tests/camera/framecollector.h"

namespace ffc::test {

/// 64 x 48 pixels at 1000 frames per second.
camera::SSimulatedCameraOptions SmallOptions(const std::string &strFormat = "Mono12",
                                             camera::ECorrectionMode eMode = camera::ECorrectionMode::None);

/// A camera, its frames and short ways to its features.
class CCameraRig {
public:
  explicit CCameraRig(const camera::SSimulatedCameraOptions &stOptions = SmallOptions());
  ~CCameraRig() { m_pCamera->Stop(); }

  camera::ICamera &Camera() { return *m_pCamera; }
  CFrameCollector &Frames() { return *m_pCollector; }

  template <class TInterface>
  TInterface &Device(const char *pName)
  {
    return *dynamic_cast<TInterface *>(m_pCamera->GetDeviceNodeMap()->GetNode(pName));
  }
  bool Has(const char *pName) { return m_pCamera->GetDeviceNodeMap()->GetNode(pName) != nullptr; }
  GenApi::IValue &Value(const char *pName) { return Device<GenApi::IValue>(pName); }
  void Set(const char *pName, const char *pValue) { Value(pName).FromString(pValue); }
  std::string Get(const char *pName) { return Value(pName).ToString(true).c_str(); }
  std::string GetOutput(const char *pName);
  /// Symbolic names, in order.
  std::vector<std::string> GetEntries(const char *pName);
  void Execute(const char *pName) { Device<GenApi::ICommand>(pName).Execute(); }

  std::vector<uint8_t> ReadRegister();
  void WriteRegister(const std::vector<uint8_t> &listBytes);
  /// Selects the set first.
  void SaveUserSet(const char *pName);
  void LoadUserSet(const char *pName);

  /// One frame of a camera whose trigger is on; starts the stream.
  SKeptFrame TakeTriggered();

private:
  std::unique_ptr<camera::ICamera> m_pCamera;
  std::unique_ptr<CFrameCollector> m_pCollector;
};

/// What is wrong with options that make no camera.
std::string GetCreationError(const camera::SSimulatedCameraOptions &stOptions);

} // namespace ffc::test
