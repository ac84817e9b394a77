#include "camera/aravis/nodemap/nodelinks.h"

#include "camera/aravis/gobject.h"

namespace ffc::camera {

namespace {

/// The node for one index; null when a fixed value, or nothing, stands there.
ArvGcFeatureNode *FindIndexed(ArvDomNode *pElement, int64_t nIndex)
{
  for (ArvDomNode *pChild = arv_dom_node_get_first_child(pElement); pChild != nullptr;
       pChild = arv_dom_node_get_next_sibling(pChild)) {
    if (ARV_IS_GC_VALUE_INDEXED_NODE(pChild) &&
        arv_gc_value_indexed_node_get_index(ARV_GC_VALUE_INDEXED_NODE(pChild)) == nIndex) {
      return GetLinkedFeature(ARV_GC_PROPERTY_NODE(pChild));
    }
  }
  return GetLinkedFeature(FindProperty(pElement, ARV_GC_PROPERTY_NODE_TYPE_P_VALUE_DEFAULT));
}

} // namespace

ArvGcPropertyNode *FindProperty(ArvDomNode *pElement, ArvGcPropertyNodeType eType)
{
  for (ArvDomNode *pChild = arv_dom_node_get_first_child(pElement); pChild != nullptr;
       pChild = arv_dom_node_get_next_sibling(pChild)) {
    if (ARV_IS_GC_PROPERTY_NODE(pChild) && arv_gc_property_node_get_node_type(ARV_GC_PROPERTY_NODE(pChild)) == eType) {
      return ARV_GC_PROPERTY_NODE(pChild);
    }
  }
  return nullptr;
}

ArvGcFeatureNode *GetLinkedFeature(ArvGcPropertyNode *pProperty)
{
  if (pProperty == nullptr || arv_gc_property_node_get_node_type(pProperty) <= ARV_GC_PROPERTY_NODE_TYPE_P_UNKNONW) {
    return nullptr;
  }
  ArvGcNode *pLinked = arv_gc_property_node_get_linked_node(pProperty);
  return ARV_IS_GC_FEATURE_NODE(pLinked) ? ARV_GC_FEATURE_NODE(pLinked) : nullptr;
}

ArvGcFeatureNode *FindValueNode(ArvGcFeatureNode *pNode, GError **ppError)
{
  ArvDomNode *pElement = ARV_DOM_NODE(pNode);
  ArvGcFeatureNode *pLinked = GetLinkedFeature(FindProperty(pElement, ARV_GC_PROPERTY_NODE_TYPE_P_VALUE));
  // The index of a register is part of its address instead.
  if (pLinked != nullptr || ARV_IS_GC_REGISTER(pNode)) {
    return pLinked;
  }
  ArvGcFeatureNode *pIndex = GetLinkedFeature(FindProperty(pElement, ARV_GC_PROPERTY_NODE_TYPE_P_INDEX));
  if (!ARV_IS_GC_INTEGER(pIndex)) {
    return nullptr;
  }
  CErrorSlot error;
  const int64_t nIndex = arv_gc_integer_get_value(ARV_GC_INTEGER(pIndex), error.Out());
  if (error.Get() != nullptr) {
    g_propagate_error(ppError, g_error_copy(error.Get()));
    return nullptr;
  }
  return FindIndexed(pElement, nIndex);
}

} // namespace ffc::camera
