/// \file
/// From the camera through the plug-in to whoever looks at the frames.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "camera/icamera.h"
#include "pluginobject/iplugin.h"

namespace ffc::host {

/// A frame as it came and, when the plug-in wrote one, as it was corrected. Valid during the call only.
struct SProcessedFrame {
  const camera::SCameraFrame *pRaw = nullptr;
  const void *pCorrected = nullptr; ///< of the raw frame's size; null when nobody wrote it
};

/// A frame kept for looking at.
struct SFrameCopy {
  std::vector<uint8_t> listBytes;
  uint32_t nWidth = 0;
  uint32_t nHeight = 0;
  uint32_t nPixelFormat = 0; ///< PFNC code
  bool bCorrected = false;
  int32_t nStatus = 0;              ///< what ProcessImage returned
  std::shared_ptr<SFrameCopy> pRaw; ///< a corrected frame as it came, where that is kept; null else
};

/// What became of the frames since the pipeline was made.
struct SFrameCounts {
  uint64_t nReceived = 0;
  uint64_t nCorrected = 0;
  uint64_t nLost = 0;        ///< camera frames that never came: gaps in their numbers
  uint64_t nOverwritten = 0; ///< kept for the display, and replaced before it took them
  uint64_t nCopiedBytes = 0; ///< by the pipeline itself
};

/// What went through ProcessImage and came back corrected.
struct SThroughput {
  uint64_t nFrames = 0;
  uint64_t nPixels = 0;
  uint64_t nNanoseconds = 0; ///< spent inside ProcessImage

  double GetFramesPerSecond() const { return PerSecond(static_cast<double>(nFrames)); }
  double GetMegapixelsPerSecond() const { return PerSecond(static_cast<double>(nPixels) / 1e6); }

private:
  double PerSecond(double dAmount) const
  {
    return nNanoseconds == 0 ? 0.0 : dAmount * 1e9 / static_cast<double>(nNanoseconds);
  }
};

/// Passes every frame through ProcessImage, keeps the latest, counts, and hands out frames on request.
///
/// A frame that has not one sample of the sensor for each pixel, such as RGB, is not handed to the plug-in.
/// An output buffer is looked at only when the plug-in has set its flag: otherwise the raw frame stands for
/// the frame. A raw frame is copied once, into the mailbox of the display; a corrected one never: its buffer
/// changes places with the mailbox's; what it was made of is copied on request. A display that is slow finds its
/// mailbox overwritten; the camera never waits.
class CFramePipeline {
public:
  enum class EWanted { Any, Corrected };
  /// Runs on the frame thread with the pipeline's lock held; it must not call the pipeline.
  using FrameSink = std::function<void(const SProcessedFrame &stFrame)>;
  /// Runs on the frame thread before each frame is processed.
  using FrameObserver = std::function<void()>;

  /// Only while no frames come. Null: frames pass uncorrected.
  void SetPlugin(IPlugin *pPlugin) { m_pPlugin = pPlugin; }
  /// Only while no frames come.
  void SetObserver(FrameObserver fnObserver) { m_fnObserver = std::move(fnObserver); }

  /// Keeps each corrected frame for the display as it came, too, which is one copy more.
  void KeepRaw(bool bKeep) { m_bKeepsRaw = bKeep; }

  /// Keeps the frames from the plug-in, which then waits for them until it gives up; they are shown all the same.
  void Withhold(bool bWithhold) { m_bWithheld = bWithhold; }

  /// Takes one frame. On one thread at a time: the camera's.
  void Receive(const camera::SCameraFrame &stFrame);

  /// Asks for the next nFrames frames; corrected ones only, or any. Replaces an earlier request.
  void Request(uint32_t nFrames, EWanted eWanted, FrameSink fnSink);
  /// Waits until the request is served.
  /// \return frames still missing: 0 when it is
  uint32_t WaitServed(uint32_t nMilliseconds);
  /// Drops the request; when it returns, its sink does not run and never will.
  void CancelRequest();

  /// The latest frame, corrected if the plug-in corrected it.
  /// \return false when no frame came since the last call
  bool TakeLatest(SFrameCopy &stCopy);

  uint64_t GetReceivedCount() const;
  SFrameCounts GetCounts() const;
  /// Of the corrected frames since the last reset.
  SThroughput GetThroughput() const;
  void ResetThroughput();

private:
  bool Correct(const camera::SCameraFrame &stFrame, int32_t &nStatus, uint64_t &nNanoseconds);
  void Count(const camera::SCameraFrame &stFrame, bool bCorrected, uint64_t nNanoseconds);
  void KeepLatest(const camera::SCameraFrame &stFrame, bool bCorrected, int32_t nStatus);
  void KeepLatestRaw(const camera::SCameraFrame &stFrame);
  void Serve(const SProcessedFrame &stFrame);

  IPlugin *m_pPlugin = nullptr;
  FrameObserver m_fnObserver;
  std::atomic<bool> m_bWithheld{false};
  std::atomic<bool> m_bKeepsRaw{false};
  std::vector<uint8_t> m_listOutput; ///< frame thread only

  mutable std::mutex m_mutex;
  std::condition_variable m_conditionServed;
  FrameSink m_fnSink;
  EWanted m_eWanted = EWanted::Any;
  uint32_t m_nMissing = 0;
  SFrameCopy m_stLatest;
  bool m_bLatestIsNew = false;
  SFrameCounts m_stCounts;
  std::optional<uint64_t> m_nLastFrameId;
  SThroughput m_stThroughput;
};

} // namespace ffc::host
