/// \file
/// The software node with named entries.
#pragma once

#include <memory>
#include <vector>

#include "genapi/softwarenodemap/softwarenode.h"

namespace ffc::genapi {

class CSoftwareEnumeration;

/// One entry; its node name is "EnumEntry_<enumeration>_<symbolic>". RO unless declared otherwise.
class CSoftwareEnumEntry final : public CSoftwareNode<CSoftwareEnumEntry, GenApi::IEnumEntry> {
public:
  CSoftwareEnumEntry(const std::string &strEnumeration, std::string strSymbolic, int64_t nValue,
                     std::recursive_mutex &mutex);

  GenApi::EAccessMode GetAccessMode() const override;
  int64_t GetValue() override { return m_nValue; }
  GenICam::gcstring GetSymbolic() const override { return m_strSymbolic.c_str(); }
  GenICam::gcstring ToString(bool bVerify = false, bool bIgnoreCache = false) override;
  /// AccessException: an entry is not written.
  void FromString(const GenICam::gcstring &strValue, bool bVerify = true) override;

  bool HasSymbolic(const GenICam::gcstring &strSymbolic) const { return strSymbolic == m_strSymbolic.c_str(); }

private:
  std::string m_strSymbolic;
  int64_t m_nValue;
};

/// Holds the integer value, which may belong to no entry: then there is no current entry.
class CSoftwareEnumeration final : public CSoftwareValueNode<CSoftwareEnumeration, GenApi::IEnumeration, int64_t> {
public:
  CSoftwareEnumeration(std::string strName, std::recursive_mutex &mutex);

  /// Entries keep the order of their declaration; the first one is the value until another is set.
  CSoftwareEnumeration &Entry(const std::string &strSymbolic, int64_t nValue,
                              CValueOrCallback<GenApi::EAccessMode> access = GenApi::RO);
  /// The owner's write by name, without checks of access. InvalidArgumentException for an unknown name.
  CSoftwareEnumeration &Select(const std::string &strSymbolic);
  /// Symbolic name of the current entry, empty when there is none; no access mode is asked.
  std::string PeekSymbolic() const;

  void GetEntries(GenApi::NodeList_t &listEntries) override;
  void SetIntValue(int64_t nValue, bool bVerify = true) override;
  int64_t GetIntValue(bool bVerify = false, bool bIgnoreCache = false) override;
  GenApi::IEnumEntry *GetEntryByName(const GenICam::gcstring &strSymbolic) override;
  GenApi::IEnumEntry *GetEntry(const int64_t nValue) override;
  GenApi::IEnumEntry *GetCurrentEntry(bool bVerify = false, bool bIgnoreCache = false) override;
  /// RuntimeException when the value belongs to no entry.
  GenICam::gcstring ToString(bool bVerify = false, bool bIgnoreCache = false) override;
  void FromString(const GenICam::gcstring &strValue, bool bVerify = true) override;

private:
  CSoftwareEnumEntry *FindByName(const GenICam::gcstring &strSymbolic) const;
  CSoftwareEnumEntry *FindByValue(int64_t nValue) const;

  std::recursive_mutex &m_mutex;
  std::vector<std::unique_ptr<CSoftwareEnumEntry>> m_listEntries;
};

} // namespace ffc::genapi
