/// \file
/// A host, a camera and a correction process between them, for tests.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "genapi/softwarenodemap/observednodemap.h"
#include "pluginobject/featureaccess.h"
#include "pluginobject/shadingcorrection/process/ishadingcorrectionprocess.h"
#include "tests/support/framepump.h"
#include "tests/support/testcamera.h"

namespace ffc::test {

/// Values of features by name, as texts.
using Settings = std::map<std::string, std::string>;

/// Adds the values of all features of a map that have one; empty where it cannot be read.
void AddSettings(Settings &mapValues, genapi::CSoftwareNodeMap &map);

/// What is not alike, as a text; empty when nothing is.
std::string DescribeChanges(const Settings &mapBefore, const Settings &mapAfter);

/// Plays the host of an initialised process: starts and stops its stream when the process asks (TLParamsLocked
/// follows), and hands over frames on a thread of its own, one per request, while it streams. Each kind of
/// process has a rig of its own that derives from this one, and adds nothing that the frame thread uses.
class CProcessRig {
public:
  /// Makes the nFrame-th frame since the last Show, counted from 0. Runs on the frame thread, between the
  /// poll for the request and the hand-over, and must not call the rig. An empty frame is lost on its way.
  using FnFrame = std::function<std::vector<uint8_t>(int nFrame)>;

  CProcessRig(const CProcessRig &) = delete;
  CProcessRig &operator=(const CProcessRig &) = delete;

  CTestCamera &Camera() { return *m_pCamera; }
  IShadingCorrectionProcess &Process() { return *m_pProcess; }

  /// What the camera sees from now on.
  void Show(FnFrame fnFrame);
  /// Every sample of one value, in the camera's format.
  void ShowGray(uint32_t nGray);
  /// The camera sends nothing; the process waits 30 ms for each frame.
  void ShowNothing();
  /// Whether the stream runs before the process asks for it.
  void SetStreaming(bool bStreaming);
  bool IsStreaming() const { return m_bStreaming; }

  /// Frames handed over since the last Show.
  int GetFrameCount() const { return m_nFrames; }
  /// Codes of the messages since the last call.
  std::vector<int32_t> TakeSignals();
  /// Whether every message so far was zero but for its code.
  bool AreSignalsPlain() const { return m_bPlainSignals; }

  /// Called before every access of the process to the device's or the stream's features.
  void SetHook(genapi::NodeAccessHook fnHook) { m_fnHook = std::move(fnHook); }
  /// Called with the code of each message of the process, before the host acts on it.
  void SetMessageHook(std::function<void(int32_t nCode)> fnHook) { m_fnMessageHook = std::move(fnHook); }
  /// The words of the process's record in their order.
  std::vector<uint32_t> GetInfo();
  /// Values of all features of device and stream by name, as texts; of the white-balance ratios too.
  Settings TakeSnapshot();

  /// Shows a uniform frame and takes it.
  int32_t AcquireDark(uint32_t nGray);
  int32_t AcquireBright(uint32_t nGray);

protected:
  explicit CProcessRig(std::unique_ptr<CTestCamera> pCamera);
  ~CProcessRig();

  /// The camera's features as the process sees them.
  pluginobject::CFeatureAccess DeviceFeatures() { return pluginobject::CFeatureAccess(&m_deviceMap); }
  pluginobject::CFeatureAccess StreamFeatures() { return pluginobject::CFeatureAccess(&m_streamMap); }

  /// Initialises the process and starts the frame thread. Once.
  template <class TProcess>
  TProcess &Start(std::unique_ptr<TProcess> pProcess)
  {
    TProcess &process = *pProcess;
    Connect(std::move(pProcess));
    return process;
  }

private:
  void Connect(std::unique_ptr<IShadingCorrectionProcess> pProcess);
  void HandleMessage(const PLUGIN_MSG &stMessage);
  void Deliver();

  std::unique_ptr<CTestCamera> m_pCamera;
  genapi::CObservedNodeMap m_deviceMap;
  genapi::CObservedNodeMap m_streamMap;
  genapi::NodeAccessHook m_fnHook;
  std::function<void(int32_t nCode)> m_fnMessageHook;
  std::unique_ptr<IShadingCorrectionProcess> m_pProcess;
  std::vector<int32_t> m_listSignals;
  bool m_bPlainSignals = true;
  std::mutex m_mutex; // guards what the frame thread uses
  FnFrame m_fnFrame;
  bool m_bStreaming = false;
  std::atomic<int> m_nFrames{0};
  std::unique_ptr<CFramePump> m_pPump;
};

/// A record of these words as bytes, the low byte of each first.
std::vector<uint8_t> MakeRecord(const std::vector<uint32_t> &listWords);

} // namespace ffc::test
