/// \file
/// One access to a node map, as an observer sees it before it happens.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace ffc::genapi {

struct SNodeAccess {
  enum class EKind {
    LookUp,          ///< the map is asked for a node
    AccessMode,      ///< of a node
    EntryAccessMode, ///< of an entry; the node is named "<enumeration>.<symbolic>"
    Read,            ///< a value, or its text
    Write,           ///< a value, or its text
    Limit,           ///< minimum, maximum, increment, greatest length
    Entries,         ///< the list, or one entry of it by name or value
    CurrentEntry,
    EntryValue, ///< the value or text of an entry; named like EntryAccessMode
    Execute,
    IsDone,
    RegisterRead,
    RegisterWrite,
    RegisterLength, ///< or address
  };

  EKind eKind = EKind::LookUp;
  std::string strNode;
  std::string strValue; ///< what Write writes, as the node's text
  int64_t nLength = 0;  ///< bytes that RegisterRead and RegisterWrite move
};

/// Called on the accessing thread, before the access; what it throws takes the access's place.
using NodeAccessHook = std::function<void(const SNodeAccess &stAccess)>;

} // namespace ffc::genapi
