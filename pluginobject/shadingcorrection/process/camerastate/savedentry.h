/// \file
/// An entry of an enumeration that an acquisition changes and puts back.
#pragma once

#include <cstdint>
#include <string>

#include "pluginobject/featureaccess.h"

/// Keeps the entry of one enumeration. What the camera refuses to take back is owed to it: it is written before the
/// entry is read anew, so that a camera that was away for a while does not make the acquisition's own setting the
/// user's. User-interface thread only.
class CSavedEntry {
public:
  /// \param pName of the enumeration, for the life of this object
  explicit CSavedEntry(const char *pName) : m_pName(pName) {}

  /// Forgets what was saved, unless it is owed.
  void Forget();
  /// Reads the entry, after what is owed has been put back. \return the code of what failed
  int32_t Save(const CFeatureAccess &features);
  /// Empty when it was never read.
  const std::string &Get() const { return m_strSaved; }
  /// Writes another entry in its place.
  int32_t Replace(const CFeatureAccess &features, const char *pEntry);
  /// Writes the saved entry, a second time when the first fails. One that was never read is left alone.
  void Restore(const CFeatureAccess &features);

private:
  int32_t PutBack(const CFeatureAccess &features);

  const char *m_pName;
  std::string m_strSaved;
  bool m_bReplaced = false; // another entry stands in its place
  bool m_bOwed = false;
};
