#include "camera/aravis/overlay/colorfilter.h"

#include <cctype>

#include "genapi/pfnc.h"

namespace ffc::camera {

/// One entry of the camera's, with the usual name.
class CColorFilter::CEntry final : public GenApi::INode, public GenApi::IEnumEntry {
public:
  CEntry(GenApi::INode &node, GenApi::IEnumEntry &inner)
    : m_node(node), m_inner(inner), m_strSymbolic(NormalizeLayoutName(inner.GetSymbolic().c_str()))
  {
  }

  GenICam::gcstring GetName(bool bFullQualified = false) const override { return m_node.GetName(bFullQualified); }
  GenApi::INode *GetNode() override { return this; }
  GenApi::EAccessMode GetAccessMode() const override { return m_node.GetAccessMode(); }
  int64_t GetValue() override { return m_inner.GetValue(); }
  GenICam::gcstring GetSymbolic() const override { return m_strSymbolic.c_str(); }
  GenICam::gcstring ToString(bool bVerify = false, bool bIgnoreCache = false) override
  {
    m_inner.ToString(bVerify, bIgnoreCache); // for its checks
    return GetSymbolic();
  }
  void FromString(const GenICam::gcstring &strValue, bool bVerify = true) override
  {
    m_inner.FromString(strValue, bVerify);
  }

  const GenApi::IEnumEntry *GetInner() const { return &m_inner; }

private:
  GenApi::INode &m_node;
  GenApi::IEnumEntry &m_inner;
  std::string m_strSymbolic;
};

std::string NormalizeLayoutName(const std::string &strName)
{
  std::string strLetters;
  for (const char cLetter : strName) {
    if (std::isalpha(static_cast<unsigned char>(cLetter)) != 0) {
      strLetters += static_cast<char>(std::tolower(static_cast<unsigned char>(cLetter)));
    }
  }
  for (const char *pLayout : {"BayerRG", "BayerGB", "BayerGR", "BayerBG"}) {
    const std::string strLower =
      std::string("bayer") + static_cast<char>(std::tolower(pLayout[5])) + static_cast<char>(std::tolower(pLayout[6]));
    if (strLetters == strLower) {
      return pLayout;
    }
  }
  return strName;
}

CColorFilter::CColorFilter(GenApi::INode &node, GenApi::IEnumeration &inner) : m_node(node), m_inner(inner)
{
  GenApi::NodeList_t listInner;
  m_inner.GetEntries(listInner);
  for (GenApi::INode *pNode : listInner) {
    m_listEntries.push_back(std::make_unique<CEntry>(*pNode, dynamic_cast<GenApi::IEnumEntry &>(*pNode)));
  }
}

CColorFilter::~CColorFilter() = default;

GenApi::EAccessMode CColorFilter::GetAccessMode() const
{
  const GenApi::EAccessMode eMode = m_node.GetAccessMode();
  if (!GenApi::IsReadable(eMode)) {
    return GenApi::NI;
  }
  try {
    const CEntry *pCurrent = Find(m_inner.GetCurrentEntry());
    const bool bBayer =
      pCurrent != nullptr && genapi::GetColorLayout(pCurrent->GetSymbolic().c_str()) != genapi::EColorLayout::Mono;
    return bBayer ? eMode : GenApi::NI;
  } catch (const GenICam::GenericException &) {
    return GenApi::NI;
  }
}

void CColorFilter::GetEntries(GenApi::NodeList_t &listEntries)
{
  for (const auto &pEntry : m_listEntries) {
    listEntries.push_back(pEntry.get());
  }
}

GenApi::IEnumEntry *CColorFilter::GetEntryByName(const GenICam::gcstring &strSymbolic)
{
  for (const auto &pEntry : m_listEntries) {
    if (pEntry->GetSymbolic() == strSymbolic) {
      return pEntry.get();
    }
  }
  return nullptr;
}

GenApi::IEnumEntry *CColorFilter::GetEntry(const int64_t nValue)
{
  return Find(m_inner.GetEntry(nValue));
}

GenApi::IEnumEntry *CColorFilter::GetCurrentEntry(bool bVerify, bool bIgnoreCache)
{
  return Find(m_inner.GetCurrentEntry(bVerify, bIgnoreCache));
}

GenICam::gcstring CColorFilter::ToString(bool bVerify, bool bIgnoreCache)
{
  return NormalizeLayoutName(m_inner.ToString(bVerify, bIgnoreCache).c_str()).c_str();
}

void CColorFilter::FromString(const GenICam::gcstring &strValue, bool bVerify)
{
  GenApi::IEnumEntry *pEntry = GetEntryByName(strValue);
  if (pEntry == nullptr) {
    m_inner.FromString(strValue, bVerify);
  } else {
    m_inner.SetIntValue(pEntry->GetValue(), bVerify);
  }
}

CColorFilter::CEntry *CColorFilter::Find(GenApi::IEnumEntry *pInner) const
{
  for (const auto &pEntry : m_listEntries) {
    if (pEntry->GetInner() == pInner) {
      return pEntry.get();
    }
  }
  return nullptr;
}

} // namespace ffc::camera
