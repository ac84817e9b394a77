#include "genapi/softwarenodemap/observednodemap.h"

#include <utility>

#include "genapi/softwarenodemap/observednodes.h"

namespace ffc::genapi {

CObservedNodeMap::CObservedNodeMap(GenApi::INodeMap &inner)
  : m_inner(inner), m_fnCallHooks([this](const SNodeAccess &stAccess) {
      for (const NodeAccessHook &fnHook : m_listHooks) {
        fnHook(stAccess);
      }
    })
{
}

CObservedNodeMap::~CObservedNodeMap() = default;

CObservedNodeMap &CObservedNodeMap::AddHook(NodeAccessHook fnHook)
{
  m_listHooks.push_back(std::move(fnHook));
  return *this;
}

GenApi::INode *CObservedNodeMap::GetNode(const GenICam::gcstring &strName) const
{
  m_fnCallHooks({SNodeAccess::EKind::LookUp, strName.c_str(), {}, 0});
  return Wrap(m_inner.GetNode(strName));
}

void CObservedNodeMap::GetNodes(GenApi::NodeList_t &listNodes) const
{
  m_fnCallHooks({SNodeAccess::EKind::LookUp, "*", {}, 0});
  GenApi::NodeList_t listInner;
  m_inner.GetNodes(listInner);
  for (GenApi::INode *pNode : listInner) {
    listNodes.push_back(Wrap(pNode));
  }
}

GenApi::INode *CObservedNodeMap::Wrap(GenApi::INode *pNode) const
{
  if (pNode == nullptr) {
    return nullptr;
  }
  const std::lock_guard lock(m_mutex);
  auto &pObserved = m_mapNodes[pNode];
  if (!pObserved) {
    pObserved = MakeObservedNode(pNode, m_fnCallHooks);
  }
  return pObserved.get();
}

} // namespace ffc::genapi
