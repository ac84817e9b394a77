#include "camera/aravis/nodemap/aravisnode.h"

#include <utility>

#include "camera/aravis/nodemap/nodeaccessmode.h"

namespace ffc::camera {

namespace {

const char LOST[] = "the camera does not answer any more";

bool IsDeviceError(const GError *pError, ArvDeviceError eCode)
{
  return g_error_matches(pError, ARV_DEVICE_ERROR, eCode) != FALSE;
}

/// The camera does not answer: the library has asked it several times before it reports that.
bool IsSilence(const GError *pError)
{
  return IsDeviceError(pError, ARV_DEVICE_ERROR_TIMEOUT) || IsDeviceError(pError, ARV_DEVICE_ERROR_NOT_CONNECTED);
}

bool IsRefusal(const GError *pError)
{
  return IsDeviceError(pError, ARV_DEVICE_ERROR_PROTOCOL_ERROR_ACCESS_DENIED) ||
         IsDeviceError(pError, ARV_DEVICE_ERROR_PROTOCOL_ERROR_WRITE_PROTECT) ||
         g_error_matches(pError, ARV_GC_ERROR, ARV_GC_ERROR_READ_ONLY);
}

} // namespace

CAravisNodeCore::CAravisNodeCore(ArvGcFeatureNode *pNode, std::string strName, SNodeMapState &state)
  : m_pNode(pNode), m_guard(std::move(strName), state.mutex), m_link(*state.pLink)
{
  SNodeDemand stDemand = state.examiner.Examine(ARV_GC_NODE(pNode));
  m_strFault = std::move(stDemand.strFault);
  m_listVariable = std::move(stDemand.listVariable);
}

GenApi::EAccessMode CAravisNodeCore::GetAccessMode() const
{
  const auto lock = Acquire();
  if (!m_strFault.empty() || m_link.IsLost()) {
    return m_strFault.empty() ? GenApi::NA : GenApi::NI;
  }
  try {
    CheckLengths();
    return Call([this](GError **ppError) { return AskAccessMode(m_pNode, ppError); });
  } catch (const GenICam::GenericException &) {
    return GenApi::NA;
  }
}

GenApi::EAccessMode CAravisNodeCore::CheckNow() const
{
  if (m_link.IsLost()) {
    m_guard.ThrowRuntime(LOST);
  }
  if (!m_strFault.empty()) {
    m_guard.ThrowAccess("the camera's description of this node cannot be used: " + m_strFault);
  }
  CheckLengths();
  const GenApi::EAccessMode eMode = Call([this](GError **ppError) { return AskAccessMode(m_pNode, ppError); });
  m_guard.CheckAvailable(eMode);
  return eMode;
}

bool CAravisNodeCore::IsAvailable() const
{
  const bool bAvailable = GenApi::IsAvailable(GetAccessMode());
  if (m_link.IsLost()) {
    m_guard.ThrowRuntime(LOST);
  }
  return bAvailable;
}

void CAravisNodeCore::CheckWritable(bool bVerify) const
{
  const GenApi::EAccessMode eMode = CheckNow();
  const bool bHasWritePath =
    GenApi::IsWritable(eMode) ||
    GenApi::IsWritable(Call([this](GError **ppError) { return AskDeclaredMode(m_pNode, ppError); }));
  m_guard.CheckWritable(eMode, bVerify, bHasWritePath);
}

/// The library takes memory for a register's length before it reads.
void CAravisNodeCore::CheckLengths() const
{
  for (ArvGcRegister *pRegister : m_listVariable) {
    const uint64_t nLength =
      Call([pRegister](GError **ppError) { return arv_gc_register_get_length(pRegister, ppError); });
    if (nLength == 0 || nLength > CNodeExaminer::MAX_REGISTER_LENGTH) {
      m_guard.ThrowRuntime("a register of " + std::to_string(nLength) + " bytes cannot be used");
    }
  }
}

void CAravisNodeCore::Judge(const CErrorSlot &error) const
{
  const GError *pError = error.Get();
  if (pError == nullptr) {
    return;
  }
  const std::string strText = "Node '" + m_guard.GetName() + "': " + pError->message;
  if (IsSilence(pError)) {
    m_link.MarkLost();
  }
  if (IsDeviceError(pError, ARV_DEVICE_ERROR_TIMEOUT)) {
    throw GenICam::TimeoutException(strText.c_str(), __FILE__, __LINE__);
  }
  if (IsRefusal(pError)) {
    throw GenICam::AccessException(strText.c_str(), __FILE__, __LINE__);
  }
  if (g_error_matches(pError, ARV_GC_ERROR, ARV_GC_ERROR_OUT_OF_RANGE) != FALSE) {
    throw GenICam::OutOfRangeException(strText.c_str(), __FILE__, __LINE__);
  }
  throw GenICam::RuntimeException(strText.c_str(), __FILE__, __LINE__);
}

} // namespace ffc::camera
