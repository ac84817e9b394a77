/// \file
/// The thread that delivers a camera's frames.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <thread>

#include "platform/result.h"

namespace ffc::camera {

/// Calls "deliver" at the camera's rate, or once per trigger, on a thread of its own.
///
/// No lock is held while a callback runs. Start and Stop are called by one thread at a time, which must
/// not be the stream's own; the rest may come from any.
class CFrameStreamer {
public:
  struct STiming {
    std::chrono::nanoseconds nPeriod{0}; ///< least distance of two frames that run free
    bool bTriggered = false;             ///< a frame per trigger instead
  };
  using TimingQuery = std::function<STiming()>;
  using Delivery = std::function<void()>;

  /// \param fnTiming asked before each frame and after each Wake()
  CFrameStreamer(TimingQuery fnTiming, Delivery fnDeliver);
  ~CFrameStreamer();
  CFrameStreamer(const CFrameStreamer &) = delete;
  CFrameStreamer &operator=(const CFrameStreamer &) = delete;

  /// \return why there is no thread. Does nothing when it runs.
  Result<> Start();
  /// When it returns no delivery runs and none will. Does nothing when stopped.
  void Stop();
  bool IsStreaming() const { return m_bStreaming; }

  /// One frame, when the stream runs triggered; triggers before Start are forgotten.
  void Trigger();
  /// The timing has changed: ask for it again.
  void Wake();

private:
  using Clock = std::chrono::steady_clock;

  void Run();
  bool WaitForTurn(const STiming &stTiming, uint64_t nWakeCount);

  TimingQuery m_fnTiming;
  Delivery m_fnDeliver;
  std::thread m_thread;
  std::atomic<bool> m_bStreaming{false};
  Clock::time_point m_tNext; ///< the stream thread's own

  std::mutex m_mutex; ///< guards what follows
  std::condition_variable m_condition;
  bool m_bStop = false;
  uint64_t m_nTriggers = 0;
  uint64_t m_nWakeCount = 0;
};

} // namespace ffc::camera
