/// \file
/// Frames on their way from the camera's thread to a file.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

#include "host/viewer/framepipeline.h"
#include "platform/result.h"

namespace ffc::host {

/// Hands frames over to a thread of its own, so that the camera never waits for a disk. What the disk is too slow for
/// is missed, and counted.
class CFrameQueue {
public:
  using FnWrite = std::function<Result<>(const SFrameCopy &stFrame)>;

  /// \param fnWrite runs on the queue's thread, one frame at a time; not again after a failure
  explicit CFrameQueue(FnWrite fnWrite);
  ~CFrameQueue();

  /// On the camera's thread: copies the frame, corrected where it is.
  void Push(const SProcessedFrame &stFrame);

  uint32_t GetWritten() const;
  uint32_t GetMissed() const;
  bool HasFailed() const;
  /// Ends the thread, without what is still queued.
  /// \return why writing failed, if it did
  Result<> Finish();

private:
  void Run();

  FnWrite m_fnWrite;
  mutable std::mutex m_mutex; ///< guards what follows
  std::condition_variable m_condition;
  std::deque<SFrameCopy> m_listWaiting;
  std::size_t m_nWaitingBytes = 0;
  uint32_t m_nWritten = 0;
  uint32_t m_nMissed = 0;
  bool m_bEnd = false;
  Result<> m_result;
  std::thread m_thread; ///< last: it uses all of it
};

} // namespace ffc::host
