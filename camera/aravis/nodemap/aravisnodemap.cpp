#include "camera/aravis/nodemap/aravisnodemap.h"

#include <utility>

#include "camera/aravis/nodemap/araviscommand.h"
#include "camera/aravis/nodemap/aravisenumeration.h"
#include "camera/aravis/nodemap/aravisnumbers.h"
#include "camera/aravis/nodemap/aravistexts.h"

namespace ffc::camera {

namespace {

/// In this order: a node of the library may have several kinds, such as an enumeration, which is an integer and a
/// string too.
std::unique_ptr<GenApi::INode> MakeNode(ArvGcFeatureNode *pNode, const char *pName, SNodeMapState &state)
{
  if (ARV_IS_GC_ENUMERATION(pNode)) {
    return std::make_unique<CAravisEnumeration>(pNode, pName, state);
  }
  if (ARV_IS_GC_BOOLEAN(pNode)) {
    return std::make_unique<CAravisBoolean>(pNode, pName, state);
  }
  if (ARV_IS_GC_COMMAND(pNode)) {
    return std::make_unique<CAravisCommand>(pNode, pName, state);
  }
  if (ARV_IS_GC_INTEGER(pNode)) {
    return std::make_unique<CAravisInteger>(pNode, pName, state);
  }
  if (ARV_IS_GC_FLOAT(pNode)) {
    return std::make_unique<CAravisFloat>(pNode, pName, state);
  }
  if (ARV_IS_GC_STRING(pNode)) {
    return std::make_unique<CAravisString>(pNode, pName, state);
  }
  if (ARV_IS_GC_REGISTER(pNode)) {
    return std::make_unique<CAravisRegister>(pNode, pName, state);
  }
  return std::make_unique<CAravisPlainNode>(pNode, pName, state);
}

} // namespace

CAravisNodeMap::CAravisNodeMap(ArvGc *pGenicam, std::shared_ptr<CCameraLink> pLink)
  : m_pGenicam(ShareObject(pGenicam)), m_pState(std::make_unique<SNodeMapState>())
{
  m_pState->pLink = std::move(pLink);
  arv_gc_set_register_cache_policy(pGenicam, ARV_REGISTER_CACHE_POLICY_DISABLE);
  arv_gc_set_range_check_policy(pGenicam, ARV_RANGE_CHECK_POLICY_DISABLE);
  arv_gc_set_access_check_policy(pGenicam, ARV_ACCESS_CHECK_POLICY_DISABLE);
  AddBelow(ARV_DOM_NODE(pGenicam));
}

GenApi::INode *CAravisNodeMap::GetNode(const GenICam::gcstring &strName) const
{
  if (strName.empty()) {
    return nullptr;
  }
  const auto lock = Lock();
  const auto itNode = m_mapNodes.find(strName.c_str());
  if (itNode != m_mapNodes.end()) {
    return itNode->second;
  }
  ArvGcNode *pNode = arv_gc_get_node(m_pGenicam.get(), strName.c_str());
  if (!ARV_IS_GC_FEATURE_NODE(pNode)) {
    return nullptr;
  }
  Add(ARV_GC_FEATURE_NODE(pNode), strName.c_str());
  return m_mapNodes.at(strName.c_str());
}

void CAravisNodeMap::GetNodes(GenApi::NodeList_t &listNodes) const
{
  const auto lock = Lock();
  for (const auto &pNode : m_listNodes) {
    listNodes.push_back(pNode.get());
  }
}

std::string CAravisNodeMap::GetUnit(const std::string &strName) const
{
  const auto lock = Lock();
  ArvGcNode *pNode = arv_gc_get_node(m_pGenicam.get(), strName.c_str());
  const char *pUnit = nullptr;
  if (ARV_IS_GC_FLOAT(pNode)) {
    pUnit = arv_gc_float_get_unit(ARV_GC_FLOAT(pNode));
  } else if (ARV_IS_GC_INTEGER(pNode)) {
    pUnit = arv_gc_integer_get_unit(ARV_GC_INTEGER(pNode));
  }
  return pUnit == nullptr ? std::string() : std::string(pUnit);
}

/// Groups and structures have no name of their own; what has one has nothing below it that is a node of the map.
void CAravisNodeMap::AddBelow(ArvDomNode *pParent) const
{
  for (ArvDomNode *pChild = arv_dom_node_get_first_child(pParent); pChild != nullptr;
       pChild = arv_dom_node_get_next_sibling(pChild)) {
    const char *pName =
      ARV_IS_GC_FEATURE_NODE(pChild) ? arv_gc_feature_node_get_name(ARV_GC_FEATURE_NODE(pChild)) : nullptr;
    if (pName == nullptr || *pName == '\0') {
      AddBelow(pChild);
    } else if (m_mapNodes.count(pName) == 0 && !ARV_IS_GC_ENUM_ENTRY(pChild)) {
      Add(ARV_GC_FEATURE_NODE(pChild), pName);
    }
  }
}

void CAravisNodeMap::Add(ArvGcFeatureNode *pNode, const char *pName) const
{
  auto pOwned = MakeNode(pNode, pName, *m_pState);
  m_mapNodes.emplace(pName, pOwned.get());
  if (const auto *pEnumeration = dynamic_cast<CAravisEnumeration *>(pOwned.get())) {
    for (const auto &pEntry : pEnumeration->GetEntryNodes()) {
      m_mapNodes.emplace(pEntry->GetName().c_str(), pEntry.get());
    }
  }
  m_listNodes.push_back(std::move(pOwned));
}

} // namespace ffc::camera
