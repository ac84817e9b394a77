/// \file
/// PixelColorFilter as the plug-in understands it.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <GenApi/GenApi.h>

namespace ffc::camera {

/// Whether a camera has a colour filter is asked by the feature's existence alone, and which one by four names. This
/// stands before the camera's own feature: not implemented (NI) while that says no Bayer layout or cannot be read,
/// and with the usual names ("Bayer_RG" is BayerRG).
class CColorFilter final : public GenApi::INode, public GenApi::IEnumeration {
public:
  /// \param inner the camera's own; outlives this
  CColorFilter(GenApi::INode &node, GenApi::IEnumeration &inner);
  ~CColorFilter() override;

  GenICam::gcstring GetName(bool bFullQualified = false) const override { return m_node.GetName(bFullQualified); }
  GenApi::INode *GetNode() override { return this; }
  GenApi::EAccessMode GetAccessMode() const override;

  void GetEntries(GenApi::NodeList_t &listEntries) override;
  void SetIntValue(int64_t nValue, bool bVerify = true) override { m_inner.SetIntValue(nValue, bVerify); }
  int64_t GetIntValue(bool bVerify = false, bool bIgnoreCache = false) override
  {
    return m_inner.GetIntValue(bVerify, bIgnoreCache);
  }
  GenApi::IEnumEntry *GetEntryByName(const GenICam::gcstring &strSymbolic) override;
  GenApi::IEnumEntry *GetEntry(const int64_t nValue) override;
  GenApi::IEnumEntry *GetCurrentEntry(bool bVerify = false, bool bIgnoreCache = false) override;
  GenICam::gcstring ToString(bool bVerify = false, bool bIgnoreCache = false) override;
  void FromString(const GenICam::gcstring &strValue, bool bVerify = true) override;

private:
  class CEntry;

  CEntry *Find(GenApi::IEnumEntry *pInner) const;

  GenApi::INode &m_node;
  GenApi::IEnumeration &m_inner;
  std::vector<std::unique_ptr<CEntry>> m_listEntries;
};

/// "BayerRG" for "Bayer_RG", "bayer rg", "BayerRG8" and the like; any other text as it is.
std::string NormalizeLayoutName(const std::string &strName);

} // namespace ffc::camera
