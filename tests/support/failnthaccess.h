/// \file
/// A hook that makes one access fail.
#pragma once

#include <atomic>
#include <cstdint>

#include "genapi/softwarenodemap/nodeaccess.h"

namespace ffc::test {

/// What the failing access throws: one of GenICam's exceptions, std::bad_alloc, or an int, which no
/// handler by type expects.
enum class EAccessFailure {
  Generic,
  BadAllocGenICam,
  InvalidArgument,
  OutOfRange,
  Property,
  Runtime,
  LogicalError,
  Access,
  Timeout,
  DynamicCast,
  BadAlloc,
  Foreign
};

constexpr EAccessFailure ALL_ACCESS_FAILURES[] = {
  EAccessFailure::Generic,      EAccessFailure::BadAllocGenICam, EAccessFailure::InvalidArgument,
  EAccessFailure::OutOfRange,   EAccessFailure::Property,        EAccessFailure::Runtime,
  EAccessFailure::LogicalError, EAccessFailure::Access,          EAccessFailure::Timeout,
  EAccessFailure::DynamicCast,  EAccessFailure::BadAlloc,        EAccessFailure::Foreign,
};

/// The text of every exception that has one.
constexpr const char ACCESS_FAILURE_TEXT[] = "access made to fail";

/// Counts accesses of every kind, look-ups included, and fails the n-th of them, once. A sweep runs
/// the same work with n = 1, 2, ... until GetCount() stays below n. Give it to a map with std::ref.
class CFailNthAccess {
public:
  /// \param nFailAt counts from 1; 0 never fails
  CFailNthAccess(uint64_t nFailAt, EAccessFailure eFailure) : m_nFailAt(nFailAt), m_eFailure(eFailure) {}

  void operator()(const genapi::SNodeAccess &stAccess);

  uint64_t GetCount() const { return m_nCount; }

private:
  const uint64_t m_nFailAt;
  const EAccessFailure m_eFailure;
  std::atomic<uint64_t> m_nCount{0};
};

} // namespace ffc::test
