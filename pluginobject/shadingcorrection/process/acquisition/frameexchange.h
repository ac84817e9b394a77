/// \file
/// Hands single frames from the thread that delivers them to an operation that waits for them.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>

#include "platform/criticalsection.h"
#include "platform/event.h"
#include "pluginobject/shadingcorrection/process/acquisition/framebuffer.h"

namespace ffc::process {

/// Milliseconds to wait for a frame: exposure / 1000 + 1000, in single precision, truncated.
/// \param fExposureTime microseconds
/// \return 0 for a result below 0 or not a number; at most 0xFFFFFFFE, since all ones would wait for ever
uint32_t GetFrameTimeout(float fExposureTime);

/// Request and ready signal, the acquisition buffer and the stop flag.
///
/// An operation on the user-interface thread allocates the buffer, requests a frame and waits; the frame
/// thread polls for the request, copies its frame and signals. The buffer has a lock of its own, held for
/// one copy or one use: a frame that comes late, twice or longer than the buffer never touches memory
/// that is freed, in use or not its own.
///
/// A request bears the mark of its generation, which the frame thread takes along with it. A frame that was
/// asked for before the requests began anew or were withdrawn, by an operation that gave up, is neither copied
/// nor counted by the next one. A frame that nobody asked for bears no mark and counts.
class CFrameExchange {
public:
  // User-interface thread.

  /// Takes a zeroed buffer of nSize bytes. \return false when there is no memory, or no frame can be so large
  bool AllocateBuffer(uint64_t nSize);
  /// The same with as much memory for the frame to be kept. \return 0, or -2
  [[nodiscard]] int32_t AllocateFrame(uint64_t nSize, CFrameBuffer &kept);
  /// Frees the buffer and withdraws the request, also from a frame that is on its way.
  void ReleaseBuffer();
  void ZeroBuffer();
  /// Gives the buffer with the received frame for another one, all zero, into which later frames go.
  /// \return how many bytes frames have touched, the rest being zero
  uint64_t SwapBuffer(CFrameBuffer &other);

  /// Forgets an earlier frame and asks for the first one.
  void BeginRequests();
  /// Asks for one more frame.
  void RequestFrame() { m_nPending = m_nGeneration.load(); }
  void ForgetFrame() { m_eventImageReady.Reset(); }
  void WithdrawRequest()
  {
    m_nPending = NO_REQUEST;
    ++m_nGeneration;
  }
  /// Waits for a frame: 0, -1017 when the stop flag is set (even if the frame came), -1009 when none came.
  [[nodiscard]] int32_t WaitFrame(uint32_t nTimeout);
  /// Asks for the first frame and waits for it.
  [[nodiscard]] int32_t TakeFrame(uint32_t nTimeout)
  {
    BeginRequests();
    return WaitFrame(nTimeout);
  }
  /// Takes nCount frames, one request at a time: fnUse(nIndex) works on each before the next one is asked for. Stops
  /// at the first failure, the wait's or fnUse's, and answers it.
  /// \param nTimeout milliseconds to wait for each frame
  [[nodiscard]] int32_t TakeFrames(uint32_t nTimeout, uint32_t nCount, const std::function<int32_t(uint32_t)> &fnUse);
  /// Waits for a frame, whatever the stop flag. \return true when it came
  bool WaitFrameReady(uint32_t nTimeout);

  /// Lets fnUse(const CFrameBuffer &) work on the received frame, which stays as it is meanwhile.
  template <class TUse>
  auto UseFrame(TUse fnUse)
  {
    const std::lock_guard<platform::CCriticalSection> lock(m_lockBuffer);
    return fnUse(static_cast<const CFrameBuffer &>(m_buffer));
  }

  // Frame thread.

  /// Copies a frame into the buffer, as much of it as fits; without a buffer or a frame does nothing.
  void ReceiveFrame(const void *pFrame, uint32_t nSize);
  void SetFrameReady();
  /// Polls and consumes the request: an EWaitResult.
  uint32_t PollRequest();
  void SetStopFlag(bool bStop) { m_bStop = bStop; }

private:
  static constexpr uint64_t NO_REQUEST = 0;

  bool IsInForce(uint64_t nRequest) const { return nRequest == NO_REQUEST || nRequest == m_nGeneration; }

  platform::CEvent m_eventImageReady;
  std::atomic<uint64_t> m_nGeneration{1};
  // Generations of requests: made and not polled yet (an auto-reset event that nobody waits for); polled, its frame not
  // signalled yet; of the frame that was signalled last.
  std::atomic<uint64_t> m_nPending{NO_REQUEST};
  std::atomic<uint64_t> m_nInHand{NO_REQUEST};
  std::atomic<uint64_t> m_nReady{NO_REQUEST};
  std::atomic<bool> m_bStop{false};
  platform::CCriticalSection m_lockBuffer;
  CFrameBuffer m_buffer;
  uint64_t m_nWritten = 0; // bytes of the buffer that frames have touched
};

} // namespace ffc::process
