/// \file
/// Trigger and stream settings that a host-side acquisition changes.
#pragma once

#include <cstdint>
#include <string>

#include "pluginobject/featureaccess.h"

/// Saves the trigger mode, the stream's buffer handling and whether the stream was running; sets what an
/// acquisition needs; puts the saved values back. User-interface thread only.
class CHostStreamGuard {
public:
  /// Forgets everything saved.
  void Reset() { *this = CHostStreamGuard(); }

  int32_t SaveStreaming(const CFeatureAccess &deviceFeatures);
  int32_t SaveTriggerMode(const CFeatureAccess &deviceFeatures);
  /// A stream without buffer handling is no failure.
  void SaveStreamMode(const CFeatureAccess &streamFeatures);
  /// Whether the stream was running when it was saved.
  bool WasStreaming() const { return m_nTLParamsLocked != 0; }

  /// Trigger "Off", buffer handling "NewestOnly", each only where it is something else.
  int32_t Prepare(const CFeatureAccess &deviceFeatures, const CFeatureAccess &streamFeatures) const;
  /// Writes what was saved; failures are ignored.
  void Restore(const CFeatureAccess &deviceFeatures, const CFeatureAccess &streamFeatures) const;

private:
  bool m_bStreamMode = false; // the stream has a buffer handling mode
  int64_t m_nTLParamsLocked = 0;
  std::string m_strTriggerMode;
  std::string m_strStreamBufferHandlingMode;
};
