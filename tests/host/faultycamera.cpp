#include "tests/host/faultycamera.h"

#include <utility>

#include "camera/iscenecontrol.h"
#include "camera/software/simulated/simulatedcamera.h"

namespace ffc::host {

using camera::CreateSimulatedCamera;
using camera::ECorrectionMode;
using camera::FindSceneControl;
using camera::ICameraLink;
using camera::ISceneControl;
using camera::SCameraFrame;
using camera::SSimulatedCameraOptions;

/// A wire that a test cuts. Nobody is told, only asked.
class CFaultyCamera::CLink final : public ICameraLink {
public:
  explicit CLink(const SFaults &stFaults) : m_pLost(stFaults.pLost), m_bUnusableFrames(stFaults.bUnusableFrames) {}

  bool IsLost() const override { return *m_pLost; }
  void SetLostCallback(LostCallback) override {}
  camera::SFrameLosses GetLosses() const override
  {
    camera::SFrameLosses stLosses;
    stLosses.nUnusable = m_bUnusableFrames ? ++m_nUnusable : 0;
    return stLosses;
  }

private:
  std::shared_ptr<std::atomic<bool>> m_pLost;
  bool m_bUnusableFrames;
  mutable uint64_t m_nUnusable = 0;
};

/// Passes everything on but the lens cap.
class CFaultyCamera::CStuckCap final : public ISceneControl {
public:
  explicit CStuckCap(ISceneControl &scene) : m_scene(scene) { m_scene.SetLensCap(true); }

  void SetLensCap(bool) override {}
  bool IsLensCapOn() const override { return m_scene.IsLensCapOn(); }
  bool CanArrange() const override { return m_scene.CanArrange(); }
  void SetIllumination(double dLevel) override { m_scene.SetIllumination(dLevel); }
  void SetScene(EScene eScene) override { m_scene.SetScene(eScene); }
  void SetPurpose(EPurpose ePurpose) override { m_scene.SetPurpose(ePurpose); }

private:
  ISceneControl &m_scene;
};

CFaultyCamera::CFaultyCamera(const std::string &strPixelFormat, const SFaults &stFaults, ECorrectionMode eMode)
  : m_stFaults(stFaults)
{
  SSimulatedCameraOptions stOptions;
  stOptions.strPixelFormat = strPixelFormat;
  stOptions.nWidth = 64;
  stOptions.nHeight = 64;
  stOptions.dFrameRate = 200;
  stOptions.eMode = eMode;
  m_pCamera = CreateSimulatedCamera(stOptions).GetValue();
  if (m_stFaults.pLost != nullptr) {
    m_pLink = std::make_unique<CLink>(m_stFaults);
  }
  if (m_stFaults.bLensCapIsStuck) {
    m_pStuckCap = std::make_unique<CStuckCap>(*FindSceneControl(*m_pCamera));
  }
}

CFaultyCamera::~CFaultyCamera() = default;

void CFaultyCamera::SetFrameCallback(FrameCallback fnCallback)
{
  m_pCamera->SetFrameCallback(m_stFaults.bDeliversNothing ? FrameCallback([](const SCameraFrame &) {}) : fnCallback);
}

ffc::Result<> CFaultyCamera::Start()
{
  return m_stFaults.bRefusesToStart ? ffc::Failure("the cable is out") : m_pCamera->Start();
}

ISceneControl *CFaultyCamera::GetSceneControl()
{
  if (m_stFaults.bHasNoSceneControl) {
    return nullptr;
  }
  return m_pStuckCap ? m_pStuckCap.get() : FindSceneControl(*m_pCamera);
}

} // namespace ffc::host
