/// \file
/// What stands before the lens of a software camera.
#pragma once

#include <algorithm>
#include <atomic>
#include <mutex>
#include <optional>

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
  explicit CSceneState(bool bCanArrange = true, bool bCanCover = true)
    : m_bCanArrange(bCanArrange), m_bCanCover(bCanCover)
  {
  }

  bool CanCover() const override { return m_bCanCover; }
  void SetLensCap(bool bCovered) override { m_bLensCapOn = bCovered && m_bCanCover; }
  bool IsLensCapOn() const override { return m_bLensCapOn; }
  bool CanArrange() const override { return m_bCanArrange; }
  void SetScene(EScene eScene) override { m_eScene = eScene; }
  void SetIllumination(double dLevel) override { m_dIllumination = std::clamp(dLevel, 0.0, 2.0); }
  void SetPurpose(EPurpose ePurpose) override { m_ePurpose = ePurpose; }

  void HoldMoment(std::optional<uint64_t> nMoment) override
  {
    const std::lock_guard<std::mutex> lock(m_mutexExposure);
    m_nMoment = nMoment;
  }

  /// Held by the camera from exposing a frame to delivering it.
  std::unique_lock<std::mutex> LockExposure() { return std::unique_lock<std::mutex>(m_mutexExposure); }
  /// Number of the frame whose noise is exposed. Only with the lock.
  uint64_t GetNoiseId(uint64_t nFrameId) const { return m_nMoment ? HELD | *m_nMoment : nFrameId; }

  SScene Get() const { return {m_bLensCapOn, m_eScene, m_ePurpose, m_dIllumination}; }

private:
  static constexpr uint64_t HELD = uint64_t{1} << 40U; ///< apart from all frames that are exposed afresh

  bool m_bCanArrange;
  bool m_bCanCover;
  std::mutex m_mutexExposure;
  std::optional<uint64_t> m_nMoment;
  std::atomic<bool> m_bLensCapOn{false};
  std::atomic<EScene> m_eScene{EScene::Target};
  std::atomic<EPurpose> m_ePurpose{EPurpose::Acquisition};
  std::atomic<double> m_dIllumination{1.0};
};

} // namespace ffc::camera
