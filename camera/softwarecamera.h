/// \file
/// A camera whose frames are made by software.
#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <vector>

#include "camera/camerafeatures.h"
#include "camera/framestreamer.h"
#include "camera/icamera.h"
#include "camera/iframesource.h"
#include "camera/scenestate.h"
#include "camera/whitebalance.h"

/// Joins features, white balance, scene, stream and a source of frames to a camera. What the frames
/// show is the source's matter.
class CSoftwareCamera final : public ICamera {
public:
  CSoftwareCamera(const SCameraDescription &stDescription, std::unique_ptr<IFrameSource> pSource);
  ~CSoftwareCamera() override;

  std::string GetDisplayName() const override { return m_strDisplayName; }
  GenApi::INodeMap *GetOutputNodeMap() override { return &m_features.GetOutputMap(); }
  GenApi::INodeMap *GetStreamNodeMap() override { return &m_features.GetStreamMap(); }
  GenApi::INodeMap *GetDeviceNodeMap() override { return &m_features.GetDeviceMap(); }
  void SetFrameCallback(FrameCallback fnCallback) override { m_fnCallback = std::move(fnCallback); }
  std::string Start() override;
  void Stop() override;
  bool IsStreaming() const override { return m_streamer.IsStreaming(); }
  ISceneControl *GetSceneControl() override { return &m_scene; }

private:
  void DeliverFrame();

  std::string m_strDisplayName;
  CCameraFeatures m_features;
  std::optional<CWhiteBalance> m_whiteBalance; ///< of a colour camera
  CSceneState m_scene;
  std::unique_ptr<IFrameSource> m_pSource;
  FrameCallback m_fnCallback;
  std::vector<uint8_t> m_listFrame; ///< the stream thread's own, as is the next
  uint64_t m_nFrameId = 0;
  CFrameStreamer m_streamer; ///< last: its thread uses all of the above
};
