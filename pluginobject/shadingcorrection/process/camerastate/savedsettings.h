/// \file
/// Single settings of the camera that an acquisition saves, changes and writes back.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "pluginobject/featureaccess.h"
#include "pluginobject/statuscode.h"

namespace ffc::process {

/// Restoring is tried, and tried once more; what the camera refuses then stays as it is. So no acquisition fails,
/// and none finds the settings of an earlier one, because a camera refused to take something back.
/// \return the last status
template <class TWrite>
[[nodiscard]] int32_t TryTwice(TWrite fnWrite)
{
  const int32_t nStatus = fnWrite();
  return nStatus == PLUGIN_STATUS_SUCCESS ? nStatus : fnWrite();
}

/// The entry of one enumeration. User-interface thread only.
class CSavedEntry {
public:
  /// \param pName of the enumeration, for the life of this object
  explicit CSavedEntry(const char *pName) : m_pName(pName) {}

  /// Forgets what was saved.
  void Forget();
  /// Reads the entry, to be written back by the next Restore. \return the code of what failed
  [[nodiscard]] int32_t Save(const pluginobject::CFeatureAccess &features);
  /// The entry last read, empty when there is none.
  const std::string &Get() const { return m_strSaved; }
  /// Writes another entry in its place. Only when the camera took it is there something to write back.
  [[nodiscard]] int32_t Replace(const pluginobject::CFeatureAccess &features, const char *pEntry);
  /// Writes the saved entry, a second time when the first fails; once for each Save or Replace: what the user
  /// chooses afterwards stays. One that was never read is left alone.
  void Restore(const pluginobject::CFeatureAccess &features);

private:
  const char *m_pName;
  std::string m_strSaved;
  bool m_bToRestore = false;
};

/// Writes "Off" where the saved trigger mode is "On".
[[nodiscard]] int32_t SwitchTriggerOff(const pluginobject::CFeatureAccess &features, CSavedEntry &triggerMode);

/// Whether the host's stream ran before an acquisition: the saved TLParamsLocked. User-interface thread only.
class CStreamingState {
public:
  [[nodiscard]] int32_t Save(const pluginobject::CFeatureAccess &features)
  {
    return features.GetIntFeature("TLParamsLocked", m_nTLParamsLocked);
  }
  /// After a save of the camera's state that failed before this value was read: the restore that follows
  /// stops the stream, and without knowing that it ran nobody would start it again.
  void SaveLate(const pluginobject::CFeatureAccess &features);
  bool WasStreaming() const { return m_nTLParamsLocked != 0; }

private:
  int64_t m_nTLParamsLocked = 0;
};

/// A number that is written over the one of another user set. User-interface thread only.
/// \tparam TNumber float or int64_t
template <class TNumber>
class CSavedNumber {
public:
  /// \param pName of the feature, for the life of this object
  explicit CSavedNumber(const char *pName) : m_pName(pName) {}

  [[nodiscard]] int32_t Save(const pluginobject::CFeatureAccess &features);
  TNumber Get() const { return m_saved; }
  /// Writes the saved number.
  [[nodiscard]] int32_t Write(const pluginobject::CFeatureAccess &features);
  /// Takes what the camera has now for what was written, where it tells: it may have made another number of it.
  void ReadBack(const pluginobject::CFeatureAccess &features);
  /// Reads whether the camera still has what was written or read back; so it does when nothing was.
  [[nodiscard]] int32_t Compare(const pluginobject::CFeatureAccess &features, bool &bUnchanged) const;

private:
  const char *m_pName;
  TNumber m_saved = 0;
  std::optional<TNumber> m_written;
};

extern template class CSavedNumber<float>;
extern template class CSavedNumber<int64_t>;

} // namespace ffc::process
