/// \file
/// The workflow on a camera whose correction the plug-in does not know.
#pragma once

#include <QString>

#include "host/headless/iworkflow.h"
#include "host/headless/workflowsession.h"

namespace ffc::host {

/// The dialog comes up with every control disabled, and the stream runs on.
class CInertWorkflow final : public IWorkflow {
public:
  /// \param session outlives the workflow
  explicit CInertWorkflow(CWorkflowSession &session) : m_session(session) {}

  Result<> Run() override;
  QString GetSummary() const override;

private:
  Result<> OpenDialogWhileStreaming();
  Result<> CheckControls();
  Result<> CheckStream();
  Result<> WriteResults();

  CWorkflowSession &m_session;
};

} // namespace ffc::host
