/// \file
/// Whether a real camera still answers.
#pragma once

#include <atomic>
#include <mutex>

#include "camera/icameralink.h"

namespace ffc::camera {

/// Shared by everything that talks to one camera. All operations from any thread.
class CCameraLink final : public ICameraLink {
public:
  bool IsLost() const override { return m_bLost; }
  void SetLostCallback(LostCallback fnLost) override;
  SFrameLosses GetLosses() const override;

  /// Runs the callback, the first time; later calls do nothing.
  void MarkLost();
  /// Another stream begins: its losses are added to those of the streams before.
  void BeginStream();
  /// \param stLosses of this stream, since its beginning
  void SetStreamLosses(const SFrameLosses &stLosses);

private:
  std::atomic<bool> m_bLost{false};
  mutable std::mutex m_mutexLosses;
  SFrameLosses m_stEarlier; ///< of the streams before
  SFrameLosses m_stStream;
  std::mutex m_mutex; ///< held while the callback runs
  LostCallback m_fnLost;
};

} // namespace ffc::camera
