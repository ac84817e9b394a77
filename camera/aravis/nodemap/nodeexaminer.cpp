#include "camera/aravis/nodemap/nodeexaminer.h"

#include <algorithm>

#include "camera/aravis/gobject.h"
#include "camera/aravis/nodemap/nodelinks.h"

namespace ffc::camera {

namespace {

constexpr uint32_t MAX_HEIGHT = 64;
constexpr uint32_t MAX_ACCESSES = 20000;

/// A formula within a register has no name of its own.
std::string GetQuotedName(ArvGcNode *pNode)
{
  const char *pName =
    ARV_IS_GC_FEATURE_NODE(pNode) ? arv_gc_feature_node_get_name(ARV_GC_FEATURE_NODE(pNode)) : nullptr;
  return pName == nullptr ? "a formula" : "'" + std::string(pName) + "'";
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
    pstDemand->strFault = "the register " + GetQuotedName(pNode) + " has " + std::to_string(nLength) + " bytes";
  }
}

/// The library leaves a variable out of its formula that is neither an integer nor a float.
bool IsVariableLost(ArvGcNode *pVariable)
{
  return ARV_IS_GC_BOOLEAN(pVariable) && !ARV_IS_GC_INTEGER(pVariable);
}

void Merge(const SNodeDemand &stOther, SNodeDemand *pstDemand)
{
  if (pstDemand->IsSound()) {
    pstDemand->strFault = stOther.strFault;
  }
  pstDemand->nAccesses = std::min(pstDemand->nAccesses + stOther.nAccesses, MAX_ACCESSES + 1);
  for (ArvGcRegister *pRegister : stOther.listVariable) {
    if (std::find(pstDemand->listVariable.begin(), pstDemand->listVariable.end(), pRegister) ==
        pstDemand->listVariable.end()) {
      pstDemand->listVariable.push_back(pRegister);
    }
  }
}

} // namespace

SNodeDemand CNodeExaminer::Examine(ArvGcNode *pNode)
{
  SNodeDemand stDemand = Visit(pNode, EAspect::Value, 0);
  for (const EAspect eAspect : {EAspect::Limits, EAspect::Mode}) {
    Merge(Visit(pNode, eAspect, 0), &stDemand);
  }
  return stDemand;
}

const SNodeDemand &CNodeExaminer::Visit(ArvGcNode *pNode, EAspect eAspect, uint32_t nDepth)
{
  const auto [itDemand, bNew] = m_mapDemands.try_emplace({pNode, eAspect});
  SNodeDemand &stDemand = itDemand->second;
  if (!bNew) {
    return stDemand;
  }
  if (nDepth >= MAX_HEIGHT) {
    stDemand.strFault = "the chain of nodes that ends at " + GetQuotedName(pNode) + " is too long";
    return stDemand;
  }
  // Whoever comes here again before this is done has gone in a circle.
  stDemand.strFault = GetQuotedName(pNode) + " asks itself";
  SNodeDemand stResult;
  if (ARV_IS_GC_REGISTER(pNode) && eAspect == EAspect::Value) {
    ExamineRegister(pNode, &stResult);
  }
  VisitChildren(ARV_DOM_NODE(pNode), eAspect, nDepth, &stResult);
  if (ARV_IS_GC_STRUCT_ENTRY_NODE(pNode)) {
    VisitChildren(GetRegisterElement(pNode), eAspect, nDepth, &stResult);
  }
  if (stResult.IsSound() && (stResult.nHeight > MAX_HEIGHT || stResult.nAccesses > MAX_ACCESSES)) {
    stResult.strFault = GetQuotedName(pNode) + " depends on too many other nodes";
  }
  stDemand = std::move(stResult);
  return stDemand;
}

void CNodeExaminer::VisitChildren(ArvDomNode *pParent, EAspect eAspect, uint32_t nDepth, SNodeDemand *pstDemand)
{
  for (ArvDomNode *pChild = arv_dom_node_get_first_child(pParent); pChild != nullptr;
       pChild = arv_dom_node_get_next_sibling(pChild)) {
    if (ARV_IS_GC_PROPERTY_NODE(pChild)) {
      VisitLink(ARV_GC_PROPERTY_NODE(pChild), eAspect, nDepth, pstDemand);
    } else if (ARV_IS_GC_FEATURE_NODE(pChild) && !ARV_IS_GC_STRUCT_ENTRY_NODE(pChild)) {
      Add(ARV_GC_NODE(pChild), eAspect, nDepth, pstDemand); // an entry, or a formula within a register
    }
  }
}

/// Links that lead to other features of the user, to the port and to what a change makes invalid are not followed.
void CNodeExaminer::VisitLink(ArvGcPropertyNode *pProperty, EAspect eAspect, uint32_t nDepth, SNodeDemand *pstDemand)
{
  ArvGcNode *pLinked = arv_gc_property_node_get_linked_node(pProperty);
  switch (arv_gc_property_node_get_node_type(pProperty)) {
  case ARV_GC_PROPERTY_NODE_TYPE_P_VALUE:
  case ARV_GC_PROPERTY_NODE_TYPE_P_VALUE_INDEXED:
  case ARV_GC_PROPERTY_NODE_TYPE_P_VALUE_DEFAULT: Add(pLinked, eAspect, nDepth, pstDemand); break;
  case ARV_GC_PROPERTY_NODE_TYPE_P_INDEX: Add(pLinked, EAspect::Value, nDepth, pstDemand); break;
  case ARV_GC_PROPERTY_NODE_TYPE_P_VARIABLE:
    if (IsVariableLost(pLinked) && pstDemand->IsSound()) {
      pstDemand->strFault = "a formula uses the boolean " + GetQuotedName(pLinked);
    }
    if (eAspect != EAspect::Mode) {
      Add(pLinked, EAspect::Value, nDepth, pstDemand);
    }
    break;
  case ARV_GC_PROPERTY_NODE_TYPE_P_ADDRESS:
  case ARV_GC_PROPERTY_NODE_TYPE_P_LENGTH:
  case ARV_GC_PROPERTY_NODE_TYPE_P_COMMAND_VALUE:
    if (eAspect == EAspect::Value) {
      Add(pLinked, EAspect::Value, nDepth, pstDemand);
    }
    break;
  case ARV_GC_PROPERTY_NODE_TYPE_P_MINIMUM:
  case ARV_GC_PROPERTY_NODE_TYPE_P_MAXIMUM:
  case ARV_GC_PROPERTY_NODE_TYPE_P_INCREMENT:
    if (eAspect == EAspect::Limits) {
      Add(pLinked, EAspect::Value, nDepth, pstDemand);
    }
    break;
  case ARV_GC_PROPERTY_NODE_TYPE_P_IS_IMPLEMENTED:
  case ARV_GC_PROPERTY_NODE_TYPE_P_IS_AVAILABLE:
  case ARV_GC_PROPERTY_NODE_TYPE_P_IS_LOCKED:
    if (eAspect == EAspect::Mode) {
      Add(pLinked, EAspect::Value, nDepth, pstDemand);
    }
    break;
  default: break;
  }
}

void CNodeExaminer::Add(ArvGcNode *pNode, EAspect eAspect, uint32_t nDepth, SNodeDemand *pstDemand)
{
  if (pNode == nullptr) {
    return; // the library tells it when the link is used
  }
  const SNodeDemand &stOther = Visit(pNode, eAspect, nDepth + 1);
  pstDemand->nHeight = std::max(pstDemand->nHeight, stOther.nHeight + 1);
  Merge(stOther, pstDemand);
}

} // namespace ffc::camera
