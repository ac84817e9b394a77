/// \file
/// Waiting for frames while the user interface stays alive.
#pragma once

#include <functional>

#include <QString>

#include "host/viewer/framepipeline.h"

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

  /// Asked while waiting; a text ends the wait with it as the reason.
  void SetTroubleCheck(std::function<QString()> fnTrouble) { m_fnTrouble = std::move(fnTrouble); }

  /// \param fnSink takes each frame on the frame thread; false: it cannot use the frame, which ends the wait
  /// \return empty when nFrames frames were taken, else why not; the sink is not called any more
  QString Collect(uint32_t nFrames, CFramePipeline::EWanted eWanted,
                  std::function<bool(const SProcessedFrame &)> fnSink);

  /// Processes events until fnDone is true or the stall time is over.
  /// \return the last answer of fnDone
  bool WaitUntil(const std::function<bool()> &fnDone) const;

private:
  CFramePipeline &m_pipeline;
  uint32_t m_nStallMilliseconds;
  std::function<QString()> m_fnTrouble;
};

} // namespace ffc::host
