/// \file
/// The workflow on a camera whose frames the host corrects.
#pragma once

#include <QString>

#include "host/headless/iworkflow.h"
#include "host/headless/workflowsession.h"
#include "quality/pairedstacks.h"

namespace ffc::host {

/// Cap on, dark field; cap off, bright field; execute; figures on fresh frames; coefficients to a file and
/// back; report.
///
/// Before and after are measured on the same exposures: each fresh frame as it came, and as ProcessImage
/// corrected it.
class CHostWorkflow final : public IWorkflow {
public:
  /// \param session outlives the workflow
  explicit CHostWorkflow(CWorkflowSession &session) : m_session(session) {}

  Result<> Run() override;
  QString GetSummary() const override;

private:
  /// One exposure, as it came and as it was corrected.
  struct SFramePair {
    std::vector<uint8_t> listRaw;
    std::vector<uint8_t> listCorrected;
  };

  Result<> AcquireDark();
  Result<> AcquireBright();
  Result<> Execute();
  Result<> Measure();
  Result<> MeasureScene(bool bLensCap, quality::CPairedStacks &stStacks);
  Result<> CollectPair(SFramePair &stPair);
  Result<> SaveFrames();
  Result<> CheckFile();
  Result<> CheckReloaded(const SFramePair &stReference);
  Result<> WriteResults();

  CWorkflowSession &m_session;
  quality::CPairedStacks m_stBright;
  quality::CPairedStacks m_stDark;
};

} // namespace ffc::host
