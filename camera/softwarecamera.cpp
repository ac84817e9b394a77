#include "camera/softwarecamera.h"

#include <new>
#include <utility>

CSoftwareCamera::CSoftwareCamera(const SCameraDescription &stDescription, std::unique_ptr<IFrameSource> pSource)
  : m_strDisplayName(stDescription.GetDisplayName()), m_features(stDescription), m_pSource(std::move(pSource)),
    m_streamer([this] { return m_features.GetTiming(); }, [this] { DeliverFrame(); })
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

std::string CSoftwareCamera::Start()
{
  if (IsStreaming()) {
    return {};
  }
  m_features.SetLocked(true); // first: the geometry stands still as long as frames can come
  std::string strError = m_streamer.Start();
  if (!strError.empty()) {
    m_features.SetLocked(false);
  }
  return strError;
}

void CSoftwareCamera::Stop()
{
  m_streamer.Stop();
  m_features.SetLocked(false);
}

void CSoftwareCamera::DeliverFrame()
{
  SCameraSettings stSettings = m_features.GetSettings();
  if (m_whiteBalance) {
    stSettings.adBalance = m_whiteBalance->GetRatios();
  }
  try {
    m_pSource->Expose(stSettings, m_scene.Get(), m_nFrameId, &m_listFrame);
  } catch (const std::bad_alloc &) {
    return; // a frame is lost, as on a bus without bandwidth
  }
  if (m_whiteBalance) {
    m_whiteBalance->Process(stSettings, m_listFrame.data());
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
