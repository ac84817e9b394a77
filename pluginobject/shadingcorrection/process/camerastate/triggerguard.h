/// \file
/// The trigger mode around an acquisition from the running stream.
#pragma once

#include <cstdint>

#include "pluginobject/featureaccess.h"
#include "pluginobject/shadingcorrection/process/camerastate/savedentry.h"

/// Saves the trigger mode, switches the trigger off, and puts the mode back. User-interface thread only.
class CTriggerGuard {
public:
  /// Forgets the saved mode, unless the camera has refused to take it back.
  void Forget() { m_mode.Forget(); }
  int32_t Save(const CFeatureAccess &features) { return m_mode.Save(features); }
  /// Writes "Off" where the saved mode is "On".
  int32_t SwitchOff(const CFeatureAccess &features);
  /// Writes the saved mode; failures are ignored. A mode that was never read is left alone.
  void Restore(const CFeatureAccess &features) { m_mode.Restore(features); }

private:
  CSavedEntry m_mode{"TriggerMode"};
};
