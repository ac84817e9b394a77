/// \file
/// Name, access mode and lock of one node, and the checks that every access starts with.
#pragma once

#include <mutex>
#include <optional>
#include <string>

#include <GenApi/GenApi.h>

#include "genapi/softwarenodemap/valueorcallback.h"

namespace ffc::genapi {

/// Held by each node of a software node map. The mutex belongs to the map and is recursive, because
/// callbacks run with it held and may use other nodes of the same map.
class CNodeGuard {
public:
  using Lock = std::unique_lock<std::recursive_mutex>;

  CNodeGuard(std::string strName, std::recursive_mutex &mutex);

  const std::string &GetName() const { return m_strName; }
  Lock Acquire() const { return Lock(m_mutex); }

  void SetAccess(CValueOrCallback<GenApi::EAccessMode> access) { m_access = std::move(access); }
  /// \param eUndeclared the mode of a node whose declaration named none
  GenApi::EAccessMode GetAccess(GenApi::EAccessMode eUndeclared) const;

  /// AccessException for NI and NA.
  void CheckAvailable(GenApi::EAccessMode eMode) const;
  /// Also AccessException when verified and not readable.
  void CheckReadable(GenApi::EAccessMode eMode, bool bVerify) const;
  /// Also AccessException when verified and not writable, and always when nothing takes the value.
  void CheckWritable(GenApi::EAccessMode eMode, bool bVerify, bool bHasWritePath) const;

  [[noreturn]] void ThrowAccess(const std::string &strReason) const;
  [[noreturn]] void ThrowOutOfRange(const std::string &strReason) const;
  [[noreturn]] void ThrowInvalidArgument(const std::string &strReason) const;
  [[noreturn]] void ThrowRuntime(const std::string &strReason) const;

private:
  std::string Describe(const std::string &strReason) const;

  std::string m_strName;
  std::recursive_mutex &m_mutex;
  std::optional<CValueOrCallback<GenApi::EAccessMode>> m_access;
};

} // namespace ffc::genapi
