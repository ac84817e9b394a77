/// \file
/// Frames from the stream to whoever keeps them, at the rate that he takes.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "host/viewer/framepipeline.h"
#include "platform/result.h"

namespace ffc::host {

struct SRecordedFrame {
  SFrameCopy stCopy;     ///< corrected where the plug-in corrected it
  uint64_t nFrameId = 0; ///< of the camera
  int64_t nTime = 0;     ///< of its arrival, milliseconds since 1970, universal time; 0: not known, nor is the number
};

/// What became of the frames from the first that was recorded to the last.
struct SRecordCounts {
  uint64_t nTaken = 0;   ///< got a place in the queue
  uint64_t nWritten = 0; ///< of these
  uint64_t nDropped = 0; ///< came while the queue was full: the disk is too slow
  uint64_t nMissing = 0; ///< never came: gaps in the frames' numbers

  uint64_t GetLost() const { return nDropped + nMissing; }
};

/// A queue of a limited size and a thread that writes. The stream's thread copies a frame and never waits.
class CFrameRecorder {
public:
  /// On the recorder's thread, one frame after the other.
  using FnWrite = std::function<Result<>(const SRecordedFrame &stFrame)>;

  struct SLimits {
    uint64_t nFrames = 1;                              ///< to be written
    bool bStopOnLoss = false;                          ///< take no more after the first that is lost
    std::size_t nQueueBytes = std::size_t{512} << 20U; ///< of frames that wait at most, but always one frame
  };

  CFrameRecorder(const SLimits &stLimits, FnWrite fnWrite);
  /// Writes what waits.
  ~CFrameRecorder();
  CFrameRecorder(const CFrameRecorder &) = delete;
  CFrameRecorder &operator=(const CFrameRecorder &) = delete;

  /// On the stream's thread. Frames beyond the number that is to be written are left alone.
  void Add(const SProcessedFrame &stFrame);
  /// Whether no more is taken: all are there, one was lost that must not be, or writing failed. From any thread.
  bool IsFull() const;
  /// Whether, besides, nothing waits to be written: Finish returns at once. From any thread.
  bool IsDone() const;
  /// From any thread.
  SRecordCounts GetCounts() const;
  /// Takes no more, waits until all that was taken is written, and ends the thread.
  /// \return the first failure to write; nothing was written after it
  Result<> Finish();
  /// The same, without what still waits.
  Result<> Discard();

private:
  bool IsFullLocked() const;
  bool HasPlaceLocked(std::size_t nSize) const;
  void NoteGap(uint64_t nFrameId);
  Result<> End(bool bDiscard);
  void Run();

  const SLimits m_stLimits;
  const FnWrite m_fnWrite;
  mutable std::mutex m_mutex;
  std::condition_variable m_work;
  std::deque<SRecordedFrame> m_listQueue;
  std::size_t m_nQueuedBytes = 0;
  std::vector<std::vector<uint8_t>> m_listSpare; ///< memory of frames that are written
  SRecordCounts m_stCounts;
  std::optional<uint64_t> m_nLastId;
  Result<> m_result;
  bool m_bFinishing = false;
  bool m_bDiscarding = false;
  std::thread m_thread;
};

} // namespace ffc::host
