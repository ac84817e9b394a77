#include "genapi/softwarenodemap/enumerationnode.h"

#include <algorithm>

namespace ffc::genapi {

CSoftwareEnumEntry::CSoftwareEnumEntry(const std::string &strEnumeration, std::string strSymbolic, int64_t nValue,
                                       std::recursive_mutex &mutex)
  : CSoftwareNode("EnumEntry_" + strEnumeration + "_" + strSymbolic, mutex), m_strSymbolic(std::move(strSymbolic)),
    m_nValue(nValue)
{
}

GenApi::EAccessMode CSoftwareEnumEntry::GetAccessMode() const
{
  const auto lock = m_guard.Acquire();
  return m_guard.GetAccess(GenApi::RO);
}

GenICam::gcstring CSoftwareEnumEntry::ToString(bool bVerify, bool)
{
  m_guard.CheckReadable(GetAccessMode(), bVerify);
  return GetSymbolic();
}

void CSoftwareEnumEntry::FromString(const GenICam::gcstring &, bool)
{
  m_guard.ThrowAccess("node is not writable");
}

CSoftwareEnumeration::CSoftwareEnumeration(std::string strName, std::recursive_mutex &mutex)
  : CSoftwareValueNode(std::move(strName), mutex), m_mutex(mutex)
{
}

CSoftwareEnumeration &CSoftwareEnumeration::Entry(const std::string &strSymbolic, int64_t nValue,
                                                  CValueOrCallback<GenApi::EAccessMode> access)
{
  const auto lock = m_guard.Acquire();
  auto pEntry = std::make_unique<CSoftwareEnumEntry>(m_guard.GetName(), strSymbolic, nValue, m_mutex);
  pEntry->Access(std::move(access));
  m_listEntries.push_back(std::move(pEntry));
  return m_listEntries.size() == 1 ? Poke(nValue) : *this;
}

CSoftwareEnumeration &CSoftwareEnumeration::Select(const std::string &strSymbolic)
{
  const auto lock = m_guard.Acquire();
  CSoftwareEnumEntry *pEntry = FindByName(strSymbolic.c_str());
  if (pEntry == nullptr) {
    m_guard.ThrowInvalidArgument("there is no entry '" + strSymbolic + "'");
  }
  return Poke(pEntry->GetValue());
}

std::string CSoftwareEnumeration::PeekSymbolic() const
{
  const auto lock = m_guard.Acquire();
  const CSoftwareEnumEntry *pEntry = FindByValue(Peek());
  return pEntry == nullptr ? std::string() : std::string(pEntry->GetSymbolic().c_str());
}

void CSoftwareEnumeration::GetEntries(GenApi::NodeList_t &listEntries)
{
  const auto lock = m_guard.Acquire();
  CheckAvailable();
  for (const auto &pEntry : m_listEntries) {
    listEntries.push_back(pEntry.get());
  }
}

void CSoftwareEnumeration::SetIntValue(int64_t nValue, bool bVerify)
{
  const auto lock = m_guard.Acquire();
  if (CheckWritable(bVerify)) {
    const CSoftwareEnumEntry *pEntry = FindByValue(nValue);
    if (pEntry == nullptr) {
      m_guard.ThrowInvalidArgument("there is no entry with value " + std::to_string(nValue));
    }
    if (!GenApi::IsAvailable(pEntry)) {
      m_guard.ThrowAccess("entry '" + std::string(pEntry->GetSymbolic().c_str()) + "' is not available");
    }
  }
  Write(nValue);
}

int64_t CSoftwareEnumeration::GetIntValue(bool bVerify, bool)
{
  const auto lock = m_guard.Acquire();
  return Read(bVerify);
}

GenApi::IEnumEntry *CSoftwareEnumeration::GetEntryByName(const GenICam::gcstring &strSymbolic)
{
  const auto lock = m_guard.Acquire();
  CheckAvailable();
  return FindByName(strSymbolic);
}

GenApi::IEnumEntry *CSoftwareEnumeration::GetEntry(const int64_t nValue)
{
  const auto lock = m_guard.Acquire();
  CheckAvailable();
  return FindByValue(nValue);
}

GenApi::IEnumEntry *CSoftwareEnumeration::GetCurrentEntry(bool bVerify, bool)
{
  const auto lock = m_guard.Acquire();
  return FindByValue(Read(bVerify));
}

GenICam::gcstring CSoftwareEnumeration::ToString(bool bVerify, bool)
{
  const auto lock = m_guard.Acquire();
  const int64_t nValue = Read(bVerify);
  const CSoftwareEnumEntry *pEntry = FindByValue(nValue);
  if (pEntry == nullptr) {
    m_guard.ThrowRuntime("its value " + std::to_string(nValue) + " belongs to no entry");
  }
  return pEntry->GetSymbolic();
}

void CSoftwareEnumeration::FromString(const GenICam::gcstring &strValue, bool bVerify)
{
  const auto lock = m_guard.Acquire();
  CheckWritable(bVerify);
  CSoftwareEnumEntry *pEntry = FindByName(strValue);
  if (pEntry == nullptr) {
    m_guard.ThrowInvalidArgument("there is no entry '" + std::string(strValue.c_str()) + "'");
  }
  SetIntValue(pEntry->GetValue(), bVerify);
}

CSoftwareEnumEntry *CSoftwareEnumeration::FindByName(const GenICam::gcstring &strSymbolic) const
{
  const auto itEntry = std::find_if(m_listEntries.begin(), m_listEntries.end(),
                                    [&](const auto &pEntry) { return pEntry->HasSymbolic(strSymbolic); });
  return itEntry == m_listEntries.end() ? nullptr : itEntry->get();
}

CSoftwareEnumEntry *CSoftwareEnumeration::FindByValue(int64_t nValue) const
{
  const auto itEntry = std::find_if(m_listEntries.begin(), m_listEntries.end(),
                                    [&](const auto &pEntry) { return pEntry->GetValue() == nValue; });
  return itEntry == m_listEntries.end() ? nullptr : itEntry->get();
}

} // namespace ffc::genapi
