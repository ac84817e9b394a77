#include "camera/aravis/nodemap/aravisenumeration.h"

#include <algorithm>

namespace ffc::camera {

CAravisEnumEntry::CAravisEnumEntry(ArvGcFeatureNode *pNode, const std::string &strEnumeration, std::string strSymbolic,
                                   int64_t nValue, SNodeMapState &state)
  : CAravisNode(pNode, "EnumEntry_" + strEnumeration + "_" + strSymbolic, state), m_strSymbolic(std::move(strSymbolic)),
    m_nValue(nValue)
{
}

GenICam::gcstring CAravisEnumEntry::ToString(bool bVerify, bool)
{
  const auto lock = m_core.Acquire();
  m_core.CheckReadable(bVerify);
  return GetSymbolic();
}

void CAravisEnumEntry::FromString(const GenICam::gcstring &, bool)
{
  m_core.Guard().ThrowAccess("node is not writable");
}

CAravisEnumeration::CAravisEnumeration(ArvGcFeatureNode *pNode, std::string strName, SNodeMapState &state)
  : CAravisNode(pNode, std::move(strName), state), m_pEnumeration(ARV_GC_ENUMERATION(pNode))
{
  for (const GSList *pItem = arv_gc_enumeration_get_entries(m_pEnumeration); pItem != nullptr; pItem = pItem->next) {
    auto *pEntry = static_cast<ArvGcFeatureNode *>(pItem->data);
    const char *pSymbolic = arv_gc_feature_node_get_name(pEntry);
    CErrorSlot error;
    const int64_t nValue = arv_gc_enum_entry_get_value(ARV_GC_ENUM_ENTRY(pEntry), error.Out());
    if (pSymbolic != nullptr && error.Get() == nullptr) {
      m_listEntries.push_back(
        std::make_unique<CAravisEnumEntry>(pEntry, m_core.Guard().GetName(), pSymbolic, nValue, state));
    }
  }
  // The library lists them in reverse order.
  std::reverse(m_listEntries.begin(), m_listEntries.end());
}

GenApi::EAccessMode CAravisEnumeration::GetAccessMode() const
{
  const auto lock = m_core.Acquire();
  const GenApi::EAccessMode eMode = m_core.GetAccessMode();
  return GenApi::IsAvailable(eMode) && !HasEntries() ? GenApi::NI : eMode;
}

/// Whether the camera has one of them, which never changes; a description may name none.
bool CAravisEnumeration::HasEntries() const
{
  m_bHasEntries = m_bHasEntries || m_listEntries.empty() ||
                  std::any_of(m_listEntries.begin(), m_listEntries.end(),
                              [](const auto &pEntry) { return GenApi::IsImplemented(pEntry.get()); });
  return m_bHasEntries;
}

void CAravisEnumeration::CheckEntries() const
{
  if (!HasEntries()) {
    m_core.Guard().ThrowAccess("none of its entries is implemented");
  }
}

void CAravisEnumeration::GetEntries(GenApi::NodeList_t &listEntries)
{
  for (const auto &pEntry : m_listEntries) {
    listEntries.push_back(pEntry.get());
  }
}

void CAravisEnumeration::SetIntValue(int64_t nValue, bool bVerify)
{
  const auto lock = m_core.Acquire();
  m_core.CheckWritable(bVerify);
  CheckEntries();
  if (bVerify) {
    const CAravisEnumEntry *pEntry = FindByValue(nValue);
    if (pEntry == nullptr) {
      m_core.Guard().ThrowInvalidArgument("there is no entry with value " + std::to_string(nValue));
    }
    if (!GenApi::IsAvailable(pEntry)) {
      m_core.Guard().ThrowAccess("entry '" + std::string(pEntry->GetSymbolic().c_str()) + "' is not available");
    }
  }
  m_core.Call([&](GError **ppError) { arv_gc_enumeration_set_int_value(m_pEnumeration, nValue, ppError); });
}

int64_t CAravisEnumeration::GetIntValue(bool bVerify, bool)
{
  const auto lock = m_core.Acquire();
  m_core.CheckReadable(bVerify);
  CheckEntries();
  return m_core.Call([this](GError **ppError) { return arv_gc_enumeration_get_int_value(m_pEnumeration, ppError); });
}

GenApi::IEnumEntry *CAravisEnumeration::GetEntryByName(const GenICam::gcstring &strSymbolic)
{
  return FindByName(strSymbolic);
}

GenApi::IEnumEntry *CAravisEnumeration::GetEntry(const int64_t nValue)
{
  return FindByValue(nValue);
}

GenApi::IEnumEntry *CAravisEnumeration::GetCurrentEntry(bool bVerify, bool)
{
  return FindByValue(GetIntValue(bVerify));
}

GenICam::gcstring CAravisEnumeration::ToString(bool bVerify, bool)
{
  const int64_t nValue = GetIntValue(bVerify);
  const CAravisEnumEntry *pEntry = FindByValue(nValue);
  if (pEntry == nullptr) {
    m_core.Guard().ThrowRuntime("its value " + std::to_string(nValue) + " belongs to no entry");
  }
  return pEntry->GetSymbolic();
}

void CAravisEnumeration::FromString(const GenICam::gcstring &strValue, bool bVerify)
{
  const auto lock = m_core.Acquire();
  m_core.CheckWritable(bVerify);
  CAravisEnumEntry *pEntry = FindByName(strValue);
  if (pEntry == nullptr) {
    m_core.Guard().ThrowInvalidArgument("there is no entry '" + std::string(strValue.c_str()) + "'");
  }
  SetIntValue(pEntry->GetValue(), bVerify);
}

CAravisEnumEntry *CAravisEnumeration::FindByName(const GenICam::gcstring &strSymbolic) const
{
  const auto itEntry = std::find_if(m_listEntries.begin(), m_listEntries.end(),
                                    [&](const auto &pEntry) { return pEntry->GetSymbolic() == strSymbolic; });
  return itEntry == m_listEntries.end() ? nullptr : itEntry->get();
}

CAravisEnumEntry *CAravisEnumeration::FindByValue(int64_t nValue) const
{
  const auto itEntry = std::find_if(m_listEntries.begin(), m_listEntries.end(),
                                    [&](const auto &pEntry) { return pEntry->GetValue() == nValue; });
  return itEntry == m_listEntries.end() ? nullptr : itEntry->get();
}

} // namespace ffc::camera
