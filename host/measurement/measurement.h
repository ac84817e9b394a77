/// \file
/// Measuring how flat the image is, on fresh frames.
#pragma once

#include <memory>
#include <optional>

#include <QString>

#include "host/measurement/coefficientorigin.h"
#include "host/measurement/freshframes.h"
#include "host/viewer/viewer.h"
#include "quality/qualityresult.h"

namespace ffc::host {

/// Who arranges the scene and shows the user how far it is. User-interface thread.
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

/// Takes frames from the running stream, with events processed meanwhile; the figures are computed on another thread.
/// The scene is left as the last step needed it. One at a time.
class CMeasurement {
public:
  using QualityResult = std::shared_ptr<const quality::SResult>;

  /// \param stOrigin of the coefficients in use
  CMeasurement(CViewer &viewer, IMeasurementGuide &guide, SCoefficientOrigin stOrigin);

  /// Before and after, on dark and bright frames. Where the host corrects, both come from the same exposures; a camera
  /// that corrects itself is switched off and on for it, and left as it was. Where nobody corrects there is only a
  /// before.
  /// \param bPreview the plug-in was told to correct on the host
  /// \return null when the user cancelled
  Result<QualityResult> Measure(bool bPreview);
  /// A fresh flat with the coefficients in use.
  /// \param bPreview as in Measure
  /// \return its shading in percent; none when the user cancelled
  Result<std::optional<double>> MeasureDrift(bool bPreview);

private:
  /// The frames of one scene.
  struct SScene {
    quality::CPairedStacks stPairs; ///< where the host corrects
    quality::CFrameStack stBefore;  ///< where the camera does
    quality::CFrameStack stAfter;
  };

  /// What the user is told while frames are collected.
  CFrameCollector &BeginStep(const QString &strStep, uint32_t nFrames);
  Result<> ReadFormat(bool bCorrected);
  bool CanCover() const;
  Result<> TakeScene(bool bCovered, SScene &stScene);
  Result<> TakeByCamera(const QString &strStep, const char *pEntry, quality::CFrameStack &stStack);
  Result<> SkipOldFrames();
  Result<> SwitchCamera(const char *pEntry);
  Result<> Arrange(bool bCovered);
  Failure Cancel();
  std::shared_ptr<quality::SResult> Evaluate(const SScene &stDark, const SScene &stBright);
  quality::SFigureStacks GetStacks(const SScene &stDark, const SScene &stBright) const;
  void CheckBelonging(const quality::CFrameStack &stRaw, quality::SReport &stReport) const;
  void DescribeStream(quality::SResult &stResult) const;
  void DescribeFrames(quality::SReport &stReport) const;
  void DescribeCoefficients(quality::SReport &stReport) const;

  CViewer &m_viewer;
  IMeasurementGuide &m_guide;
  SCoefficientOrigin m_stOrigin;
  ffc::host::CFrameCollector m_collector;
  bool m_bByCamera;
  bool m_bBaseline = false; ///< nobody corrects
  bool m_bCancelled = false;
  SStreamFormat m_stFormat;
  QString m_strStep;
  uint32_t m_nTotal = 0;
};

} // namespace ffc::host
