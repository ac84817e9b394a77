#include "host/headless/headlessrun.h"

#include <utility>

#include "host/headless/devicestory.h"
#include "host/headless/hoststory.h"
#include "host/headless/inertstory.h"

namespace ffc::host {
namespace {

std::unique_ptr<IStory> MakeStory(ECorrectionMode eMode, CBench &bench)
{
  switch (eMode) {
  case ECorrectionMode::None: return std::make_unique<CHostStory>(bench);
  case ECorrectionMode::Unknown: return std::make_unique<CInertStory>(bench);
  default: return std::make_unique<CDeviceStory>(bench);
  }
}

} // namespace

CHeadlessRun::CHeadlessRun(const SHeadlessOptions &stOptions, CameraFactory fnOpenCamera, CProgressLine &progress)
  : m_bench(stOptions, std::move(fnOpenCamera), progress), m_pStory(MakeStory(stOptions.stCamera.eMode, m_bench))
{
}

Result<> CHeadlessRun::Run()
{
  const Result<> result = m_pStory->Run();
  m_bench.StopStream();
  m_bench.GetProgress().Clear();
  return result;
}

} // namespace ffc::host
