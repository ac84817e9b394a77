/// \file
/// Adapter of the node with named entries.
#pragma once

#include <memory>
#include <vector>

#include "camera/aravis/nodemap/aravisnode.h"

namespace ffc::camera {

/// One entry; its node name is "EnumEntry_<enumeration>_<symbolic>".
class CAravisEnumEntry final : public CAravisNode<GenApi::IEnumEntry> {
public:
  CAravisEnumEntry(ArvGcFeatureNode *pNode, const std::string &strEnumeration, std::string strSymbolic, int64_t nValue,
                   SNodeMapState &state);

  int64_t GetValue() override { return m_nValue; }
  GenICam::gcstring GetSymbolic() const override { return m_strSymbolic.c_str(); }
  GenICam::gcstring ToString(bool bVerify = false, bool bIgnoreCache = false) override;
  /// AccessException: an entry is not written.
  void FromString(const GenICam::gcstring &strValue, bool bVerify = true) override;

private:
  std::string m_strSymbolic;
  int64_t m_nValue;
};

class CAravisEnumeration final : public CAravisNode<GenApi::IEnumeration> {
public:
  /// Entries without a name or a value are left out.
  CAravisEnumeration(ArvGcFeatureNode *pNode, std::string strName, SNodeMapState &state);

  /// In the order of the description file.
  const std::vector<std::unique_ptr<CAravisEnumEntry>> &GetEntryNodes() const { return m_listEntries; }

  /// NI also when none of the entries is implemented.
  GenApi::EAccessMode GetAccessMode() const override;
  /// Of the description, whether the camera has them or not; so are the entries found by name and value.
  void GetEntries(GenApi::NodeList_t &listEntries) override;
  /// Verified: InvalidArgumentException for a value without an entry, AccessException for an entry that is not
  /// available.
  void SetIntValue(int64_t nValue, bool bVerify = true) override;
  int64_t GetIntValue(bool bVerify = false, bool bIgnoreCache = false) override;
  GenApi::IEnumEntry *GetEntryByName(const GenICam::gcstring &strSymbolic) override;
  GenApi::IEnumEntry *GetEntry(const int64_t nValue) override;
  GenApi::IEnumEntry *GetCurrentEntry(bool bVerify = false, bool bIgnoreCache = false) override;
  /// RuntimeException when the value belongs to no entry.
  GenICam::gcstring ToString(bool bVerify = false, bool bIgnoreCache = false) override;
  void FromString(const GenICam::gcstring &strValue, bool bVerify = true) override;

private:
  bool HasEntries() const;
  void CheckEntries() const;
  CAravisEnumEntry *FindByName(const GenICam::gcstring &strSymbolic) const;
  CAravisEnumEntry *FindByValue(int64_t nValue) const;

  ArvGcEnumeration *m_pEnumeration;
  std::vector<std::unique_ptr<CAravisEnumEntry>> m_listEntries;
  mutable bool m_bHasEntries = false; ///< known to be so
};

} // namespace ffc::camera
