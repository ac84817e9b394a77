/// \file
/// The three node maps of a software camera.
#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "camera/featurenote.h"
#include "camera/software/camerasettings.h"
#include "camera/software/framestreamer.h"
#include "genapi/softwarenodemap/softwarenodemap.h"

namespace ffc::camera {

constexpr double MIN_FRAME_RATE = 0.1; ///< frames per second
constexpr double MAX_FRAME_RATE = 10000.0;

/// What a software camera is, fixed when it is made.
struct SCameraDescription {
  std::string strVendor;
  std::string strModel;
  std::string strSerial;
  std::vector<genapi::SSensorFormat> listFormats; ///< that PixelFormat offers; not empty
  std::string strPixelFormat;                     ///< selected at first; one of them
  uint32_t nSensorWidth = 0;                      ///< pixels
  uint32_t nSensorHeight = 0;
  bool bRegionOfInterest = false; ///< width, height and offsets can be set
  bool bArrangeableScene = false; ///< what stands before the lens can be chosen
  bool bCoverable = true;         ///< the lens cap can be put on
  std::vector<SFeatureNote> listNotes;
  double dFrameRate = 30.0; ///< frames per second
  double dBlackLevel = 0.4; ///< percent of full scale

  /// "Maker Model (serial)".
  std::string GetDisplayName() const { return strVendor + " " + strModel + " (" + strSerial + ")"; }
};

/// Declares the features that a camera without a shading correction of its own has, and reads them
/// back as settings. All operations from any thread; none throws after construction.
class CCameraFeatures {
public:
  explicit CCameraFeatures(const SCameraDescription &stDescription);

  genapi::CSoftwareNodeMap &GetOutputMap() { return m_outputMap; }
  genapi::CSoftwareNodeMap &GetStreamMap() { return m_streamMap; }
  genapi::CSoftwareNodeMap &GetDeviceMap() { return m_deviceMap; }

  /// Called, with the device map locked, when a frame is triggered by software and when the timing of
  /// the stream changes. Set before the maps are handed out.
  void SetStreamHandlers(std::function<void()> fnTrigger, std::function<void()> fnTimingChanged);

  /// TLParamsLocked.
  void SetLocked(bool bLocked) { m_pLocked->Poke(bLocked ? 1 : 0); }

  /// Holds the device map still, so that several readings belong together.
  std::unique_lock<std::recursive_mutex> Lock() const { return m_deviceMap.Lock(); }
  /// Without the white balance and what a correction adds, which are not of these features.
  SCameraSettings GetSettings() const;
  CFrameStreamer::STiming GetTiming() const;

private:
  void AddIdentity(const SCameraDescription &stDescription);
  void AddGeometry(const SCameraDescription &stDescription);
  void AddPixelFormat(const SCameraDescription &stDescription);
  void AddExposure(const SCameraDescription &stDescription);
  void AddStreamControl(const SCameraDescription &stDescription);
  void AddStreamMap();
  void AddOutputMap(const SCameraDescription &stDescription);
  bool IsSoftwareTriggered() const;

  genapi::CSoftwareNodeMap m_deviceMap;
  genapi::CSoftwareNodeMap m_streamMap;
  genapi::CSoftwareNodeMap m_outputMap; ///< its nodes ask the device map, never the other way round

  genapi::CSoftwareInteger *m_pLocked = nullptr;
  genapi::CSoftwareInteger *m_pWidth = nullptr;
  genapi::CSoftwareInteger *m_pHeight = nullptr;
  genapi::CSoftwareInteger *m_pOffsetX = nullptr;
  genapi::CSoftwareInteger *m_pOffsetY = nullptr;
  genapi::CSoftwareEnumeration *m_pPixelFormat = nullptr;
  genapi::CSoftwareFloat *m_pExposureTime = nullptr;
  genapi::CSoftwareFloat *m_pGain = nullptr;
  genapi::CSoftwareFloat *m_pBlackLevel = nullptr;
  genapi::CSoftwareFloat *m_pFrameRate = nullptr;
  genapi::CSoftwareEnumeration *m_pTriggerMode = nullptr;
  genapi::CSoftwareEnumeration *m_pTriggerSource = nullptr;
  std::function<void()> m_fnTrigger;
  std::function<void()> m_fnTimingChanged;
};

} // namespace ffc::camera
