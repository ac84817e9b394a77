/// \file
/// The whole workflow through the plug-in's own dialog, without a person.
#pragma once

#include <memory>
#include <utility>

#include <QString>

#include "host/headless/iworkflow.h"
#include "host/headless/progressline.h"
#include "host/headless/workflowsession.h"
#include "host/options/hostoptions.h"

namespace ffc::host {

/// The workflow that fits the camera, run once: to its end, or to the first step that fails. User-interface
/// thread.
class CHeadlessRun {
public:
  /// \param fnOpenCamera makes a camera whose scene can be set by software, or by an attendant
  CHeadlessRun(const SHeadlessOptions &stOptions, CameraFactory fnOpenCamera, CProgressLine &progress);

  /// For a camera whose scene software cannot set. Before Run.
  void SetLensAttendant(LensAttendant fnAttend) { m_session.SetLensAttendant(std::move(fnAttend)); }

  /// \return on failure one line: the step and why it failed
  Result<> Run();
  /// Figures and notes; complete after a run that succeeded.
  const quality::SReport &GetReport() const { return m_session.GetReport(); }
  /// What to print after a run that succeeded; ends with a line feed.
  QString GetSummary() const { return m_pWorkflow->GetSummary(); }

  /// Whether the figures keep the limits that were stated; also when none was.
  bool IsWithinLimit() const { return m_session.IsWithinLimit(); }

private:
  CWorkflowSession m_session;
  std::unique_ptr<IWorkflow> m_pWorkflow;
};

} // namespace ffc::host
