#include "tests/support/testcamera.h"

#include <cstring>
#include <limits>

#include "genapi/sensorformat.h"

namespace ffc::test {

namespace {

constexpr int64_t BALANCE_OFF = 0;
constexpr int64_t BALANCE_ONCE = 1;
constexpr int64_t BALANCE_CONTINUOUS = 2;

camera::SCameraDescription Describe(const std::string &strPixelFormat, int64_t nWidth, int64_t nHeight)
{
  camera::SCameraDescription stDescription;
  stDescription.strVendor = "Test";
  stDescription.strModel = "camera";
  stDescription.strSerial = "0001";
  stDescription.listFormats = genapi::GetSensorFormats(genapi::FindSensorFormat(strPixelFormat)->eLayout);
  stDescription.strPixelFormat = strPixelFormat;
  stDescription.nSensorWidth = static_cast<uint32_t>(nWidth);
  stDescription.nSensorHeight = static_cast<uint32_t>(nHeight);
  stDescription.bRegionOfInterest = true;
  return stDescription;
}

int64_t CountBits(int64_t nPixelFormat)
{
  return genapi::GetBitsPerPixel(static_cast<uint32_t>(nPixelFormat));
}

} // namespace

CTestCamera::CTestCamera(const std::string &strPixelFormat, int64_t nWidth, int64_t nHeight)
  : m_features(Describe(strPixelFormat, nWidth, nHeight)), m_width(Integer("Width")), m_height(Integer("Height")),
    m_pixelFormat(Enumeration("PixelFormat"))
{
  Loosen();
  AddOutputFormats();
  if (Device().GetNode("PixelColorFilter") != nullptr) {
    AddWhiteBalance();
  }
}

CTestCamera &CTestCamera::AddShadingCorrectionMode(const std::string &strEntry)
{
  Device().AddEnumeration("ShadingCorrectionMode").Entry(strEntry, 0);
  return *this;
}

CTestCamera &CTestCamera::SetWhiteBalanceReads(int nReads)
{
  m_nWhiteBalanceReads = nReads;
  return *this;
}

CTestCamera &CTestCamera::LockWhileStreaming(const std::string &strName)
{
  Enumeration(strName).LockedWhile(Integer("TLParamsLocked"));
  return *this;
}

uint32_t CTestCamera::GetPixelFormat() const
{
  return static_cast<uint32_t>(m_pixelFormat.Peek());
}

uint32_t CTestCamera::GetPayloadSize() const
{
  const auto lock = m_features.Lock();
  return static_cast<uint32_t>(m_width.Peek() * m_height.Peek() * CountBits(m_pixelFormat.Peek()) / 8);
}

std::vector<uint8_t> CTestCamera::MakeFrame(uint32_t nValue) const
{
  const auto lock = m_features.Lock();
  if (CountBits(m_pixelFormat.Peek()) == 8) {
    return std::vector<uint8_t>(GetPayloadSize(), static_cast<uint8_t>(nValue));
  }
  const std::vector<uint16_t> listSamples(GetPayloadSize() / sizeof(uint16_t), static_cast<uint16_t>(nValue));
  std::vector<uint8_t> listBytes(listSamples.size() * sizeof(uint16_t));
  std::memcpy(listBytes.data(), listSamples.data(), listBytes.size());
  return listBytes;
}

bool CTestCamera::TakeFrame()
{
  return !m_features.GetTiming().bTriggered;
}

// What the simulated camera refuses for its own sake: here the plug-in meets whatever a camera may say.
void CTestCamera::Loosen()
{
  for (auto *pNode : {&m_width, &m_height}) {
    pNode->Strict(false)
      .Range(std::numeric_limits<int64_t>::lowest(), std::numeric_limits<int64_t>::max())
      .Increment(1);
  }
  m_pixelFormat.Strict(false);
  for (const char *pName : {"ExposureTime", "Gain", "BlackLevel"}) {
    Float(pName).Strict(false);
  }
  Float("ExposureTime").Range(0.0, 1000000.0);
  // Formats that only a test adds have a payload too.
  Integer("PayloadSize").OnRead([this] { return int64_t{GetPayloadSize()}; });
  Output().Find<genapi::CSoftwareInteger>("OutputPayloadSize")->OnRead([this] { return int64_t{GetPayloadSize()}; });
}

void CTestCamera::AddWhiteBalance()
{
  Device()
    .AddEnumeration("BalanceWhiteAuto")
    .Entry("Off", BALANCE_OFF)
    .Entry("Once", BALANCE_ONCE)
    .Entry("Continuous", BALANCE_CONTINUOUS)
    .OnRead([this] { return ReadWhiteBalance(); })
    .OnWrite([this](int64_t nValue) {
      m_nWhiteBalance = nValue;
      m_nReadsLeft = m_nWhiteBalanceReads;
    });
  auto &selector = Device().AddEnumeration("BalanceRatioSelector").Entry("Red", 0).Entry("Green", 1).Entry("Blue", 2);
  Device()
    .AddFloat("BalanceRatio")
    .Range(0.0, 16.0)
    .Access([this] { return m_nWhiteBalance == BALANCE_OFF ? GenApi::RW : GenApi::RO; })
    .OnRead([this, &selector] { return m_adBalanceRatio.at(static_cast<std::size_t>(selector.Peek())); })
    .OnWrite(
      [this, &selector](double dValue) { m_adBalanceRatio.at(static_cast<std::size_t>(selector.Peek())) = dValue; });
  Device().AddEnumeration("AWBLampHouse").Entry("D65", 0).Entry("Fluorescence", 1).Entry("Adaptive", 2);
}

// The delivered image may have any format, as after a conversion in the host.
void CTestCamera::AddOutputFormats()
{
  auto &outputFormat = *Output().Find<genapi::CSoftwareEnumeration>("OutPixelFormat");
  for (const genapi::SSensorFormat &stFormat : genapi::GetSensorFormats()) {
    if (outputFormat.GetEntryByName(stFormat.pName) == nullptr) {
      outputFormat.Entry(stFormat.pName, stFormat.nCode);
    }
  }
}

int64_t CTestCamera::ReadWhiteBalance()
{
  if (m_nWhiteBalance == BALANCE_ONCE && m_nReadsLeft > 0 && --m_nReadsLeft == 0) {
    m_nWhiteBalance = BALANCE_OFF;
  }
  return m_nWhiteBalance;
}

} // namespace ffc::test
