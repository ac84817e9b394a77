/// \file
/// Cameras whose scene can be set by software.
#pragma once

#include <cstdint>
#include <optional>

#include "camera/icamera.h"

namespace ffc::camera {

/// What stands before the lens of a camera whose scene can be set by software.
///
/// Called from the host's thread; takes effect with the next exposed frame.
class ISceneControl {
public:
  virtual ~ISceneControl() = default;

  enum class EScene { Target, TestChart }; ///< an evenly lit target; a chart with structure
  enum class EPurpose { Acquisition, Measurement };

  /// Whether the lens can be covered: a recording may have no dark frames.
  virtual bool CanCover() const { return true; }
  virtual void SetLensCap(bool bCovered) = 0;
  virtual bool IsLensCapOn() const = 0;
  /// Whether target, chart and lamp can be chosen; recorded frames show what they show.
  virtual bool CanArrange() const = 0;
  virtual void SetScene(EScene eScene) = 0;
  /// \param dLevel light of the lamp, 0 to 2; 1 is what the camera was made for
  virtual void SetIllumination(double dLevel) = 0;
  /// Recorded frames are split in two halves, one per purpose, so that no figure is taken on frames
  /// that made the coefficients. A camera that exposes afresh ignores it.
  virtual void SetPurpose(EPurpose ePurpose) = 0;
  /// Makes the noise of all frames exposed from now on that of one moment, so that it does not depend on which of them
  /// somebody takes. When it returns, no frame exposed before is on its way. A camera that exposes no noise of its own
  /// ignores it.
  /// \param nMoment none: frames are exposed afresh again
  virtual void HoldMoment(std::optional<uint64_t> nMoment) { (void)nMoment; }
};

/// What a camera is besides, when software can change its scene.
class ISceneOwner {
public:
  virtual ~ISceneOwner() = default;

  /// Of the camera, and as long there.
  virtual ISceneControl *GetSceneControl() = 0;
};

/// Null for a camera whose scene software cannot change.
inline ISceneControl *FindSceneControl(ICamera &camera)
{
  auto *pOwner = dynamic_cast<ISceneOwner *>(&camera);
  return pOwner == nullptr ? nullptr : pOwner->GetSceneControl();
}

/// Whether there can be dark frames: a lens that software cannot cover is covered by somebody.
inline bool CanBeCovered(const ISceneControl *pScene)
{
  return pScene == nullptr || pScene->CanCover();
}

} // namespace ffc::camera
