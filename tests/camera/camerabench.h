/// \file
/// A simulated camera on the bench.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "camera/simulated/simulatedcamera.h"
#include "tests/camera/framecollector.h"

/// 64 x 48 pixels at 1000 frames per second.
SSimulatedCameraOptions SmallOptions(const std::string &strFormat = "Mono12",
                                     ECorrectionMode eMode = ECorrectionMode::None);

/// A camera, its frames and short ways to its features.
class CCameraBench {
public:
  explicit CCameraBench(const SSimulatedCameraOptions &stOptions = SmallOptions());
  ~CCameraBench() { m_pCamera->Stop(); }

  ICamera &Camera() { return *m_pCamera; }
  ffc::test::CFrameCollector &Frames() { return *m_pCollector; }

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
  std::unique_ptr<ICamera> m_pCamera;
  std::unique_ptr<ffc::test::CFrameCollector> m_pCollector;
};

/// What is wrong with options that make no camera.
std::string GetCreationError(const SSimulatedCameraOptions &stOptions);
