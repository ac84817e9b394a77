#include "tests/support/failnthaccess.h"

#include <new>

#include <GenApi/GenApi.h>

namespace ffc::test {

namespace {

template <class TException>
[[noreturn]] void ThrowGenICam()
{
  throw TException(ACCESS_FAILURE_TEXT, __FILE__, __LINE__);
}

[[noreturn]] void ThrowFailure(EAccessFailure eFailure)
{
  switch (eFailure) {
  case EAccessFailure::Generic: ThrowGenICam<GenICam::GenericException>();
  case EAccessFailure::BadAllocGenICam: ThrowGenICam<GenICam::BadAllocException>();
  case EAccessFailure::InvalidArgument: ThrowGenICam<GenICam::InvalidArgumentException>();
  case EAccessFailure::OutOfRange: ThrowGenICam<GenICam::OutOfRangeException>();
  case EAccessFailure::Property: ThrowGenICam<GenICam::PropertyException>();
  case EAccessFailure::Runtime: ThrowGenICam<GenICam::RuntimeException>();
  case EAccessFailure::LogicalError: ThrowGenICam<GenICam::LogicalErrorException>();
  case EAccessFailure::Access: ThrowGenICam<GenICam::AccessException>();
  case EAccessFailure::Timeout: ThrowGenICam<GenICam::TimeoutException>();
  case EAccessFailure::DynamicCast: ThrowGenICam<GenICam::DynamicCastException>();
  case EAccessFailure::BadAlloc: throw std::bad_alloc();
  case EAccessFailure::Foreign: break;
  }
  throw 42; // NOLINT(hicpp-exception-baseclass): a type that nobody expects
}

} // namespace

void CFailNthAccess::operator()(const genapi::SNodeAccess &)
{
  if (++m_nCount == m_nFailAt) {
    ThrowFailure(m_eFailure);
  }
}

} // namespace ffc::test
