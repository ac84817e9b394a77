/// \file
/// The features of a simulated camera that is corrected on the host, for tests: no sensor, no stream.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "camera/software/camerafeatures.h"
#include "genapi/softwarenodemap/softwarenodemap.h"

namespace ffc::test {

/// The node maps of the simulated camera, as a host hands them to the plug-in, without the checks of values that it
/// makes of every write, and with a white balance that settles after so many questions instead of frames. Everything
/// starts in a state in which all operations succeed: not streaming, trigger off, the delivered image equal to the
/// camera's. Geometry, format and the stream's buffer handling are locked while it streams, and the white-balance
/// ratios unless BalanceWhiteAuto is "Off". A test then changes what it is about:
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
  /// \param strPixelFormat one of genapi::GetSensorFormats(). The camera offers all bit depths of that layout.
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

  genapi::CSoftwareNodeMap &Device() { return m_features.GetDeviceMap(); }
  genapi::CSoftwareNodeMap &Stream() { return m_features.GetStreamMap(); }
  genapi::CSoftwareNodeMap &Output() { return m_features.GetOutputMap(); }

  /// Nodes of the device by name; the name must be one of that kind.
  genapi::CSoftwareInteger &Integer(const std::string &strName)
  {
    return *Device().Find<genapi::CSoftwareInteger>(strName);
  }
  genapi::CSoftwareFloat &Float(const std::string &strName) { return *Device().Find<genapi::CSoftwareFloat>(strName); }
  genapi::CSoftwareEnumeration &Enumeration(const std::string &strName)
  {
    return *Device().Find<genapi::CSoftwareEnumeration>(strName);
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
  camera::CCameraFeatures m_features;
  /// What BalanceWhiteAuto stands at: 0 off, 1 once, 2 continuous. Guarded by the device's lock.
  int64_t m_nWhiteBalance = 0;

private:
  void Loosen();
  void AddWhiteBalance();
  void AddOutputFormats();
  int64_t ReadWhiteBalance();

  genapi::CSoftwareInteger &m_width;
  genapi::CSoftwareInteger &m_height;
  genapi::CSoftwareEnumeration &m_pixelFormat;
  int m_nWhiteBalanceReads = 1;
  int m_nReadsLeft = 0;
};

} // namespace ffc::test
