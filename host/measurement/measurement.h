/// \file
/// Measuring how flat the image is, on fresh frames.
#pragma once

#include <atomic>
#include <functional>
#include <memory>

#include <QString>

#include "host/viewer/framecollector.h"
#include "host/viewer/viewer.h"
#include "quality/pairedstacks.h"
#include "quality/qualityresult.h"

namespace ffc::host {

/// Fresh frames of each scene that a figure is taken on.
constexpr uint32_t QUALITY_FRAMES = 16;

/// Who arranges the scene and tells the user how far it is. User-interface thread.
class IMeasurementGuide {
public:
  virtual ~IMeasurementGuide() = default;

  /// Covers or uncovers the lens, or has the user do it.
  /// \return false when the user does not want to go on
  virtual bool ArrangeScene(bool bCovered) = 0;
  /// Also called while nothing moves. nTotal 0: nobody knows how long it takes.
  virtual void ShowProgress(const QString &strStep, uint32_t nDone, uint32_t nTotal) = 0;
  virtual bool IsCancelled() const = 0;
};

/// What a measurement came to: a result, or why there is none. A cancelled one has neither.
struct SMeasured {
  std::shared_ptr<const quality::SResult> pResult;
  QString strError;
};

struct SDriftMeasured {
  double dShadingPercent = 0;
  bool bCancelled = false;
  QString strError;
};

/// Takes frames from the running stream, with events processed meanwhile; the figures are computed on another thread.
/// The scene is left as the last step needed it. One at a time.
class CMeasurement {
public:
  CMeasurement(CViewer &viewer, IMeasurementGuide &guide);

  /// Before and after, on dark and bright frames. Where the host corrects, both come from the same exposures; a camera
  /// that corrects itself is switched off and on for it, and left as it was.
  SMeasured Measure();
  /// A fresh flat with the coefficients in use.
  SDriftMeasured MeasureDrift();

private:
  struct SStacks {
    quality::CPairedStacks stPairs; ///< where the host corrects
    quality::CFrameStack stBefore;  ///< where the camera does
    quality::CFrameStack stAfter;
    const quality::CFrameStack &GetBefore(bool bByCamera) const { return bByCamera ? stBefore : stPairs.GetRaw(); }
    const quality::CFrameStack &GetAfter(bool bByCamera) const { return bByCamera ? stAfter : stPairs.GetCorrected(); }
  };

  QString ReadFormat();
  QString TakeScene(bool bCovered, SStacks &stStacks);
  QString TakePairs(const QString &strStep, SStacks &stStacks);
  QString TakeByCamera(const QString &strStep, const char *pEntry, quality::CFrameStack &stStack);
  QString Collect(const QString &strStep, uint32_t nFrames, CFramePipeline::EWanted eWanted,
                  std::function<bool(const SProcessedFrame &)> fnSink);
  QString SkipOldFrames();
  QString SwitchCamera(const char *pEntry);
  std::shared_ptr<quality::SResult> Evaluate(const SStacks &stDark, const SStacks &stBright);
  void FillReport(quality::SReport &stReport) const;

  CViewer &m_viewer;
  IMeasurementGuide &m_guide;
  ffc::host::CFrameCollector m_collector;
  bool m_bByCamera;
  const SSensorFormat *m_pFormat = nullptr;
  uint32_t m_nWidth = 0;
  uint32_t m_nHeight = 0;
  QString m_strStep;
  uint32_t m_nTotal = 0;
  std::atomic<uint32_t> m_nDone{0};
};

} // namespace ffc::host
