/// \file
/// A real camera: GigE Vision or USB3 Vision.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <arv.h>

#include "camera/aravis/aravisstream.h"
#include "camera/aravis/cameralink.h"
#include "camera/aravis/gobject.h"
#include "camera/aravis/hostfeatures.h"
#include "camera/aravis/nodemap/aravisnodemap.h"
#include "camera/aravis/overlay/featureoverlay.h"
#include "camera/icamera.h"
#include "genapi/pfnc.h"

namespace ffc::camera {

/// Its own features are the device map, under the names that the plug-in knows; frames of packed formats are unpacked
/// to 16 bits per sample, with the unpacked format's code, and all others delivered where they were received. A frame
/// that is no image, or not of the size that it says, counts as lost. The user covers its lens.
class CAravisCamera final : public ICamera {
public:
  /// \param pDevice controlled by this program
  /// \return why not: what the camera lacks
  static Result<std::unique_ptr<CAravisCamera>> Create(CObjectPointer<ArvDevice> pDevice,
                                                       const std::string &strDisplayName);
  ~CAravisCamera() override;

  std::string GetDisplayName() const override { return m_strDisplayName; }
  GenApi::INodeMap *GetOutputNodeMap() override { return &m_features.GetOutputMap(); }
  GenApi::INodeMap *GetStreamNodeMap() override { return &m_features.GetStreamMap(); }
  GenApi::INodeMap *GetDeviceNodeMap() override { return &m_overlay; }
  std::vector<SFeatureNote> GetFeatureNotes() const override { return m_overlay.GetNotes(); }
  void SetFrameCallback(FrameCallback fnCallback) override { m_fnCallback = std::move(fnCallback); }
  Result<> Start() override;
  void Stop() override;
  bool IsStreaming() const override { return m_stream.IsRunning(); }
  ICameraLink *GetLink() override { return m_pLink.get(); }

private:
  CAravisCamera(CObjectPointer<ArvDevice> pDevice, const std::string &strDisplayName);

  void WatchControl();
  void SelectContinuous();
  Result<> Begin();
  void End();
  void SetLocked(bool bLocked);
  void Execute(const char *pCommand);
  bool DeliverFrame(ArvBuffer &buffer, uint64_t nNumber);
  bool DescribeFrame(ArvBuffer &buffer, SCameraFrame *pstFrame);
  bool Unpack(const genapi::SPixelFormat &stFormat, std::size_t nSamples, SCameraFrame *pstFrame);

  std::string m_strDisplayName;
  std::shared_ptr<CCameraLink> m_pLink = std::make_shared<CCameraLink>();
  CObjectPointer<ArvDevice> m_pDevice;
  gulong m_nControlHandler = 0;
  CAravisNodeMap m_deviceMap;
  CFeatureOverlay m_overlay;
  FrameCallback m_fnCallback;
  std::vector<uint16_t> m_listSamples; ///< the stream thread's own
  CAravisStream m_stream;
  CHostFeatures m_features; ///< tells the stream
};

} // namespace ffc::camera
