#include "host/viewer/framecollector.h"

#include <atomic>
#include <utility>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>

namespace ffc::host {
namespace {

constexpr uint32_t POLL_MS = 10;

} // namespace

Result<> CFrameCollector::Collect(uint32_t nFrames, CFramePipeline::EWanted eWanted,
                                  std::function<bool(const SProcessedFrame &)> fnSink)
{
  std::atomic<bool> bRefused{false};
  m_pipeline.Request(nFrames, eWanted, [&bRefused, &fnSink](const SProcessedFrame &stFrame) {
    if (!bRefused && !fnSink(stFrame)) {
      bRefused = true;
    }
  });
  QElapsedTimer timer;
  timer.start();
  Result<> result;
  uint32_t nMissing = nFrames;
  m_nTaken = 0;
  while (result) {
    const uint32_t nNow = m_pipeline.WaitServed(POLL_MS);
    m_nTaken = nFrames - nNow;
    QCoreApplication::processEvents();
    if (bRefused) {
      result = Failure("a frame of another size came, or memory is short");
    } else if (nNow == 0) {
      break;
    } else if (m_fnCheck) {
      result = m_fnCheck();
    }
    if (nNow != nMissing) {
      nMissing = nNow;
      timer.restart();
    } else if (result && timer.elapsed() > static_cast<qint64>(m_nStallMilliseconds)) {
      result = Failure(QStringLiteral("no %1frame came for %2 s, %3 of %4 were there")
                         .arg(eWanted == CFramePipeline::EWanted::Corrected ? "corrected " : "")
                         .arg(m_nStallMilliseconds / 1000.0)
                         .arg(nFrames - nMissing)
                         .arg(nFrames));
    }
  }
  m_pipeline.CancelRequest();
  return result;
}

bool CFrameCollector::WaitUntil(const std::function<bool()> &fnDone) const
{
  QElapsedTimer timer;
  timer.start();
  bool bDone = fnDone();
  while (!bDone && timer.elapsed() <= static_cast<qint64>(m_nStallMilliseconds)) {
    QThread::msleep(POLL_MS);
    QCoreApplication::processEvents();
    bDone = fnDone();
  }
  return bDone;
}

} // namespace ffc::host
