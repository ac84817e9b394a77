/// \file
/// Trigger and stream settings that a host-side acquisition changes.
#pragma once

#include <cstdint>

#include "pluginobject/featureaccess.h"
#include "pluginobject/shadingcorrection/process/camerastate/savedsettings.h"

namespace ffc::process {

/// Saves the trigger mode, the stream's buffer handling and whether the stream was running; sets what an
/// acquisition needs; puts the saved values back. User-interface thread only.
class CHostStreamGuard {
public:
  /// Forgets everything saved.
  void Reset();

  CStreamingState &Streaming() { return m_streaming; }
  [[nodiscard]] int32_t SaveTriggerMode(const pluginobject::CFeatureAccess &deviceFeatures)
  {
    return m_triggerMode.Save(deviceFeatures);
  }
  /// A stream without buffer handling is no failure.
  void SaveStreamMode(const pluginobject::CFeatureAccess &streamFeatures);
  /// Whether the stream was running when it was saved.
  bool WasStreaming() const { return m_streaming.WasStreaming(); }

  /// Trigger "Off", buffer handling "NewestOnly", each only where it is something else.
  [[nodiscard]] int32_t Prepare(const pluginobject::CFeatureAccess &deviceFeatures,
                                const pluginobject::CFeatureAccess &streamFeatures);
  /// Writes what was saved; failures are ignored.
  void Restore(const pluginobject::CFeatureAccess &deviceFeatures, const pluginobject::CFeatureAccess &streamFeatures);

private:
  CStreamingState m_streaming;
  CSavedEntry m_triggerMode{"TriggerMode"};
  CSavedEntry m_streamMode{"StreamBufferHandlingMode"}; // empty: the stream has none
};

} // namespace ffc::process
