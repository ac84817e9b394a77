#include "tests/support/testcamera.h"

#include <cstring>

#include "genapi/pfnc.h"

namespace ffc::test {

using genapi::CSoftwareInteger;

namespace {

constexpr int64_t BALANCE_OFF = 0;
constexpr int64_t BALANCE_ONCE = 1;
constexpr int64_t BALANCE_CONTINUOUS = 2;

// "BayerRG" of "BayerRG12".
std::string GetLayout(const std::string &strPixelFormat)
{
  return strPixelFormat.substr(0, strPixelFormat.find_first_of("0123456789"));
}

// The formats of a layout that are not packed, in the order in which a camera lists them; no Bayer format of 14 bits,
// which a correction in the host takes for 8.
void AddFormatEntries(genapi::CSoftwareEnumeration &node, const std::string &strLayout)
{
  for (const char *pDepth : {"8", "10", "12", "14", "16"}) {
    const auto *pFormat = genapi::FindPixelFormat(strLayout + pDepth);
    if (!pFormat->IsBayer() || pFormat->nBitDepth != 14) {
      node.Entry(pFormat->pName, pFormat->nCode);
    }
  }
}

int64_t CountBits(int64_t nPixelFormat)
{
  return genapi::GetBitsPerPixel(static_cast<uint32_t>(nPixelFormat));
}

} // namespace

CTestCamera::CTestCamera(const std::string &strPixelFormat, int64_t nWidth, int64_t nHeight)
{
  const std::string strLayout = GetLayout(strPixelFormat);
  m_deviceMap.AddInteger("TLParamsLocked").Range(0, 1).Access(GenApi::RO);
  AddGeometry(nWidth, nHeight);
  AddPixelFormat(strPixelFormat);
  AddAcquisition();
  if (strLayout != "Mono") {
    m_deviceMap.AddEnumeration("PixelColorFilter")
      .Entry("BayerRG", 1)
      .Entry("BayerGB", 2)
      .Entry("BayerGR", 3)
      .Entry("BayerBG", 4)
      .Select(strLayout)
      .Access(GenApi::RO);
    AddWhiteBalance();
  }
  m_streamMap.AddEnumeration("StreamBufferHandlingMode")
    .Entry("OldestFirst", 0)
    .Entry("OldestFirstOverwrite", 1)
    .Entry("NewestOnly", 2)
    .LockedWhile(*m_deviceMap.Find<CSoftwareInteger>("TLParamsLocked"));
  AddOutput();
}

CTestCamera &CTestCamera::AddShadingCorrectionMode(const std::string &strEntry)
{
  m_deviceMap.AddEnumeration("ShadingCorrectionMode").Entry(strEntry, 0);
  return *this;
}

CTestCamera &CTestCamera::SetWhiteBalanceReads(int nReads)
{
  m_nWhiteBalanceReads = nReads;
  return *this;
}

CTestCamera &CTestCamera::LockWhileStreaming(const std::string &strName)
{
  Enumeration(strName).LockedWhile(*m_deviceMap.Find<CSoftwareInteger>("TLParamsLocked"));
  return *this;
}

uint32_t CTestCamera::GetPixelFormat() const
{
  return static_cast<uint32_t>(m_pPixelFormat->Peek());
}

uint32_t CTestCamera::GetPayloadSize() const
{
  const auto lock = m_deviceMap.Lock();
  return static_cast<uint32_t>(m_pWidth->Peek() * m_pHeight->Peek() * CountBits(m_pPixelFormat->Peek()) / 8);
}

std::vector<uint8_t> CTestCamera::MakeFrame(uint32_t nValue) const
{
  const auto lock = m_deviceMap.Lock();
  if (CountBits(m_pPixelFormat->Peek()) == 8) {
    return std::vector<uint8_t>(GetPayloadSize(), static_cast<uint8_t>(nValue));
  }
  const std::vector<uint16_t> listSamples(GetPayloadSize() / sizeof(uint16_t), static_cast<uint16_t>(nValue));
  std::vector<uint8_t> listBytes(listSamples.size() * sizeof(uint16_t));
  std::memcpy(listBytes.data(), listSamples.data(), listBytes.size());
  return listBytes;
}

bool CTestCamera::TakeFrame()
{
  return m_pTriggerMode->Peek() == 0;
}

void CTestCamera::AddGeometry(int64_t nWidth, int64_t nHeight)
{
  const auto &locked = *m_deviceMap.Find<genapi::CSoftwareInteger>("TLParamsLocked");
  m_pWidth = &m_deviceMap.AddInteger("Width", nWidth).LockedWhile(locked);
  m_pHeight = &m_deviceMap.AddInteger("Height", nHeight).LockedWhile(locked);
  m_deviceMap.AddInteger("PayloadSize").OnRead([this] { return int64_t{GetPayloadSize()}; });
}

void CTestCamera::AddPixelFormat(const std::string &strPixelFormat)
{
  m_pPixelFormat = &m_deviceMap.AddEnumeration("PixelFormat");
  AddFormatEntries(*m_pPixelFormat, GetLayout(strPixelFormat));
  m_pPixelFormat->Select(strPixelFormat).LockedWhile(*m_deviceMap.Find<genapi::CSoftwareInteger>("TLParamsLocked"));
}

void CTestCamera::AddAcquisition()
{
  m_deviceMap.AddFloat("ExposureTime", 10000.0).Range(0.0, 1000000.0);
  m_deviceMap.AddFloat("Gain", 0.0).Range(0.0, 24.0);
  m_deviceMap.AddFloat("BlackLevel", 0.4).Range(0.0, 10.0);
  m_pTriggerMode = &m_deviceMap.AddEnumeration("TriggerMode").Entry("Off", 0).Entry("On", 1);
}

void CTestCamera::AddWhiteBalance()
{
  m_deviceMap.AddEnumeration("BalanceWhiteAuto")
    .Entry("Off", BALANCE_OFF)
    .Entry("Once", BALANCE_ONCE)
    .Entry("Continuous", BALANCE_CONTINUOUS)
    .OnRead([this] { return ReadWhiteBalance(); })
    .OnWrite([this](int64_t nValue) {
      m_nWhiteBalance = nValue;
      m_nReadsLeft = m_nWhiteBalanceReads;
    });
  auto &selector =
    m_deviceMap.AddEnumeration("BalanceRatioSelector").Entry("Red", 0).Entry("Green", 1).Entry("Blue", 2);
  m_deviceMap.AddFloat("BalanceRatio")
    .Range(0.0, 16.0)
    .Access([this] { return m_nWhiteBalance == BALANCE_OFF ? GenApi::RW : GenApi::RO; })
    .OnRead([this, &selector] { return m_adBalanceRatio.at(static_cast<std::size_t>(selector.Peek())); })
    .OnWrite(
      [this, &selector](double dValue) { m_adBalanceRatio.at(static_cast<std::size_t>(selector.Peek())) = dValue; });
  m_deviceMap.AddEnumeration("AWBLampHouse").Entry("D65", 0).Entry("Fluorescence", 1).Entry("Adaptive", 2);
}

void CTestCamera::AddOutput()
{
  auto &outputFormat = m_outputMap.AddEnumeration("OutPixelFormat");
  outputFormat.OnRead([this] { return m_pPixelFormat->Peek(); });
  for (const char *pLayout : {"BayerBG", "BayerGB", "BayerGR", "BayerRG", "Mono"}) {
    AddFormatEntries(outputFormat, pLayout);
  }
  m_outputMap.AddInteger("OutputPayloadSize").OnRead([this] { return int64_t{GetPayloadSize()}; });
  m_outputMap.AddInteger("OutputWidth").OnRead([this] { return m_pWidth->Peek(); });
  m_outputMap.AddInteger("OutputHeight").OnRead([this] { return m_pHeight->Peek(); });
  m_outputMap.AddString("DeviceDisplayName", "Test camera (0001)").Access(GenApi::RO);
}

int64_t CTestCamera::ReadWhiteBalance()
{
  if (m_nWhiteBalance == BALANCE_ONCE && m_nReadsLeft > 0 && --m_nReadsLeft == 0) {
    m_nWhiteBalance = BALANCE_OFF;
  }
  return m_nWhiteBalance;
}

} // namespace ffc::test
