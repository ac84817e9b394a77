#include "camera/aravis/nodemap/aravistexts.h"

#include <cstring>
#include <vector>

#include "camera/aravis/nodemap/nodelinks.h"
#include "genapi/softwarenodemap/numbertext.h"

namespace ffc::camera {

CAravisString::CAravisString(ArvGcFeatureNode *pNode, std::string strName, SNodeMapState &state)
  : CAravisNode(pNode, std::move(strName), state), m_pString(ARV_GC_STRING(pNode))
{
}

void CAravisString::SetValue(const GenICam::gcstring &strValue, bool bVerify)
{
  const auto lock = m_core.Acquire();
  m_core.CheckWritable(bVerify);
  if (bVerify && static_cast<int64_t>(strValue.length()) > GetMaxLength()) {
    m_core.Guard().ThrowOutOfRange("text is longer than " + std::to_string(GetMaxLength()) + " bytes");
  }
  if (bVerify && std::strlen(strValue.c_str()) != strValue.length()) {
    m_core.Guard().ThrowOutOfRange("text has a zero in it");
  }
  m_core.Call([&](GError **ppError) { arv_gc_string_set_value(m_pString, strValue.c_str(), ppError); });
}

GenICam::gcstring CAravisString::GetValue(bool bVerify, bool)
{
  const auto lock = m_core.Acquire();
  m_core.CheckReadable(bVerify);
  ArvGcFeatureNode *pEnd = FindEnd();
  if (ARV_IS_GC_REGISTER(pEnd)) {
    return ReadText(ARV_GC_REGISTER(pEnd));
  }
  // The library's text, or null for none, is only good until the lock is given back.
  return m_core.Call(
    [this](GError **ppError) { return GenICam::gcstring(arv_gc_string_get_value(m_pString, ppError)); });
}

/// The node that the text is kept in at last.
ArvGcFeatureNode *CAravisString::FindEnd() const
{
  ArvGcFeatureNode *pEnd = ARV_GC_FEATURE_NODE(m_pString);
  while (ArvGcFeatureNode *pNext = m_core.Call([pEnd](GError **ppError) { return FindValueNode(pEnd, ppError); })) {
    pEnd = pNext;
  }
  return pEnd;
}

/// A text that fills its register has no zero at its end, and the library's pointer to it none either.
GenICam::gcstring CAravisString::ReadText(ArvGcRegister *pRegister) const
{
  const guint64 nLength =
    m_core.Call([pRegister](GError **ppError) { return arv_gc_register_get_length(pRegister, ppError); });
  std::vector<char> listText(static_cast<std::size_t>(nLength) + 1);
  m_core.Call([&](GError **ppError) { arv_gc_register_get(pRegister, listText.data(), nLength, ppError); });
  return listText.data();
}

int64_t CAravisString::GetMaxLength()
{
  const auto lock = m_core.Acquire();
  m_core.CheckAvailable();
  return m_core.CallForLimit([this](GError **ppError) { return arv_gc_string_get_max_length(m_pString, ppError); });
}

GenICam::gcstring CAravisString::ToString(bool bVerify, bool)
{
  return GetValue(bVerify);
}

void CAravisString::FromString(const GenICam::gcstring &strValue, bool bVerify)
{
  SetValue(strValue, bVerify);
}

CAravisRegister::CAravisRegister(ArvGcFeatureNode *pNode, std::string strName, SNodeMapState &state)
  : CAravisNode(pNode, std::move(strName), state), m_pRegister(ARV_GC_REGISTER(pNode))
{
}

void CAravisRegister::Set(const uint8_t *pBuffer, int64_t nLength, bool bVerify)
{
  const auto lock = m_core.Acquire();
  m_core.CheckWritable(bVerify);
  CheckBlock(pBuffer, nLength);
  m_core.Call(
    [&](GError **ppError) { arv_gc_register_set(m_pRegister, pBuffer, static_cast<guint64>(nLength), ppError); });
}

void CAravisRegister::Get(uint8_t *pBuffer, int64_t nLength, bool bVerify, bool)
{
  const auto lock = m_core.Acquire();
  m_core.CheckReadable(bVerify);
  CheckBlock(pBuffer, nLength);
  m_core.Call(
    [&](GError **ppError) { arv_gc_register_get(m_pRegister, pBuffer, static_cast<guint64>(nLength), ppError); });
}

int64_t CAravisRegister::GetLength(bool)
{
  const auto lock = m_core.Acquire();
  m_core.CheckAvailable();
  return AskLength();
}

int64_t CAravisRegister::GetAddress(bool)
{
  const auto lock = m_core.Acquire();
  m_core.CheckAvailable();
  return m_core.Call(
    [this](GError **ppError) { return static_cast<int64_t>(arv_gc_register_get_address(m_pRegister, ppError)); });
}

GenICam::gcstring CAravisRegister::ToString(bool bVerify, bool)
{
  const auto lock = m_core.Acquire();
  m_core.CheckReadable(bVerify);
  std::vector<uint8_t> listBytes(static_cast<std::size_t>(AskLength()));
  Get(listBytes.data(), static_cast<int64_t>(listBytes.size()), bVerify);
  return genapi::FormatBytes(listBytes).c_str();
}

void CAravisRegister::FromString(const GenICam::gcstring &strValue, bool bVerify)
{
  const auto lock = m_core.Acquire();
  m_core.CheckWritable(bVerify);
  const auto listBytes = genapi::ParseBytes(strValue.c_str());
  if (!listBytes) {
    m_core.Guard().ThrowInvalidArgument("text is no block of bytes");
  }
  Set(listBytes->data(), static_cast<int64_t>(listBytes->size()), bVerify);
}

int64_t CAravisRegister::AskLength() const
{
  return m_core.Call(
    [this](GError **ppError) { return static_cast<int64_t>(arv_gc_register_get_length(m_pRegister, ppError)); });
}

void CAravisRegister::CheckBlock(const void *pBuffer, int64_t nLength) const
{
  if (pBuffer == nullptr) {
    m_core.Guard().ThrowInvalidArgument("there is no buffer");
  }
  // The library fills up a shorter block with zeros and cuts a longer one.
  const int64_t nOwnLength = AskLength();
  if (nLength != nOwnLength) {
    m_core.Guard().ThrowOutOfRange("register has " + std::to_string(nOwnLength) + " bytes, not " +
                                   std::to_string(nLength));
  }
}

} // namespace ffc::camera
