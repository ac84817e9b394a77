/// \file
/// Whether the host's stream ran before an acquisition.
#pragma once

#include <cstdint>

#include "pluginobject/featureaccess.h"

/// The saved TLParamsLocked. User-interface thread only.
class CStreamingState {
public:
  int32_t Save(const CFeatureAccess &features) { return features.GetIntFeature("TLParamsLocked", m_nTLParamsLocked); }

  /// After a save of the camera's state that failed before this value was read: the restore that follows
  /// stops the stream, and without knowing that it ran nobody would start it again.
  void SaveLate(const CFeatureAccess &features)
  {
    if (!WasStreaming()) {
      (void)Save(features);
    }
  }

  bool WasStreaming() const { return m_nTLParamsLocked != 0; }

private:
  int64_t m_nTLParamsLocked = 0;
};
