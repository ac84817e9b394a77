/// \file
/// The workflow on a camera that corrects its own frames.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include <QString>

#include "host/headless/featuresnapshot.h"
#include "host/headless/iworkflow.h"
#include "host/headless/steps.h"
#include "host/headless/workflowsession.h"
#include "quality/framestack.h"

namespace ffc::host {

/// Cap on, dark field (flat field only); cap off, bright field; execute; figures on the camera's own frames,
/// with the correction off and on; coefficients to the flash and to a file; the camera without power, and
/// again; the coefficients back from the flash, with figures, and from the file; report.
///
/// After opening the dialog and after each acquisition all features of the camera must be as they were before. Before
/// and after are measured on different exposures: the camera delivers a frame only once.
class CDeviceWorkflow final : public IWorkflow {
public:
  /// \param session outlives the workflow
  explicit CDeviceWorkflow(CWorkflowSession &session);

  Result<> Run() override;
  QString GetSummary() const override;

private:
  /// The bright and dark frames of one state of the correction.
  struct SMeasurement {
    quality::CFrameStack stBright;
    quality::CFrameStack stDark;
  };

  std::vector<SStep> ListSteps();
  Result<> AcquireDark();
  Result<> AcquireBright();
  Result<> RunUnchanged(const std::function<Result<>()> &fnAction);
  Result<> Execute();
  Result<> MeasureWithPreview(bool bPreview, const char *pKind, SMeasurement &stMeasurement);
  Result<> MeasureState(SMeasurement &stMeasurement, quality::SUniformity &stUniformity);
  Result<> MeasureScene(bool bLensCap, quality::CFrameStack &stStack);
  Result<> SaveFrames(const char *pKind);
  Result<> SaveToFlash();
  Result<> CyclePower();
  Result<> CheckStartsAsSaved(const CFeatureSnapshot &stSaved);
  Result<> LoadFromFlash();
  Result<> CheckDialogReloaded();
  Result<> CheckFlatness();
  Result<> LoadFromFile();
  Result<> WriteResults();

  Result<> CheckCorrection(bool bOn);
  Result<> ClearCoefficients();
  GenApi::INodeMap &GetNodeMap() { return *m_session.GetViewer().GetCamera().GetDeviceNodeMap(); }

  CWorkflowSession &m_session;
  bool m_bFlatField; ///< else vignetting
  SMeasurement m_stBefore;
  SMeasurement m_stAfter;
};

} // namespace ffc::host
