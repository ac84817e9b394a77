#include "camera/aravis/nodemap/nodeexaminer.h"

#include <algorithm>

#include "camera/aravis/gobject.h"
#include "camera/aravis/nodemap/nodelinks.h"

namespace ffc::camera {

namespace {

constexpr uint32_t MAX_HEIGHT = 64;
constexpr uint32_t MAX_ACCESSES = 20000;

/// Links that lead to other features of the user, not to what the value depends on.
bool IsFollowed(ArvGcPropertyNodeType eType)
{
  return eType > ARV_GC_PROPERTY_NODE_TYPE_P_UNKNONW && eType != ARV_GC_PROPERTY_NODE_TYPE_P_FEATURE &&
         eType != ARV_GC_PROPERTY_NODE_TYPE_P_SELECTED && eType != ARV_GC_PROPERTY_NODE_TYPE_P_INVALIDATOR &&
         eType != ARV_GC_PROPERTY_NODE_TYPE_P_PORT;
}

/// A register of which an entry of a structure is a part has its properties at the structure.
ArvDomNode *GetRegisterElement(ArvGcNode *pNode)
{
  ArvDomNode *pElement = ARV_DOM_NODE(pNode);
  return ARV_IS_GC_STRUCT_ENTRY_NODE(pNode) ? arv_dom_node_get_parent_node(pElement) : pElement;
}

void ExamineRegister(ArvGcNode *pNode, SNodeDemand *pstDemand)
{
  if (FindProperty(GetRegisterElement(pNode), ARV_GC_PROPERTY_NODE_TYPE_P_LENGTH) != nullptr) {
    pstDemand->listVariable.push_back(ARV_GC_REGISTER(pNode));
    return;
  }
  CErrorSlot error;
  const guint64 nLength = arv_gc_register_get_length(ARV_GC_REGISTER(pNode), error.Out());
  if (error.Get() != nullptr || nLength == 0 || nLength > CNodeExaminer::MAX_REGISTER_LENGTH) {
    pstDemand->bSound = false;
  }
}

} // namespace

const SNodeDemand &CNodeExaminer::Visit(ArvGcNode *pNode, uint32_t nDepth)
{
  const auto [itDemand, bNew] = m_mapDemands.try_emplace(pNode);
  SNodeDemand &stDemand = itDemand->second;
  if (!bNew) {
    return stDemand;
  }
  // Whoever comes here again before this is done has gone in a circle.
  stDemand.bSound = false;
  SNodeDemand stResult;
  if (nDepth >= MAX_HEIGHT) {
    return stDemand;
  }
  if (ARV_IS_GC_REGISTER(pNode)) {
    ExamineRegister(pNode, &stResult);
  }
  VisitChildren(ARV_DOM_NODE(pNode), nDepth, &stResult);
  if (ARV_IS_GC_STRUCT_ENTRY_NODE(pNode)) {
    VisitChildren(GetRegisterElement(pNode), nDepth, &stResult);
  }
  stResult.bSound = stResult.bSound && stResult.nHeight <= MAX_HEIGHT && stResult.nAccesses <= MAX_ACCESSES;
  stDemand = std::move(stResult);
  return stDemand;
}

void CNodeExaminer::VisitChildren(ArvDomNode *pParent, uint32_t nDepth, SNodeDemand *pstDemand)
{
  for (ArvDomNode *pChild = arv_dom_node_get_first_child(pParent); pChild != nullptr;
       pChild = arv_dom_node_get_next_sibling(pChild)) {
    if (ARV_IS_GC_PROPERTY_NODE(pChild)) {
      ArvGcPropertyNode *pProperty = ARV_GC_PROPERTY_NODE(pChild);
      if (IsFollowed(arv_gc_property_node_get_node_type(pProperty))) {
        Add(arv_gc_property_node_get_linked_node(pProperty), nDepth, pstDemand);
      }
    } else if (ARV_IS_GC_FEATURE_NODE(pChild) && !ARV_IS_GC_STRUCT_ENTRY_NODE(pChild)) {
      Add(ARV_GC_NODE(pChild), nDepth, pstDemand); // an entry, or a formula within a register
    }
  }
}

void CNodeExaminer::Add(ArvGcNode *pNode, uint32_t nDepth, SNodeDemand *pstDemand)
{
  if (pNode == nullptr) {
    return; // the library tells it when the link is used
  }
  const SNodeDemand &stOther = Visit(pNode, nDepth + 1);
  pstDemand->bSound = pstDemand->bSound && stOther.bSound;
  pstDemand->nHeight = std::max(pstDemand->nHeight, stOther.nHeight + 1);
  pstDemand->nAccesses = std::min(pstDemand->nAccesses + stOther.nAccesses, MAX_ACCESSES + 1);
  for (ArvGcRegister *pRegister : stOther.listVariable) {
    if (std::find(pstDemand->listVariable.begin(), pstDemand->listVariable.end(), pRegister) ==
        pstDemand->listVariable.end()) {
      pstDemand->listVariable.push_back(pRegister);
    }
  }
}

} // namespace ffc::camera
