/// \file
/// A camera that goes wrong in a chosen way.
#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "camera/correctionmode.h"
#include "camera/icamera.h"
#include "camera/icameralink.h"
#include "camera/iscenecontrol.h"

namespace ffc::host {

/// A small simulated camera, with faults.
class CFaultyCamera : public camera::ICamera, public camera::ISceneOwner {
public:
  struct SFaults {
    bool bRefusesToStart = false;
    bool bDeliversNothing = false;
    bool bUnusableFrames = false; ///< one more each time that somebody asks, with pLost
    bool bHasNoSceneControl = false;
    bool bLensCapIsStuck = false; ///< on, whatever the host does
    /// When not null: whether the camera has been unplugged.
    std::shared_ptr<std::atomic<bool>> pLost;
  };

  /// \param strPixelFormat PFNC name; 64 x 64 pixels
  CFaultyCamera(const std::string &strPixelFormat, const SFaults &stFaults,
                camera::ECorrectionMode eMode = camera::ECorrectionMode::None);
  ~CFaultyCamera() override;

  std::string GetDisplayName() const override { return m_pCamera->GetDisplayName(); }
  GenApi::INodeMap *GetOutputNodeMap() override { return m_pCamera->GetOutputNodeMap(); }
  GenApi::INodeMap *GetStreamNodeMap() override { return m_pCamera->GetStreamNodeMap(); }
  GenApi::INodeMap *GetDeviceNodeMap() override { return m_pCamera->GetDeviceNodeMap(); }
  void SetFrameCallback(FrameCallback fnCallback) override;
  ffc::Result<> Start() override;
  void Stop() override { m_pCamera->Stop(); }
  bool IsStreaming() const override { return m_pCamera->IsStreaming(); }
  camera::ISceneControl *GetSceneControl() override;
  camera::ICameraLink *GetLink() override { return m_pLink.get(); }

private:
  class CLink;
  class CStuckCap;

  SFaults m_stFaults;
  std::unique_ptr<camera::ICamera> m_pCamera;
  std::unique_ptr<CStuckCap> m_pStuckCap;
  std::unique_ptr<camera::ICameraLink> m_pLink;
};

} // namespace ffc::host
