#include "camera/software/camerafeatures.h"

#include <utility>

namespace ffc::camera {

using genapi::EColorLayout;
using genapi::FindSensorFormat;
using genapi::GetLayoutName;
using genapi::SSensorFormat;

namespace {

constexpr int64_t MIN_REGION = 16; // pixels
constexpr int64_t REGION_STEP = 2; // keeps the colours of a Bayer sensor in their places
constexpr int64_t TRIGGER_OFF = 0;
constexpr int64_t TRIGGER_ON = 1;
constexpr int64_t SOURCE_SOFTWARE = 0;

void AddFormatEntries(genapi::CSoftwareEnumeration &node, const std::vector<SSensorFormat> &listFormats)
{
  for (const SSensorFormat &stFormat : listFormats) {
    node.Entry(stFormat.pName, stFormat.nCode);
  }
}

} // namespace

CCameraFeatures::CCameraFeatures(const SCameraDescription &stDescription)
{
  m_pLocked = &m_deviceMap.AddInteger("TLParamsLocked").Range(0, 1).Access(GenApi::RO);
  AddIdentity(stDescription);
  AddGeometry(stDescription);
  AddPixelFormat(stDescription);
  AddExposure(stDescription);
  AddStreamControl(stDescription);
  AddStreamMap();
  AddOutputMap(stDescription);
}

void CCameraFeatures::SetStreamHandlers(std::function<void()> fnTrigger, std::function<void()> fnTimingChanged)
{
  m_fnTrigger = std::move(fnTrigger);
  m_fnTimingChanged = std::move(fnTimingChanged);
}

SCameraSettings CCameraFeatures::GetSettings() const
{
  const auto lock = m_deviceMap.Lock();
  SCameraSettings stSettings;
  stSettings.pFormat = FindSensorFormat(static_cast<uint32_t>(m_pPixelFormat->Peek()));
  stSettings.nOffsetX = static_cast<uint32_t>(m_pOffsetX->Peek());
  stSettings.nOffsetY = static_cast<uint32_t>(m_pOffsetY->Peek());
  stSettings.nWidth = static_cast<uint32_t>(m_pWidth->Peek());
  stSettings.nHeight = static_cast<uint32_t>(m_pHeight->Peek());
  stSettings.dExposureTime = m_pExposureTime->Peek();
  stSettings.dGain = m_pGain->Peek();
  stSettings.dBlackLevel = m_pBlackLevel->Peek();
  return stSettings;
}

CFrameStreamer::STiming CCameraFeatures::GetTiming() const
{
  const auto lock = m_deviceMap.Lock();
  CFrameStreamer::STiming stTiming;
  stTiming.nPeriod = std::chrono::nanoseconds(static_cast<int64_t>(1e9 / m_pFrameRate->Peek()));
  stTiming.bTriggered = m_pTriggerMode->Peek() == TRIGGER_ON;
  return stTiming;
}

void CCameraFeatures::AddIdentity(const SCameraDescription &stDescription)
{
  m_deviceMap.AddString("DeviceVendorName", stDescription.strVendor).Access(GenApi::RO);
  m_deviceMap.AddString("DeviceModelName", stDescription.strModel).Access(GenApi::RO);
  m_deviceMap.AddString("DeviceSerialNumber", stDescription.strSerial).Access(GenApi::RO);
  m_deviceMap.AddString("DeviceUserID").MaxLength(64);
  m_deviceMap.AddInteger("SensorWidth", stDescription.nSensorWidth).Access(GenApi::RO);
  m_deviceMap.AddInteger("SensorHeight", stDescription.nSensorHeight).Access(GenApi::RO);
}

void CCameraFeatures::AddGeometry(const SCameraDescription &stDescription)
{
  const auto addAxis = [&](const char *pSizeName, const char *pOffsetName, int64_t nSensorSize,
                           genapi::CSoftwareInteger *&pSize, genapi::CSoftwareInteger *&pOffset) {
    genapi::CSoftwareInteger &size = m_deviceMap.AddInteger(pSizeName, nSensorSize).LockedWhile(*m_pLocked).Strict();
    genapi::CSoftwareInteger &offset = m_deviceMap.AddInteger(pOffsetName).LockedWhile(*m_pLocked).Strict();
    if (stDescription.bRegionOfInterest) {
      size.Range(MIN_REGION, [nSensorSize, &offset] { return nSensorSize - offset.Peek(); }).Increment(REGION_STEP);
      offset.Range(0, [nSensorSize, &size] { return nSensorSize - size.Peek(); }).Increment(REGION_STEP);
    } else {
      size.Range(nSensorSize, nSensorSize);
      offset.Range(0, 0);
    }
    pSize = &size;
    pOffset = &offset;
  };
  addAxis("Width", "OffsetX", stDescription.nSensorWidth, m_pWidth, m_pOffsetX);
  addAxis("Height", "OffsetY", stDescription.nSensorHeight, m_pHeight, m_pOffsetY);
}

void CCameraFeatures::AddPixelFormat(const SCameraDescription &stDescription)
{
  m_pPixelFormat = &m_deviceMap.AddEnumeration("PixelFormat").LockedWhile(*m_pLocked).Strict();
  AddFormatEntries(*m_pPixelFormat, stDescription.listFormats);
  m_pPixelFormat->Select(stDescription.strPixelFormat);
  m_deviceMap.AddInteger("PayloadSize").OnRead([this] { return int64_t{GetSettings().GetPayloadSize()}; });
  const EColorLayout eLayout = stDescription.listFormats.front().eLayout;
  if (eLayout != EColorLayout::Mono) {
    m_deviceMap.AddEnumeration("PixelColorFilter")
      .Entry(GetLayoutName(eLayout), static_cast<int64_t>(eLayout))
      .Access(GenApi::RO);
  }
}

void CCameraFeatures::AddExposure(const SCameraDescription &stDescription)
{
  m_pExposureTime = &m_deviceMap.AddFloat("ExposureTime", 10000.0).Range(1.0, 1000000.0).Strict();
  m_pGain = &m_deviceMap.AddFloat("Gain", 0.0).Range(0.0, 24.0).Strict();
  m_pBlackLevel = &m_deviceMap.AddFloat("BlackLevel", stDescription.dBlackLevel).Range(0.0, 10.0).Strict();
}

void CCameraFeatures::AddStreamControl(const SCameraDescription &stDescription)
{
  const auto announceTiming = [this](const auto &) {
    if (m_fnTimingChanged) {
      m_fnTimingChanged();
    }
  };
  m_pFrameRate = &m_deviceMap.AddFloat("AcquisitionFrameRate", stDescription.dFrameRate)
                    .Range(MIN_FRAME_RATE, MAX_FRAME_RATE)
                    .Strict()
                    .OnWrite(announceTiming);
  m_pTriggerMode = &m_deviceMap.AddEnumeration("TriggerMode")
                      .Entry("Off", TRIGGER_OFF)
                      .Entry("On", TRIGGER_ON)
                      .OnWrite(announceTiming);
  m_pTriggerSource = &m_deviceMap.AddEnumeration("TriggerSource").Entry("Software", SOURCE_SOFTWARE).Entry("Line0", 1);
  m_deviceMap.AddCommand("TriggerSoftware").OnExecute([this] {
    if (m_fnTrigger && IsSoftwareTriggered()) {
      m_fnTrigger();
    }
  });
}

void CCameraFeatures::AddStreamMap()
{
  m_streamMap.AddEnumeration("StreamBufferHandlingMode")
    .Entry("OldestFirst", 0)
    .Entry("OldestFirstOverwrite", 1)
    .Entry("NewestOnly", 2)
    .LockedWhile(*m_pLocked);
}

void CCameraFeatures::AddOutputMap(const SCameraDescription &stDescription)
{
  AddFormatEntries(m_outputMap.AddEnumeration("OutPixelFormat").OnRead([this] { return m_pPixelFormat->Peek(); }),
                   stDescription.listFormats);
  m_outputMap.AddInteger("OutputPayloadSize").OnRead([this] { return int64_t{GetSettings().GetPayloadSize()}; });
  m_outputMap.AddInteger("OutputWidth").OnRead([this] { return m_pWidth->Peek(); });
  m_outputMap.AddInteger("OutputHeight").OnRead([this] { return m_pHeight->Peek(); });
  m_outputMap.AddString("DeviceDisplayName", stDescription.GetDisplayName()).Access(GenApi::RO);
}

bool CCameraFeatures::IsSoftwareTriggered() const
{
  return m_pTriggerMode->Peek() == TRIGGER_ON && m_pTriggerSource->Peek() == SOURCE_SOFTWARE;
}

} // namespace ffc::camera
