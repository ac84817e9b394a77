/// \file
/// A camera's own features as a GenApi node map.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include <GenApi/GenApi.h>
#include <arv.h>

#include "camera/aravis/gobject.h"
#include "camera/aravis/nodemap/aravisnode.h"

namespace ffc::camera {

/// The nodes of a GenICam description file, evaluated by the camera library, behind the checks that GenApi makes
/// and the library does not. Behaves as CSoftwareNodeMap says of itself; beyond that:
/// - a camera that does not answer, or is lost: TimeoutException or RuntimeException, and the link hears of it;
/// - a node whose description goes in circles, or names a register that no camera has: not implemented (NI);
/// - values are never cached.
///
/// One recursive lock guards the map and the library's nodes. Any thread but the frame thread may use it: an access
/// waits for the camera's answer, or for its silence.
class CAravisNodeMap final : public GenApi::INodeMap {
public:
  /// \param pGenicam of a device, which outlives the map
  /// \param pLink hears of a camera that does not answer
  CAravisNodeMap(ArvGc *pGenicam, std::shared_ptr<CCameraLink> pLink);
  CAravisNodeMap(const CAravisNodeMap &) = delete;
  CAravisNodeMap &operator=(const CAravisNodeMap &) = delete;

  GenApi::INode *GetNode(const GenICam::gcstring &strName) const override;
  /// In the order of the description file; entries of enumerations are not among them.
  void GetNodes(GenApi::NodeList_t &listNodes) const override;

  /// Of a number, as the description has it; empty when it names none, and for every other node.
  std::string GetUnit(const std::string &strName) const;

  /// Held by whoever uses the library's device beside this map, in ways that touch its nodes.
  std::unique_lock<std::recursive_mutex> Lock() const { return std::unique_lock(m_pState->mutex); }
  /// Of that lock: for nodes that stand before those of this map.
  std::recursive_mutex &GetMutex() const { return m_pState->mutex; }

private:
  void AddBelow(ArvDomNode *pParent) const;
  void Add(ArvGcFeatureNode *pNode, const char *pName) const;

  CObjectPointer<ArvGc> m_pGenicam;
  std::unique_ptr<SNodeMapState> m_pState;
  /// The library makes some nodes, which a description need not have, when they are asked for by name.
  mutable std::vector<std::unique_ptr<GenApi::INode>> m_listNodes;
  mutable std::map<std::string, GenApi::INode *> m_mapNodes;
};

} // namespace ffc::camera
