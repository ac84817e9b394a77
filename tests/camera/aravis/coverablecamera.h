/// \file
/// A real camera whose lens software can cover after all.
#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "camera/iscenecontrol.h"

namespace ffc::test {

/// Passes everything on to a camera and, for its scene, to whoever holds the lens cap. Tells a test of each start of
/// the stream, and of each frame before the host gets it.
class CCoverableCamera final : public camera::ICamera, public camera::ISceneOwner, private camera::ISceneControl {
public:
  struct SHooks {
    std::function<void(bool bCovered)> fnCover;
    std::function<void()> fnStart; ///< may be empty, as may the next
    std::function<void()> fnFrame; ///< on the frame thread
  };

  CCoverableCamera(std::unique_ptr<camera::ICamera> pCamera, SHooks stHooks)
    : m_pCamera(std::move(pCamera)), m_stHooks(std::move(stHooks))
  {
  }
  ~CCoverableCamera() override { m_pCamera->Stop(); }

  std::string GetDisplayName() const override { return m_pCamera->GetDisplayName(); }
  GenApi::INodeMap *GetOutputNodeMap() override { return m_pCamera->GetOutputNodeMap(); }
  GenApi::INodeMap *GetStreamNodeMap() override { return m_pCamera->GetStreamNodeMap(); }
  GenApi::INodeMap *GetDeviceNodeMap() override { return m_pCamera->GetDeviceNodeMap(); }
  std::vector<camera::SFeatureNote> GetFeatureNotes() const override { return m_pCamera->GetFeatureNotes(); }
  void SetFrameCallback(FrameCallback fnCallback) override
  {
    m_pCamera->SetFrameCallback([this, fnCallback = std::move(fnCallback)](const camera::SCameraFrame &stFrame) {
      if (m_stHooks.fnFrame) {
        m_stHooks.fnFrame();
      }
      if (fnCallback) {
        fnCallback(stFrame);
      }
    });
  }
  Result<> Start() override
  {
    if (m_stHooks.fnStart) {
      m_stHooks.fnStart();
    }
    return m_pCamera->Start();
  }
  void Stop() override { m_pCamera->Stop(); }
  bool IsStreaming() const override { return m_pCamera->IsStreaming(); }
  camera::ISceneControl *GetSceneControl() override { return this; }
  camera::ICameraLink *GetLink() override { return m_pCamera->GetLink(); }

private:
  void SetLensCap(bool bCovered) override
  {
    m_bCovered = bCovered;
    m_stHooks.fnCover(bCovered);
  }
  bool IsLensCapOn() const override { return m_bCovered; }
  bool CanArrange() const override { return false; }
  void SetScene(EScene) override {}
  void SetIllumination(double) override {}
  void SetPurpose(EPurpose) override {}

  std::unique_ptr<camera::ICamera> m_pCamera;
  SHooks m_stHooks;
  bool m_bCovered = false;
};

} // namespace ffc::test
