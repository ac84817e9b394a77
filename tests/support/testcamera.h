/// \file
/// The features of a camera that is corrected on the host, for tests: no sensor, no stream.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "genapi/softwarenodemap/softwarenodemap.h"

namespace ffc::test {

/// Three software node maps, as a host hands them to the plug-in, with the features that the correction
/// reads and writes. Everything starts in a state in which all operations succeed: not streaming, trigger
/// off, the delivered image equal to the camera's. As with many a camera, geometry, format and the stream's buffer
/// handling are locked while it streams, and the white-balance ratios unless BalanceWhiteAuto is "Off". A test then
/// changes what it is about:
///
///     CTestCamera camera("BayerRG12", 640, 480);
///     camera.Device().Find<CSoftwareInteger>("TLParamsLocked")->Poke(1);
///     camera.Enumeration("TriggerMode").Select("On");
///     camera.Float("ExposureTime").OnWrite([](double) { throw ...; });
///     camera.Output().Find<CSoftwareInteger>("OutputWidth")->OnRead([] { return 1; });
///
/// PayloadSize and the features of the output map are computed from the camera's own; give them another
/// OnRead to break that, or OnRead(nullptr) and Poke.
class CTestCamera {
public:
  /// \param strPixelFormat PFNC name: "Mono" or "BayerGR", "BayerRG", "BayerGB", "BayerBG" and 8, 10, 12 or 16
  ///   (Mono14 too). The camera offers all bit depths of that layout. An unknown name throws std::out_of_range.
  explicit CTestCamera(const std::string &strPixelFormat = "Mono8", int64_t nWidth = 64, int64_t nHeight = 48);
  virtual ~CTestCamera() = default;
  CTestCamera(const CTestCamera &) = delete;
  CTestCamera &operator=(const CTestCamera &) = delete;

  /// Gives the device the enumeration ShadingCorrectionMode with this entry alone.
  CTestCamera &AddShadingCorrectionMode(const std::string &strEntry);
  /// Reads of BalanceWhiteAuto after "Once" was written until it is "Off"; the last of them sees "Off". 1
  /// unless set; negative: it never ends.
  CTestCamera &SetWhiteBalanceReads(int nReads);
  /// Has an enumeration of the device refuse to be set while the camera streams.
  CTestCamera &LockWhileStreaming(const std::string &strName);

  genapi::CSoftwareNodeMap &Device() { return m_deviceMap; }
  genapi::CSoftwareNodeMap &Stream() { return m_streamMap; }
  genapi::CSoftwareNodeMap &Output() { return m_outputMap; }

  /// Nodes of the device by name; the name must be one of that kind.
  genapi::CSoftwareInteger &Integer(const std::string &strName)
  {
    return *m_deviceMap.Find<genapi::CSoftwareInteger>(strName);
  }
  genapi::CSoftwareFloat &Float(const std::string &strName)
  {
    return *m_deviceMap.Find<genapi::CSoftwareFloat>(strName);
  }
  genapi::CSoftwareEnumeration &Enumeration(const std::string &strName)
  {
    return *m_deviceMap.Find<genapi::CSoftwareEnumeration>(strName);
  }

  /// As the camera's features are now.
  uint32_t GetPixelFormat() const;
  uint32_t GetPayloadSize() const;
  /// A frame of the current size and format, every sample of one value.
  std::vector<uint8_t> MakeFrame(uint32_t nValue) const;
  /// Whether a streaming camera sends a frame now, which this question then takes: without trigger always, with
  /// one never. From the thread that delivers the frames.
  virtual bool TakeFrame();

  /// Saved white-balance ratios by index of the selector's entry: 0 red, 1 green, 2 blue.
  std::array<double, 3> m_adBalanceRatio{1.5, 1.0, 1.75};

protected:
  /// What BalanceWhiteAuto stands at: 0 off, 1 once, 2 continuous. Guarded by the device's lock.
  int64_t m_nWhiteBalance = 0;

private:
  void AddGeometry(int64_t nWidth, int64_t nHeight);
  void AddPixelFormat(const std::string &strPixelFormat);
  void AddAcquisition();
  void AddWhiteBalance();
  void AddOutput();
  int64_t ReadWhiteBalance();

  genapi::CSoftwareNodeMap m_deviceMap;
  genapi::CSoftwareNodeMap m_streamMap;
  genapi::CSoftwareNodeMap m_outputMap;
  genapi::CSoftwareInteger *m_pWidth = nullptr;
  genapi::CSoftwareInteger *m_pHeight = nullptr;
  genapi::CSoftwareEnumeration *m_pPixelFormat = nullptr;
  genapi::CSoftwareEnumeration *m_pTriggerMode = nullptr;
  int m_nWhiteBalanceReads = 1;
  int m_nReadsLeft = 0;
};

} // namespace ffc::test
