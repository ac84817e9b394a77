/// \file
/// From the camera through the plug-in to whoever looks at the frames.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <vector>

#include "camera/icamera.h"
#include "host/quality/report.h"
#include "pluginobject/iplugin.h"

/// A frame as it came and, when the plug-in wrote one, as it was corrected. Valid during the call only.
struct SProcessedFrame {
  const SCameraFrame *pRaw = nullptr;
  const void *pCorrected = nullptr; ///< of the raw frame's size; null when nobody wrote it
};

/// A frame kept for looking at.
struct SFrameCopy {
  std::vector<uint8_t> listBytes;
  uint32_t nWidth = 0;
  uint32_t nHeight = 0;
  uint32_t nPixelFormat = 0; ///< PFNC code
  bool bCorrected = false;
};

/// Passes every frame through ProcessImage, keeps the latest, counts, and hands out frames on request.
///
/// An output buffer is looked at only when the plug-in has set its flag: otherwise the raw frame stands for
/// the frame.
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

  /// Takes one frame. On one thread at a time: the camera's.
  void Receive(const SCameraFrame &stFrame);

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
  /// Of the corrected frames since the last reset.
  SThroughput GetThroughput() const;
  void ResetThroughput();

private:
  bool Correct(const SCameraFrame &stFrame, uint64_t &nNanoseconds);
  void KeepLatest(const SCameraFrame &stFrame, bool bCorrected);
  void Serve(const SProcessedFrame &stFrame);

  IPlugin *m_pPlugin = nullptr;
  FrameObserver m_fnObserver;
  std::vector<uint8_t> m_listOutput; ///< frame thread only

  mutable std::mutex m_mutex;
  std::condition_variable m_conditionServed;
  FrameSink m_fnSink;
  EWanted m_eWanted = EWanted::Any;
  uint32_t m_nMissing = 0;
  SFrameCopy m_stLatest;
  bool m_bLatestIsNew = false;
  uint64_t m_nReceived = 0;
  SThroughput m_stThroughput;
};
