/// \file
/// What stands before the lens of a software camera.
#pragma once

#include <algorithm>
#include <atomic>

#include "camera/iscenecontrol.h"

namespace ffc::camera {

/// One moment's scene.
struct SScene {
  bool bLensCapOn = false;
  ISceneControl::EScene eScene = ISceneControl::EScene::Target;
  ISceneControl::EPurpose ePurpose = ISceneControl::EPurpose::Acquisition;
  double dIllumination = 1.0; ///< light of the lamp, 1 as made

  bool operator==(const SScene &stOther) const
  {
    return bLensCapOn == stOther.bLensCapOn && eScene == stOther.eScene && ePurpose == stOther.ePurpose &&
           dIllumination == stOther.dIllumination;
  }
};

/// Set on the host's thread, read on the camera's.
class CSceneState final : public ISceneControl {
public:
  explicit CSceneState(bool bCanArrange = true) : m_bCanArrange(bCanArrange) {}

  void SetLensCap(bool bCovered) override { m_bLensCapOn = bCovered; }
  bool IsLensCapOn() const override { return m_bLensCapOn; }
  bool CanArrange() const override { return m_bCanArrange; }
  void SetScene(EScene eScene) override { m_eScene = eScene; }
  void SetIllumination(double dLevel) override { m_dIllumination = std::clamp(dLevel, 0.0, 2.0); }
  void SetPurpose(EPurpose ePurpose) override { m_ePurpose = ePurpose; }

  SScene Get() const { return {m_bLensCapOn, m_eScene, m_ePurpose, m_dIllumination}; }

private:
  bool m_bCanArrange;
  std::atomic<bool> m_bLensCapOn{false};
  std::atomic<EScene> m_eScene{EScene::Target};
  std::atomic<EPurpose> m_ePurpose{EPurpose::Acquisition};
  std::atomic<double> m_dIllumination{1.0};
};

} // namespace ffc::camera
