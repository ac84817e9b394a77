/// \file
/// The user sets of a camera in software.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <variant>
#include <vector>

#include "genapi/softwarenodemap/softwarenodemap.h"

namespace ffc::test {

/// "Default", the factory set, and "UserSet0", with the features UserSetSelector, UserSetDefault, UserSetSave and
/// UserSetLoad. A set holds every integer, float and enumeration of the map that is writable when the first set
/// is saved, but for the user sets' own features. Neither command runs while TLParamsLocked is not zero, and the
/// factory set is not overwritten.
class CUserSets {
public:
  /// A state that no feature's store holds.
  using FnTake = std::function<std::vector<double>()>;
  using FnPut = std::function<void(const std::vector<double> &listState)>;

  /// \param map has TLParamsLocked and outlives this object
  CUserSets(genapi::CSoftwareNodeMap &map, FnTake fnTake, FnPut fnPut);
  CUserSets(const CUserSets &) = delete;
  CUserSets &operator=(const CUserSets &) = delete;

  /// Whether a streaming camera refuses UserSetSave too; yes unless set.
  void SetSaveLocked(bool bSaveLocked) { m_bSaveLocked = bSaveLocked; }

  /// The owner's ways, without any check.
  void Save(const std::string &strSet);
  void Load(const std::string &strSet);

private:
  using Value = std::variant<int64_t, double>;
  struct SState {
    std::map<std::string, Value> mapValues;
    std::vector<double> listMore;
  };

  void AddCommands();
  void ListNodes();
  std::string GetSelected() const;

  genapi::CSoftwareNodeMap &m_map;
  FnTake m_fnTake;
  FnPut m_fnPut;
  std::vector<GenApi::INode *> m_listNodes; // whose values the sets hold
  std::map<std::string, SState> m_mapSets;
  std::atomic<bool> m_bSaveLocked{true};
};

} // namespace ffc::test
