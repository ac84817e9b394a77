#include "pluginobject/featureaccess.h"

#include <optional>
#include <utility>

#include "pluginobject/statuscode.h"

namespace ffc::pluginobject {

namespace {

GenApi::INode *FindNode(GenApi::INodeMap *pNodeMap, const char *pName)
{
  return pNodeMap == nullptr ? nullptr : pNodeMap->GetNode(GenICam::gcstring(pName));
}

// The one order of checks of every typed access: name, node, type, then the access itself, a callable
// that takes the interface and returns a status.
template <class TInterface, class TAccess>
int32_t Access(GenApi::INodeMap *pNodeMap, const char *pName, TAccess fnAccess)
{
  if (pName == nullptr) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  try {
    GenApi::INode *pNode = FindNode(pNodeMap, pName);
    if (pNode == nullptr) {
      return PLUGIN_STATUS_INVALID_PARAM;
    }
    auto *pInterface = dynamic_cast<TInterface *>(pNode);
    return pInterface == nullptr ? PLUGIN_STATUS_FEATURE_ERROR : fnAccess(*pInterface);
  } catch (...) {
    return PLUGIN_STATUS_FEATURE_ERROR;
  }
}

// An access mode predicate; a missing node answers false.
template <class TPredicate>
int32_t QueryAccessMode(GenApi::INodeMap *pNodeMap, const char *pName, bool &bAnswer, TPredicate fnPredicate)
{
  if (pName == nullptr) {
    bAnswer = false;
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  try {
    const GenApi::INode *pNode = FindNode(pNodeMap, pName);
    bAnswer = pNode != nullptr && fnPredicate(pNode->GetAccessMode());
    return PLUGIN_STATUS_SUCCESS;
  } catch (...) {
    return PLUGIN_STATUS_FEATURE_ERROR;
  }
}

// An access to a register whose length must match.
template <class TAccess>
int32_t AccessRegister(GenApi::INodeMap *pNodeMap, const char *pName, const uint8_t *pBuffer, int64_t nLength,
                       TAccess fnAccess)
{
  if (pBuffer == nullptr) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  return Access<GenApi::IRegister>(pNodeMap, pName, [&](GenApi::IRegister &node) {
    if (node.GetLength() != nLength) {
      return PLUGIN_STATUS_ROI_MISMATCH;
    }
    fnAccess(node);
    return PLUGIN_STATUS_SUCCESS;
  });
}

// An access to the current entry of an enumeration.
template <class TAccess>
int32_t AccessCurrentEntry(GenApi::INodeMap *pNodeMap, const char *pName, TAccess fnAccess)
{
  return Access<GenApi::IEnumeration>(pNodeMap, pName, [&](GenApi::IEnumeration &node) {
    GenApi::IEnumEntry *pEntry = node.GetCurrentEntry();
    if (pEntry == nullptr) {
      return PLUGIN_STATUS_FEATURE_ERROR;
    }
    fnAccess(*pEntry);
    return PLUGIN_STATUS_SUCCESS;
  });
}

// An access that has no status of its own.
template <class TInterface, class TAccess>
int32_t AccessValue(GenApi::INodeMap *pNodeMap, const char *pName, TAccess fnAccess)
{
  return Access<TInterface>(pNodeMap, pName, [&](TInterface &node) {
    fnAccess(node);
    return PLUGIN_STATUS_SUCCESS;
  });
}

bool IsNearestFloat(float fValue, double dExact)
{
  return static_cast<float>(dExact) == fValue;
}

// The limit that a float lies beyond only because it has no nearer value.
std::optional<double> FindPassedLimit(GenApi::IFloat &node, float fValue)
{
  const auto dValue = static_cast<double>(fValue);
  const double dMin = node.GetMin();
  const double dMax = node.GetMax();
  if (dValue > dMax && IsNearestFloat(fValue, dMax)) {
    return dMax;
  }
  if (dValue < dMin && IsNearestFloat(fValue, dMin)) {
    return dMin;
  }
  return std::nullopt;
}

} // namespace

int32_t CFeatureAccess::IsFeatureImplemented(const char *pName, bool &bImplemented) const
{
  return QueryAccessMode(*m_ppNodeMap, pName, bImplemented,
                         [](GenApi::EAccessMode eMode) { return GenApi::IsImplemented(eMode); });
}

int32_t CFeatureAccess::IsFeatureWritable(const char *pName, bool &bWritable) const
{
  return QueryAccessMode(*m_ppNodeMap, pName, bWritable,
                         [](GenApi::EAccessMode eMode) { return GenApi::IsWritable(eMode); });
}

int32_t CFeatureAccess::GetIntFeature(const char *pName, int64_t &nValue) const
{
  return AccessValue<GenApi::IInteger>(*m_ppNodeMap, pName, [&](GenApi::IInteger &node) { nValue = node.GetValue(); });
}

int32_t CFeatureAccess::SetIntFeature(const char *pName, int64_t nValue) const
{
  return AccessValue<GenApi::IInteger>(*m_ppNodeMap, pName, [&](GenApi::IInteger &node) { node.SetValue(nValue); });
}

int32_t CFeatureAccess::GetFloatFeature(const char *pName, float &fValue) const
{
  return AccessValue<GenApi::IFloat>(*m_ppNodeMap, pName,
                                     [&](GenApi::IFloat &node) { fValue = static_cast<float>(node.GetValue()); });
}

int32_t CFeatureAccess::SetFloatFeature(const char *pName, float fValue) const
{
  return AccessValue<GenApi::IFloat>(*m_ppNodeMap, pName,
                                     [&](GenApi::IFloat &node) { node.SetValue(static_cast<double>(fValue)); });
}

int32_t CFeatureAccess::RestoreFloatFeature(const char *pName, float fValue) const
{
  const int32_t nStatus = SetFloatFeature(pName, fValue);
  if (nStatus != PLUGIN_STATUS_FEATURE_ERROR) {
    return nStatus;
  }
  return Access<GenApi::IFloat>(*m_ppNodeMap, pName, [&](GenApi::IFloat &node) {
    const std::optional<double> dLimit = FindPassedLimit(node, fValue);
    if (!dLimit.has_value()) {
      return PLUGIN_STATUS_FEATURE_ERROR;
    }
    node.SetValue(*dLimit);
    return PLUGIN_STATUS_SUCCESS;
  });
}

int32_t CFeatureAccess::GetBoolFeature(const char *pName, bool &bValue) const
{
  return AccessValue<GenApi::IBoolean>(*m_ppNodeMap, pName, [&](GenApi::IBoolean &node) { bValue = node.GetValue(); });
}

int32_t CFeatureAccess::SetBoolFeature(const char *pName, bool bValue) const
{
  return AccessValue<GenApi::IBoolean>(*m_ppNodeMap, pName, [&](GenApi::IBoolean &node) { node.SetValue(bValue); });
}

int32_t CFeatureAccess::GetEnumFeature(const char *pName, std::string &strValue) const
{
  return AccessCurrentEntry(*m_ppNodeMap, pName,
                            [&](GenApi::IEnumEntry &entry) { strValue = entry.GetSymbolic().c_str(); });
}

int32_t CFeatureAccess::GetEnumIntFeature(const char *pName, int64_t &nValue) const
{
  return AccessCurrentEntry(*m_ppNodeMap, pName, [&](GenApi::IEnumEntry &entry) { nValue = entry.GetValue(); });
}

int32_t CFeatureAccess::SetEnumFeature(const char *pName, std::string strValue) const
{
  return AccessValue<GenApi::IEnumeration>(
    *m_ppNodeMap, pName, [&](GenApi::IEnumeration &node) { node.FromString(GenICam::gcstring(strValue.c_str())); });
}

int32_t CFeatureAccess::GetEnumEntries(const char *pName, std::vector<std::string> &listEntries) const
{
  return AccessValue<GenApi::IEnumeration>(*m_ppNodeMap, pName, [&](GenApi::IEnumeration &node) {
    GenApi::NodeList_t listNodes;
    node.GetEntries(listNodes);
    std::vector<std::string> listNames;
    for (GenApi::INode *pNode : listNodes) {
      auto *pEntry = dynamic_cast<GenApi::IEnumEntry *>(pNode);
      // By the standard all of them are entries.
      if (pEntry != nullptr && GenApi::IsAvailable(pEntry->GetAccessMode())) {
        listNames.emplace_back(pEntry->GetSymbolic().c_str());
      }
    }
    listEntries = std::move(listNames);
  });
}

int32_t CFeatureAccess::GetStringFeature(const char *pName, std::string &strValue) const
{
  return AccessValue<GenApi::IString>(*m_ppNodeMap, pName,
                                      [&](GenApi::IString &node) { strValue = node.GetValue().c_str(); });
}

int32_t CFeatureAccess::SetStringFeature(const char *pName, std::string strValue) const
{
  return AccessValue<GenApi::IString>(
    *m_ppNodeMap, pName, [&](GenApi::IString &node) { node.SetValue(GenICam::gcstring(strValue.c_str())); });
}

int32_t CFeatureAccess::GetRegisterLength(const char *pName, int64_t &nLength) const
{
  return AccessValue<GenApi::IRegister>(*m_ppNodeMap, pName,
                                        [&](GenApi::IRegister &node) { nLength = node.GetLength(); });
}

int32_t CFeatureAccess::ReadRegisterFeature(const char *pName, uint8_t *pBuffer, int64_t nLength) const
{
  return AccessRegister(*m_ppNodeMap, pName, pBuffer, nLength,
                        [&](GenApi::IRegister &node) { node.Get(pBuffer, nLength); });
}

int32_t CFeatureAccess::WriteRegisterFeature(const char *pName, const uint8_t *pBuffer, int64_t nLength) const
{
  return AccessRegister(*m_ppNodeMap, pName, pBuffer, nLength,
                        [&](GenApi::IRegister &node) { node.Set(pBuffer, nLength); });
}

int32_t CFeatureAccess::ExecuteCommand(const char *pName) const
{
  return AccessValue<GenApi::ICommand>(*m_ppNodeMap, pName, [](GenApi::ICommand &node) { node.Execute(); });
}

} // namespace ffc::pluginobject
