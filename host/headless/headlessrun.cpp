#include "host/headless/headlessrun.h"

#include <utility>

#include "host/headless/deviceworkflow.h"
#include "host/headless/hostworkflow.h"
#include "host/headless/inertworkflow.h"

namespace ffc::host {

using camera::ECorrectionMode;

namespace {

std::unique_ptr<IWorkflow> MakeWorkflow(ECorrectionMode eMode, CWorkflowSession &session)
{
  switch (eMode) {
  case ECorrectionMode::None: return std::make_unique<CHostWorkflow>(session);
  case ECorrectionMode::Unknown: return std::make_unique<CInertWorkflow>(session);
  default: return std::make_unique<CDeviceWorkflow>(session);
  }
}

} // namespace

CHeadlessRun::CHeadlessRun(const SHeadlessOptions &stOptions, CameraFactory fnOpenCamera, CProgressLine &progress)
  : m_session(stOptions, std::move(fnOpenCamera), progress),
    m_pWorkflow(MakeWorkflow(stOptions.stCamera.eMode, m_session))
{
}

Result<> CHeadlessRun::Run()
{
  Result<> result = m_pWorkflow->Run();
  m_session.StopStream();
  m_session.GetProgress().Clear();
  return result;
}

} // namespace ffc::host
