/// \file
/// A node map that watches another one.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include <GenApi/GenApi.h>

#include "genapi/softwarenodemap/nodeaccess.h"

namespace ffc::genapi {

/// Hands out stand-ins for the nodes of another map: the same interfaces, the same results, and before
/// each access every hook is called, in the order of adding.
///
///     CAccessRecorder recorder;
///     CFailNthAccess fail(3, EAccessFailure::Timeout);
///     CObservedNodeMap map(deviceMap);
///     map.AddHook(std::ref(recorder)).AddHook(std::ref(fail));
///
/// A stand-in lives as long as this map, and is the same at every look-up of its name.
class CObservedNodeMap final : public GenApi::INodeMap {
public:
  /// \param inner must outlive this map
  explicit CObservedNodeMap(GenApi::INodeMap &inner);
  ~CObservedNodeMap() override;
  CObservedNodeMap(const CObservedNodeMap &) = delete;
  CObservedNodeMap &operator=(const CObservedNodeMap &) = delete;

  /// Only before the map is used from another thread.
  CObservedNodeMap &AddHook(NodeAccessHook fnHook);

  GenApi::INode *GetNode(const GenICam::gcstring &strName) const override;
  /// Announced as a look-up of "*".
  void GetNodes(GenApi::NodeList_t &listNodes) const override;

private:
  GenApi::INode *Wrap(GenApi::INode *pNode) const;

  GenApi::INodeMap &m_inner;
  std::vector<NodeAccessHook> m_listHooks;
  NodeAccessHook m_fnCallHooks;
  mutable std::mutex m_mutex;
  mutable std::map<GenApi::INode *, std::unique_ptr<GenApi::INode>> m_mapNodes;
};

} // namespace ffc::genapi
