/// \file
/// A camera whose frames are made by software.
#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <vector>

#include "camera/icamera.h"
#include "camera/software/camerafeatures.h"
#include "camera/software/framestreamer.h"
#include "camera/software/iframesource.h"
#include "camera/software/scenestate.h"
#include "camera/software/selfcorrection/selfcorrection.h"
#include "camera/software/whitebalance.h"

namespace ffc::camera {

/// Joins features, white balance, scene, stream and a source of frames to a camera, and a shading
/// correction where the camera has one. What the frames show is the source's matter.
class CSoftwareCamera final : public ICamera, public ISceneOwner {
public:
  CSoftwareCamera(const SCameraDescription &stDescription, std::unique_ptr<IFrameSource> pSource);
  ~CSoftwareCamera() override;

  /// Gives the camera a shading correction of its own; once, before anybody else knows the camera. The
  /// white balance looks at the frames before they are corrected.
  /// \param stDescription that the camera was made from
  /// \return why not: what is wrong with the flash; the camera is of no use then
  Result<> AddSelfCorrection(const SCameraDescription &stDescription, const SSelfCorrectionOptions &stOptions);

  std::string GetDisplayName() const override { return m_strDisplayName; }
  GenApi::INodeMap *GetOutputNodeMap() override { return &m_features.GetOutputMap(); }
  GenApi::INodeMap *GetStreamNodeMap() override { return &m_features.GetStreamMap(); }
  GenApi::INodeMap *GetDeviceNodeMap() override { return &m_features.GetDeviceMap(); }
  std::vector<SFeatureNote> GetFeatureNotes() const override { return m_listNotes; }
  void SetFrameCallback(FrameCallback fnCallback) override { m_fnCallback = std::move(fnCallback); }
  Result<> Start() override;
  void Stop() override;
  bool IsStreaming() const override { return m_streamer.IsStreaming(); }
  ISceneControl *GetSceneControl() override { return &m_scene; }

private:
  void DeliverFrame();
  SFrameCorrection GetFrameSetup(SCameraSettings &stSettings) const;

  std::string m_strDisplayName;
  CCameraFeatures m_features;
  std::optional<ffc::camera::CWhiteBalance> m_whiteBalance; ///< of a colour camera
  std::unique_ptr<CSelfCorrection> m_pSelfCorrection;       ///< null when there is none
  CSceneState m_scene;
  std::vector<SFeatureNote> m_listNotes;
  std::unique_ptr<IFrameSource> m_pSource;
  FrameCallback m_fnCallback;
  std::vector<uint8_t> m_listFrame; ///< the stream thread's own, as are the next two
  CFrameCorrector m_corrector;
  uint64_t m_nFrameId = 0;
  CFrameStreamer m_streamer; ///< last: its thread uses all of the above
};

} // namespace ffc::camera
