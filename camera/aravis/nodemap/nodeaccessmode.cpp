#include "camera/aravis/nodemap/nodeaccessmode.h"

#include "camera/aravis/nodemap/nodelinks.h"

namespace ffc::camera {

namespace {

using GenApi::EAccessMode;

EAccessMode MakeMode(bool bReadable, bool bWritable)
{
  if (bReadable) {
    return bWritable ? GenApi::RW : GenApi::RO;
  }
  return bWritable ? GenApi::WO : GenApi::NA;
}

/// The access to a value that is reached through both nodes.
EAccessMode Combine(EAccessMode eFirst, EAccessMode eSecond)
{
  if (!GenApi::IsImplemented(eFirst) || !GenApi::IsImplemented(eSecond)) {
    return GenApi::NI;
  }
  return MakeMode(GenApi::IsReadable(eFirst) && GenApi::IsReadable(eSecond),
                  GenApi::IsWritable(eFirst) && GenApi::IsWritable(eSecond));
}

/// Of the node alone.
EAccessMode GetOwnMode(ArvGcFeatureNode *pNode)
{
  if (ARV_IS_GC_COMMAND(pNode)) {
    return GenApi::WO;
  }
  switch (arv_gc_feature_node_get_actual_access_mode(pNode)) {
  case ARV_GC_ACCESS_MODE_RW: return GenApi::RW;
  case ARV_GC_ACCESS_MODE_WO: return GenApi::WO;
  default: return GenApi::RO;
  }
}

EAccessMode AskMode(ArvGcFeatureNode *pNode, bool bDeclared, GError **ppError);

/// Combined with what the node's value is kept in.
EAccessMode AskChainMode(ArvGcFeatureNode *pNode, bool bDeclared, GError **ppError)
{
  ArvGcFeatureNode *pValueNode = FindValueNode(pNode, ppError);
  if (*ppError != nullptr) {
    return GenApi::NA;
  }
  const EAccessMode eMode = GetOwnMode(pNode);
  return pValueNode == nullptr ? eMode : Combine(eMode, AskMode(pValueNode, bDeclared, ppError));
}

EAccessMode AskMode(ArvGcFeatureNode *pNode, bool bDeclared, GError **ppError)
{
  if (bDeclared) {
    return AskChainMode(pNode, bDeclared, ppError);
  }
  const bool bImplemented = arv_gc_feature_node_is_implemented(pNode, ppError) != FALSE;
  if (*ppError != nullptr || !bImplemented) {
    return *ppError != nullptr ? GenApi::NA : GenApi::NI;
  }
  const bool bAvailable = arv_gc_feature_node_is_available(pNode, ppError) != FALSE;
  if (*ppError != nullptr || !bAvailable) {
    return GenApi::NA;
  }
  const bool bLocked = arv_gc_feature_node_is_locked(pNode, ppError) != FALSE;
  if (*ppError != nullptr) {
    return GenApi::NA;
  }
  const EAccessMode eMode = AskChainMode(pNode, bDeclared, ppError);
  return bLocked ? Combine(eMode, GenApi::RO) : eMode;
}

} // namespace

GenApi::EAccessMode AskDeclaredMode(ArvGcFeatureNode *pNode, GError **ppError)
{
  return AskMode(pNode, true, ppError);
}

GenApi::EAccessMode AskAccessMode(ArvGcFeatureNode *pNode, GError **ppError)
{
  return AskMode(pNode, false, ppError);
}

} // namespace ffc::camera
