/// \file
/// The camera's user sets and parameters around an acquisition in the factory state.
#pragma once

#include <cstdint>
#include <string>

#include "pluginobject/featureaccess.h"
#include "pluginobject/shadingcorrection/process/acquisition/frameformat.h"
#include "pluginobject/shadingcorrection/process/camerastate/savedsettings.h"
#include "pluginobject/shadingcorrection/process/camerastate/userset.h"

namespace ffc::process {

/// Keeps the user's state in "UserSet0", loads the factory set with the user's exposure on top, and loads
/// "UserSet0" again. Emits nothing: stopping and starting the stream is the process's matter.
/// User-interface thread only.
class CDeviceParamGuard {
public:
  /// Forgets everything saved; only when no restore is pending. Until Prepare has saved the user's state, Restore then
  /// does not load "UserSet0".
  void BeginAcquisition();

  /// Reads what Prepare writes back. \return the code of the first failing read
  [[nodiscard]] int32_t SaveUserParam(const pluginobject::CFeatureAccess &features);
  bool WasStreaming() const { return m_streaming.WasStreaming(); }
  /// Milliseconds to wait for a frame at the user's exposure.
  uint32_t GetTimeout() const { return m_nTimeout; }

  /// Switches the camera to the factory state. Expects a stopped stream.
  /// \param stFormat receives the factory set's format; its frame size is computed from the width and height
  ///   that it holds before
  [[nodiscard]] int32_t Prepare(const pluginobject::CFeatureAccess &features, SFrameFormat &stFormat);
  /// Whether the user's black level is the factory set's, within a millionth.
  bool IsBlackLevelDefault() const;

  /// Brings the user's state back as far as the camera answers; a second time when the first fails.
  void Restore(const pluginobject::CFeatureAccess &features);

  /// Whether an acquisition's user state still waits in "UserSet0", which nothing may overwrite then.
  bool IsRestorePending() const { return m_userSets.IsRestorePending(); }
  /// Before a pending restore is tried again: reads what the camera has now. Where exposure, gain, black level or
  /// digital shift is no longer as the acquisition left it, the user has taken over, and nothing is pending any more.
  /// \return -1013 when the camera does not tell
  [[nodiscard]] int32_t ReviewPendingRestore(const pluginobject::CFeatureAccess &features);
  /// Writes a selector back, alone, that the camera has refused at the end of an acquisition, unless the user has
  /// selected another user set since. Failures are ignored.
  void RestoreSelector(const pluginobject::CFeatureAccess &features);

private:
  /// A setting that not every camera has; empty when this one has not.
  [[nodiscard]] static int32_t SaveOptional(const pluginobject::CFeatureAccess &features, const char *pName,
                                            std::string &strSaved);
  [[nodiscard]] static int32_t WriteOptional(const pluginobject::CFeatureAccess &features, const char *pName,
                                             const std::string &strSaved);
  [[nodiscard]] static int32_t ReadFormat(const pluginobject::CFeatureAccess &features, SFrameFormat &stFormat);
  [[nodiscard]] int32_t WriteUserParam(const pluginobject::CFeatureAccess &features);
  [[nodiscard]] int32_t CompareUserParam(const pluginobject::CFeatureAccess &features, bool &bUnchanged) const;

  CUserSetGuard m_userSets;
  CStreamingState m_streaming;
  uint32_t m_nTimeout = 0;
  CSavedNumber<float> m_exposureTime{"ExposureTime"}; // microseconds
  CSavedNumber<float> m_gain{"Gain"};
  CSavedNumber<float> m_blackLevel{"BlackLevel"};
  float m_fDefaultBlackLevel = 0.0F;
  CSavedNumber<int64_t> m_digitalShift{"DigitalShift"};
  std::string m_strFixedPatternNoiseCorrectMode;
  std::string m_strDeadPixelCorrect;
  std::string m_strRemoveParameterLimit;
};

} // namespace ffc::process
