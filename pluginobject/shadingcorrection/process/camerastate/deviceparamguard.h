/// \file
/// The camera's user sets and parameters around an acquisition in the factory state.
#pragma once

#include <cstdint>
#include <string>

#include "pluginobject/featureaccess.h"
#include "pluginobject/shadingcorrection/process/acquisition/frameformat.h"
#include "pluginobject/shadingcorrection/process/camerastate/streamingstate.h"

/// Parks the user's state in "UserSet0", loads the factory set with the user's exposure on top, and loads
/// "UserSet0" again. Emits nothing: stopping and starting the stream is the process's matter.
/// User-interface thread only.
class CDeviceParamGuard {
public:
  /// Forgets everything saved; only when nothing is owed. Until Prepare has saved the user's state, Restore then does
  /// not load "UserSet0": that would bring an older state over the user's live one.
  void BeginAcquisition();

  /// Reads what Prepare writes back. \return the code of the first failing read
  int32_t SaveUserParam(const CFeatureAccess &features);
  bool WasStreaming() const { return m_streaming.WasStreaming(); }
  /// Milliseconds to wait for a frame at the user's exposure.
  uint32_t GetTimeout() const { return m_nTimeout; }

  /// Switches the camera to the factory state. Expects a stopped stream.
  /// \param stFormat receives the factory set's format; its frame size is computed from the width and height
  ///   that it holds before
  int32_t Prepare(const CFeatureAccess &features, SFrameFormat &stFormat);
  /// Whether the user's black level is the factory set's, within a millionth.
  bool IsBlackLevelDefault() const;

  /// Brings the user's state back as far as the camera answers; a second time when the first fails.
  void Restore(const CFeatureAccess &features);
  /// Whether the camera did not take the user's state back. Nothing may be saved into "UserSet0" then: it has the
  /// only copy. The next Restore tries again.
  bool IsRestoreOwed() const { return m_bOwed; }
  /// Reads again whether the stream runs.
  void RefreshStreaming(const CFeatureAccess &features);

private:
  /// A setting that not every camera has; empty when this one has not.
  static int32_t __SaveOptional(const CFeatureAccess &features, const char *pName, std::string &strSaved);
  static int32_t __WriteOptional(const CFeatureAccess &features, const char *pName, const std::string &strSaved);
  int32_t __SwitchUserSets(const CFeatureAccess &features);
  static int32_t __ReadFormat(const CFeatureAccess &features, SFrameFormat &stFormat);
  int32_t __WriteUserParam(const CFeatureAccess &features) const;

  int32_t __PutBack(const CFeatureAccess &features, bool bLoad) const;

  bool m_bOwed = false;
  bool m_bUserSetPending = false; // an acquisition has begun, the user's state is not saved yet
  CStreamingState m_streaming;
  uint32_t m_nTimeout = 0;
  float m_fExposureTime = 0.0F; // microseconds
  float m_fGain = 0.0F;
  float m_fBlackLevel = 0.0F;
  float m_fDefaultBlackLevel = 0.0F;
  int64_t m_nDigitalShift = 0;
  std::string m_strUserSetSelector;
  std::string m_strFixedPatternNoiseCorrectMode;
  std::string m_strDeadPixelCorrect;
  std::string m_strRemoveParameterLimit;
};
