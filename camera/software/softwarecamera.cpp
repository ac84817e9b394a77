#include "camera/software/softwarecamera.h"

#include <new>
#include <utility>

namespace ffc::camera {

using genapi::EColorLayout;

CSoftwareCamera::CSoftwareCamera(const SCameraDescription &stDescription, std::unique_ptr<IFrameSource> pSource)
  : m_strDisplayName(stDescription.GetDisplayName()), m_features(stDescription),
    m_scene(stDescription.bArrangeableScene, stDescription.bCoverable), m_listNotes(stDescription.listNotes),
    m_pSource(std::move(pSource)), m_streamer([this] { return m_features.GetTiming(); }, [this] { DeliverFrame(); })
{
  if (stDescription.listFormats.front().eLayout != EColorLayout::Mono) {
    m_whiteBalance.emplace(m_features.GetDeviceMap());
  }
  m_features.SetStreamHandlers([this] { m_streamer.Trigger(); }, [this] { m_streamer.Wake(); });
}

CSoftwareCamera::~CSoftwareCamera()
{
  Stop();
}

Result<> CSoftwareCamera::AddSelfCorrection(const SCameraDescription &stDescription,
                                            const SSelfCorrectionOptions &stOptions)
{
  AddShadingCorrectionMode(m_features.GetDeviceMap(), stOptions.eMode);
  if (stOptions.eMode == ECorrectionMode::Unknown) {
    return {};
  }
  ffc::camera::CWhiteBalance *pWhiteBalance = m_whiteBalance ? &*m_whiteBalance : nullptr;
  m_pSelfCorrection = std::make_unique<CSelfCorrection>(stDescription, stOptions, m_features, pWhiteBalance);
  return m_pSelfCorrection->PowerOn();
}

Result<> CSoftwareCamera::Start()
{
  if (IsStreaming()) {
    return {};
  }
  m_features.SetLocked(true); // first: the geometry stands still as long as frames can come
  Result<> result = m_streamer.Start();
  if (!result) {
    m_features.SetLocked(false);
  }
  return result;
}

void CSoftwareCamera::Stop()
{
  m_streamer.Stop();
  m_features.SetLocked(false);
}

// All that one frame depends on, as it is at one moment.
SFrameCorrection CSoftwareCamera::GetFrameSetup(SCameraSettings &stSettings) const
{
  const auto lock = m_features.Lock();
  stSettings = m_features.GetSettings();
  if (m_whiteBalance) {
    stSettings.adBalance = m_whiteBalance->GetRatios();
  }
  if (m_pSelfCorrection == nullptr) {
    return {};
  }
  m_pSelfCorrection->CompleteSettings(stSettings);
  return m_pSelfCorrection->GetFrameCorrection();
}

void CSoftwareCamera::DeliverFrame()
{
  const std::unique_lock<std::mutex> lock = m_scene.LockExposure();
  SCameraSettings stSettings;
  const SFrameCorrection stCorrection = GetFrameSetup(stSettings);
  try {
    m_pSource->Expose(stSettings, m_scene.Get(), m_scene.GetNoiseId(m_nFrameId), m_listFrame);
    if (m_whiteBalance) {
      m_whiteBalance->Process(stSettings, m_listFrame.data());
    }
    m_corrector.Process(stSettings, stCorrection, m_listFrame.data());
  } catch (const std::bad_alloc &) {
    return; // a frame is lost, as on a bus without bandwidth
  }
  SCameraFrame stFrame;
  stFrame.pBuffer = m_listFrame.data();
  stFrame.nSize = stSettings.GetPayloadSize();
  stFrame.nWidth = stSettings.nWidth;
  stFrame.nHeight = stSettings.nHeight;
  stFrame.nPixelFormat = stSettings.pFormat->nCode;
  stFrame.nFrameId = m_nFrameId++;
  if (m_fnCallback) {
    m_fnCallback(stFrame);
  }
}

} // namespace ffc::camera
