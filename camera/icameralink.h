/// \file
/// The connection to a camera that can be unplugged.
#pragma once

#include <cstdint>
#include <functional>

#include "camera/framelosses.h"

namespace ffc::camera {

/// Tells when a camera is gone. What is lost stays lost: a camera that is back is opened anew.
class ICameraLink {
public:
  virtual ~ICameraLink() = default;

  /// Runs once, on any thread, when the camera is found to be lost; it must not call the camera and may only pass
  /// the news on.
  using LostCallback = std::function<void()>;

  /// From any thread. Every access to a lost camera fails at once.
  virtual bool IsLost() const = 0;
  /// Host's thread; null: nobody is told. When it returns, the callback before does not run and never will.
  virtual void SetLostCallback(LostCallback fnLost) = 0;
  /// Since the camera was opened. From any thread.
  virtual SFrameLosses GetLosses() const = 0;
};

} // namespace ffc::camera
