/// \file
/// The trigger mode around an acquisition from the running stream.
#pragma once

#include <cstdint>
#include <string>

#include "pluginobject/featureaccess.h"

/// Saves the trigger mode, switches the trigger off, and puts the mode back. User-interface thread only.
class CTriggerGuard {
public:
  int32_t Save(const CFeatureAccess &features);
  /// Writes "Off" where the saved mode is "On".
  int32_t SwitchOff(const CFeatureAccess &features) const;
  /// Writes the saved mode; failures are ignored. A mode that was never read is left alone.
  void Restore(const CFeatureAccess &features) const;

private:
  std::string m_strTriggerMode;
};
