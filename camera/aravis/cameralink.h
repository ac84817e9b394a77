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
  uint64_t GetLostFrameCount() const override { return m_nLostFrames; }

  /// Tells the host, the first time.
  void MarkLost();
  void CountLostFrames(uint64_t nFrames) { m_nLostFrames += nFrames; }

private:
  std::atomic<bool> m_bLost{false};
  std::atomic<uint64_t> m_nLostFrames{0};
  std::mutex m_mutex; ///< held while the callback runs
  LostCallback m_fnLost;
};

} // namespace ffc::camera
