/// \file
/// Waiting for frames while the user interface stays alive.
#pragma once

#include <functional>

#include "host/viewer/framepipeline.h"
#include "platform/result.h"

namespace ffc::host {

/// Asks a pipeline for frames and waits for them, with events processed meanwhile.
///
/// Used on the user-interface thread.
class CFrameCollector {
public:
  /// \param nStallMilliseconds give up when no wanted frame comes for so long
  explicit CFrameCollector(CFramePipeline &pipeline, uint32_t nStallMilliseconds = 20000)
    : m_pipeline(pipeline), m_nStallMilliseconds(nStallMilliseconds)
  {
  }

  /// Asked while waiting; a failure ends the wait.
  void SetCheck(std::function<Result<>()> fnCheck) { m_fnCheck = std::move(fnCheck); }

  /// \param fnSink takes each frame on the frame thread; false: it cannot use the frame, which ends the wait
  /// \return why fewer than nFrames frames were taken; the sink is not called any more
  Result<> Collect(uint32_t nFrames, CFramePipeline::EWanted eWanted,
                   std::function<bool(const SProcessedFrame &)> fnSink);

  /// Frames that the last Collect has taken so far.
  uint32_t GetTakenCount() const { return m_nTaken; }

  /// Processes events until fnDone is true or the stall time is over.
  /// \return the last answer of fnDone
  bool WaitUntil(const std::function<bool()> &fnDone) const;

private:
  CFramePipeline &m_pipeline;
  uint32_t m_nStallMilliseconds;
  uint32_t m_nTaken = 0;
  std::function<Result<>()> m_fnCheck;
};

} // namespace ffc::host
