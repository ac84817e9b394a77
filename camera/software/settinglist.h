/// \file
/// The settings of a camera as one thing that can be kept and brought back.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <variant>

#include "genapi/softwarenodemap/softwarenodemap.h"

namespace ffc::camera {

using SettingValue = std::variant<int64_t, double>;
/// The values of all settings at one moment, by name.
using SettingSnapshot = std::map<std::string, SettingValue>;

/// Keeps and brings back values past the checks that a node makes of each write, so that no order of
/// writing matters: what was kept at one moment fits together. Whoever calls holds the map's lock.
class CSettingList {
public:
  struct SSetting {
    std::function<SettingValue()> fnGet;
    std::function<void(const SettingValue &)> fnSet;          ///< does not throw
    std::function<bool(const SettingValue &)> fnIsAcceptable; ///< asked when all settings are set
  };

  void Add(const std::string &strName, SSetting stSetting);
  /// Keeps a node of that name out.
  void Exclude(const std::string &strName) { m_setExcluded.insert(strName); }
  /// Each number and enumeration that can be written now, except those excluded or added before.
  void AddNodes(const genapi::CSoftwareNodeMap &map);

  SettingSnapshot Save() const;
  /// \return false when the names, the kinds or the values are not this camera's; then all is as before
  bool Load(const SettingSnapshot &mapSnapshot) const;

private:
  template <class TNode, class TAcceptable>
  void AddNode(TNode &node, TAcceptable fnIsAcceptable);
  void SetAll(const SettingSnapshot &mapSnapshot) const;
  bool AreAcceptable(const SettingSnapshot &mapSnapshot) const;

  std::map<std::string, SSetting> m_mapSettings;
  std::set<std::string> m_setExcluded;
};

} // namespace ffc::camera
