/// \file
/// Frames on a thread of their own.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <thread>
#include <vector>

namespace ffc::test {

/// Calls a function with one frame after the other, on its own thread, until it is stopped or destroyed.
///
///     CFramePump pump(
///       [&](std::vector<uint8_t> &listFrame, uint64_t nIndex) { listFrame = camera.MakeFrame(100); },
///       [&](const std::vector<uint8_t> &listFrame) {
///         if (process.WaitImageRequest() == 0) {
///           process.ReceiveImage(listFrame.data(), static_cast<uint32_t>(listFrame.size()));
///           process.SetImageReady();
///         }
///       });
class CFramePump {
public:
  /// Fills a frame; the buffer keeps size and content from call to call. Runs on the pump's thread.
  using FnFill = std::function<void(std::vector<uint8_t> &listFrame, uint64_t nIndex)>;
  /// Takes a frame. Runs on the pump's thread.
  using FnDeliver = std::function<void(const std::vector<uint8_t> &listFrame)>;

  /// Starts at once. Neither function may throw.
  /// \param dFramesPerSecond 0 delivers as fast as it goes
  CFramePump(FnFill fnFill, FnDeliver fnDeliver, double dFramesPerSecond = 1000.0);
  ~CFramePump();
  CFramePump(const CFramePump &) = delete;
  CFramePump &operator=(const CFramePump &) = delete;

  /// From the next frame on; from any thread.
  void SetRate(double dFramesPerSecond) { m_dFramesPerSecond = dFramesPerSecond; }
  /// Returns when no function runs any more.
  void Stop();
  /// Frames that were delivered.
  uint64_t GetFrameCount() const { return m_nFrameCount; }

private:
  void Run();

  FnFill m_fnFill;
  FnDeliver m_fnDeliver;
  std::atomic<double> m_dFramesPerSecond;
  std::atomic<bool> m_bStop{false};
  std::atomic<uint64_t> m_nFrameCount{0};
  std::thread m_thread;
};

} // namespace ffc::test
