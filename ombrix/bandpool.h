/// \file
/// Splitting a frame among threads.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>

#include "ombrix/sharingjudge.h"
#include "platform/workerthread.h"

namespace ffc::ombrix {

/// Frames of fewer pixels are not split: waking a thread would cost more than it brings.
constexpr std::size_t SMALLEST_SPLIT_PIXELS = 4'000'000;
/// A band is a run of so many pixels, the last one of fewer. Short, so that no thread waits long for another's last.
constexpr std::size_t BAND_PIXELS = std::size_t{1} << 16;
constexpr uint32_t MAX_THREADS = 16;

/// How many threads work on a frame, the caller's among them: at most half the processors and 4, unless the user asks
/// for another number.
/// \param pWish a number from 1 to MAX_THREADS; null or anything else for no wish
uint32_t ChooseThreadCount(const char *pWish, uint32_t nProcessors) noexcept;

/// Threads that work on the bands of a frame together with the caller. They start with the first frame that is large
/// enough, and sleep between frames; a frame allocates nothing. Whoever comes while another's frame is under way works
/// alone, so that no call waits for another. Any thread may call.
class CBandPool {
public:
  /// Works on a run of a frame's pixels. Throws nothing.
  using FnBand = void (*)(const void *pContext, std::size_t nFirst, std::size_t nPixels);

  /// Starts a thread. \return false when the system has no more
  using FnStart = bool (*)(platform::CWorkerThread &thread, platform::CWorkerThread::FnWork fnWork, void *pContext);

  /// \param nThreads 1 to MAX_THREADS
  explicit CBandPool(uint32_t nThreads, FnStart fnStart = StartThread) noexcept
    : m_fnStart(fnStart), m_nThreads(nThreads)
  {
  }
  /// As many threads as the user or the machine says.
  /// \param fnPrepare called once, before the first thread starts
  explicit CBandPool(void (*fnPrepare)()) noexcept : m_fnPrepare(fnPrepare) {}
  ~CBandPool() { Close(); }
  CBandPool(const CBandPool &) = delete;
  CBandPool &operator=(const CBandPool &) = delete;

  /// Has every pixel of a frame worked on once; returns when all are done.
  /// \param nKind of work: frames of one kind and size take about the same time
  void Run(std::size_t nPixels, FnBand fnBand, const void *pContext, uintptr_t nKind = 0) noexcept;
  /// Waits for the frame under way and ends the threads. Later frames are worked on by their callers alone.
  void Close() noexcept;

private:
  using TClock = std::chrono::steady_clock;

  static constexpr std::size_t KINDS = 4;

  struct SFrame {
    FnBand fnBand;
    const void *pContext;
    std::size_t nPixels;
    std::size_t nShares;

    std::size_t CountBands() const { return (nPixels - 1) / BAND_PIXELS + 1; }
    /// Of one of the shares, and of nShares: one past the last.
    std::size_t GetFirstBand(std::size_t nShare) const { return CountBands() * nShare / nShares; }
  };

  /// A run of a frame's bands. Each thread begins with one of its own, for memory is read best in long runs, and helps
  /// with the others' afterwards.
  struct alignas(64) SShare {
    std::atomic<std::size_t> nNext{0};
  };

  /// What frames of one kind of work and one size taught.
  struct SKind {
    uintptr_t nKind = 0;
    std::size_t nPixels = 0;
    CSharingJudge judge;
  };

  bool HasWorkers() noexcept;
  CSharingJudge &FindJudge(uintptr_t nKind, std::size_t nPixels) noexcept;
  void Share(const SFrame &stFrame) noexcept;
  void Offer(const SFrame &stFrame) noexcept;
  void WaitForWorkers(TClock::duration patience) noexcept;
  std::size_t WorkOnBands(const SFrame &stFrame, std::size_t nOwnShare) noexcept;
  void WaitForFrames() noexcept;
  static void RunWorker(void *pPool);
  static bool StartThread(platform::CWorkerThread &thread, platform::CWorkerThread::FnWork fnWork, void *pContext);

  /// Held by the caller whose frame is split.
  std::mutex m_busy;
  void (*m_fnPrepare)() = nullptr;
  FnStart m_fnStart = StartThread;
  uint32_t m_nThreads = 0; ///< with the caller; 0 until the environment was asked
  bool m_bStarted = false;
  uint32_t m_nWorkers = 0;
  SKind m_aKinds[KINDS]; ///< several cameras may take turns
  std::size_t m_nNextKind = 0;
  platform::CWorkerThread m_aWorkers[MAX_THREADS - 1];

  /// Guards what follows.
  std::mutex m_lock;
  std::condition_variable m_wake;
  std::condition_variable m_done;
  SFrame m_stFrame = {};
  uint64_t m_nFrame = 0;      ///< counts frames
  bool m_bOpen = false;       ///< whether bands of it may be left
  std::size_t m_nEntered = 0; ///< workers that came to it
  bool m_bClosing = false;
  std::atomic<uint32_t> m_nWorking{0}; ///< workers within the frame; the lock is for its changes

  SShare m_aShares[MAX_THREADS];
};

} // namespace ffc::ombrix
