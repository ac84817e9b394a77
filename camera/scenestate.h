/// \file
/// What stands before the lens of a software camera.
#pragma once

#include <atomic>

#include "camera/icamera.h"

/// One moment's scene.
struct SScene {
  bool bLensCapOn = false;
  ISceneControl::EScene eScene = ISceneControl::EScene::Target;
  ISceneControl::EPurpose ePurpose = ISceneControl::EPurpose::Acquisition;

  bool operator==(const SScene &stOther) const
  {
    return bLensCapOn == stOther.bLensCapOn && eScene == stOther.eScene && ePurpose == stOther.ePurpose;
  }
};

/// Set on the host's thread, read on the camera's.
class CSceneState final : public ISceneControl {
public:
  void SetLensCap(bool bCovered) override { m_bLensCapOn = bCovered; }
  bool IsLensCapOn() const override { return m_bLensCapOn; }
  void SetScene(EScene eScene) override { m_eScene = eScene; }
  void SetPurpose(EPurpose ePurpose) override { m_ePurpose = ePurpose; }

  SScene Get() const { return {m_bLensCapOn, m_eScene, m_ePurpose}; }

private:
  std::atomic<bool> m_bLensCapOn{false};
  std::atomic<EScene> m_eScene{EScene::Target};
  std::atomic<EPurpose> m_ePurpose{EPurpose::Acquisition};
};
