/// \file
/// The camera's user sets, and the user's state that an acquisition keeps in one of them.
#pragma once

#include <cstdint>
#include <string>

#include "pluginobject/featureaccess.h"

namespace ffc::process {

/// Selects a user set and saves the camera's state into it. \return the code of the first failing step
[[nodiscard]] int32_t SaveUserSet(const pluginobject::CFeatureAccess &features, const char *pUserSet);

/// Keeps the user's whole state in "UserSet0" during an acquisition, and what UserSetSelector was before.
/// User-interface thread only.
class CUserSetGuard {
public:
  /// Forgets everything. Until SwitchToDefault has saved the user's state, Restore then loads nothing: that would
  /// bring an older state over the user's live one. Only when no restore is pending.
  void BeginAcquisition();
  /// Reads which user set is selected.
  [[nodiscard]] int32_t SaveSelector(const pluginobject::CFeatureAccess &features);
  /// Saves the user's state into "UserSet0" and loads "Default".
  /// \return the code of the first failing step; -1013 while a restore is pending, and nothing is done
  [[nodiscard]] int32_t SwitchToDefault(const pluginobject::CFeatureAccess &features);

  /// Loads "UserSet0" and writes the selector back, each a second time when the first fails.
  void Restore(const pluginobject::CFeatureAccess &features);
  /// Whether "UserSet0" has the only copy of the user's state: an acquisition has saved it there, and the camera has
  /// refused to load it. Nothing may be saved into "UserSet0" then. The next Restore tries again.
  bool IsRestorePending() const { return m_bRestorePending; }
  /// What the user has set since stays.
  void DropPendingRestore() { m_bRestorePending = false; }

  /// Whether the camera has refused to take the selector back.
  bool IsSelectorMoved() const { return m_bSelectorMoved && !m_strSelector.empty(); }
  /// Reads the selector again, for it to be written back; what an acquisition has left there is not the user's.
  [[nodiscard]] int32_t RefreshSelector(const pluginobject::CFeatureAccess &features);
  /// Writes the selector back where an acquisition has moved it. One that was never read is not written.
  void RestoreSelector(const pluginobject::CFeatureAccess &features);

private:
  [[nodiscard]] int32_t Run(const pluginobject::CFeatureAccess &features, const char *pUserSet, const char *pCommand);

  std::string m_strSelector;     // the user's
  std::string m_strLastSelected; // by this object
  bool m_bSelectorMoved = false;
  bool m_bAcquiring = false;
  bool m_bStateSaved = false; // in this acquisition
  bool m_bRestorePending = false;
};

} // namespace ffc::process
