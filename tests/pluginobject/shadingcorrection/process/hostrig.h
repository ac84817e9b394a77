/// \file
/// A host, a camera and the host-side process between them, for tests.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "genapi/softwarenodemap/observednodemap.h"
#include "pluginobject/shadingcorrection/process/shadingcorrectionpro_pc.h"
#include "tests/support/framepump.h"
#include "tests/support/testcamera.h"

/// Plays the host of an initialised process: starts and stops its stream when the process asks (TLParamsLocked
/// follows), and hands over frames on a thread of its own, one per request, while it streams.
class CHostRig {
public:
  /// Makes the nFrame-th frame since the last Show, counted from 0. Runs on the frame thread, between the
  /// poll for the request and the hand-over, and must not call the rig. An empty frame is lost on its way.
  using FnFrame = std::function<std::vector<uint8_t>(int nFrame)>;

  explicit CHostRig(const std::string &strPixelFormat = "Mono8", int64_t nWidth = 64, int64_t nHeight = 48);
  ~CHostRig();
  CHostRig(const CHostRig &) = delete;
  CHostRig &operator=(const CHostRig &) = delete;

  CTestCamera &Camera() { return m_camera; }
  CShadingCorrectionPro_PC &Process() { return *m_pProcess; }

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
  void SetHook(NodeAccessHook fnHook) { m_fnHook = std::move(fnHook); }
  /// Values of all features of device and stream by name, as texts; of the white-balance ratios too.
  std::map<std::string, std::string> TakeSnapshot();

  /// Shows a uniform frame and takes it.
  int32_t AcquireDark(uint32_t nGray);
  int32_t AcquireBright(uint32_t nGray);
  /// Corrects one frame of the camera's size and format.
  int32_t Correct(const std::vector<uint8_t> &listSource, std::vector<uint8_t> &listDestination);
  /// Bytes per pixel of the table in force: 4 with a dark frame, 2 without, 0 when there is none.
  uint32_t GetTableBytesPerPixel();

private:
  void HandleMessage(const PLUGIN_MSG &stMessage);
  void Deliver();

  CTestCamera m_camera;
  CObservedNodeMap m_deviceMap;
  CObservedNodeMap m_streamMap;
  NodeAccessHook m_fnHook;
  std::unique_ptr<CShadingCorrectionPro_PC> m_pProcess;
  std::vector<int32_t> m_listSignals;
  bool m_bPlainSignals = true;
  std::mutex m_mutex; // guards what the frame thread uses
  FnFrame m_fnFrame;
  bool m_bStreaming = false;
  std::atomic<int> m_nFrames{0};
  std::unique_ptr<CFramePump> m_pPump;
};
