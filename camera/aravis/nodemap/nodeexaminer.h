/// \file
/// Whether a node of a camera's description file can be used without harm.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <arv.h>

namespace ffc::camera {

/// What one access to a node sets going.
struct SNodeDemand {
  /// Why the node cannot be used: a circle, or a depth or a number of further accesses that a description of a real
  /// camera would not have, or what the library does not evaluate. Empty: it can.
  std::string strFault;
  uint32_t nAccesses = 1; ///< nodes that are asked, one that is asked twice counted twice
  uint32_t nHeight = 1;   ///< longest chain of nodes that ask each other
  /// Registers whose length the camera itself tells, at each access anew.
  std::vector<ArvGcRegister *> listVariable;

  bool IsSound() const { return strFault.empty(); }
};

/// The library follows the links between nodes wherever they lead and takes memory for a register of whatever
/// length is named; this looks at the links before. One for all nodes of a description. Asks no camera.
///
/// A node's value, its limits and its access mode depend on different nodes: two features may limit each other.
class CNodeExaminer {
public:
  /// Bytes; also the limit for lengths that the camera tells.
  static constexpr uint64_t MAX_REGISTER_LENGTH = uint64_t{64} << 20U;

  /// Of all that may be asked of the node.
  SNodeDemand Examine(ArvGcNode *pNode);

private:
  enum class EAspect { Value, Limits, Mode };

  const SNodeDemand &Visit(ArvGcNode *pNode, EAspect eAspect, uint32_t nDepth);
  void VisitChildren(ArvDomNode *pParent, EAspect eAspect, uint32_t nDepth, SNodeDemand *pstDemand);
  void VisitLink(ArvGcPropertyNode *pProperty, EAspect eAspect, uint32_t nDepth, SNodeDemand *pstDemand);
  void Add(ArvGcNode *pNode, EAspect eAspect, uint32_t nDepth, SNodeDemand *pstDemand);

  std::map<std::pair<ArvGcNode *, EAspect>, SNodeDemand> m_mapDemands; ///< references into it survive an insertion
};

} // namespace ffc::camera
