#include "genapi/softwarenodemap/nodeguard.h"

#include <utility>

namespace ffc::genapi {

CNodeGuard::CNodeGuard(std::string strName, std::recursive_mutex &mutex) : m_strName(std::move(strName)), m_mutex(mutex)
{
}

GenApi::EAccessMode CNodeGuard::GetAccess(GenApi::EAccessMode eUndeclared) const
{
  return m_access ? m_access->Get() : eUndeclared;
}

void CNodeGuard::CheckAvailable(GenApi::EAccessMode eMode) const
{
  if (!GenApi::IsImplemented(eMode)) {
    ThrowAccess("node is not implemented");
  }
  if (!GenApi::IsAvailable(eMode)) {
    ThrowAccess("node is not available");
  }
}

void CNodeGuard::CheckReadable(GenApi::EAccessMode eMode, bool bVerify) const
{
  CheckAvailable(eMode);
  if (bVerify && !GenApi::IsReadable(eMode)) {
    ThrowAccess("node is not readable");
  }
}

void CNodeGuard::CheckWritable(GenApi::EAccessMode eMode, bool bVerify, bool bHasWritePath) const
{
  CheckAvailable(eMode);
  if (!bHasWritePath || (bVerify && !GenApi::IsWritable(eMode))) {
    ThrowAccess("node is not writable");
  }
}

void CNodeGuard::ThrowAccess(const std::string &strReason) const
{
  throw GenICam::AccessException(Describe(strReason).c_str(), __FILE__, __LINE__);
}

void CNodeGuard::ThrowOutOfRange(const std::string &strReason) const
{
  throw GenICam::OutOfRangeException(Describe(strReason).c_str(), __FILE__, __LINE__);
}

void CNodeGuard::ThrowInvalidArgument(const std::string &strReason) const
{
  throw GenICam::InvalidArgumentException(Describe(strReason).c_str(), __FILE__, __LINE__);
}

void CNodeGuard::ThrowRuntime(const std::string &strReason) const
{
  throw GenICam::RuntimeException(Describe(strReason).c_str(), __FILE__, __LINE__);
}

std::string CNodeGuard::Describe(const std::string &strReason) const
{
  return "Node '" + m_strName + "': " + strReason;
}

} // namespace ffc::genapi
