/// \file
/// Whether a node of a camera's description file can be used without harm.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include <arv.h>

namespace ffc::camera {

/// What one access to a node sets going.
struct SNodeDemand {
  /// No circle, no depth and no number of further accesses that a description of a real camera would not have.
  bool bSound = true;
  uint32_t nAccesses = 1; ///< nodes that are asked, one that is asked twice counted twice
  uint32_t nHeight = 1;   ///< longest chain of nodes that ask each other
  /// Registers whose length the camera itself tells, at each access anew.
  std::vector<ArvGcRegister *> listVariable;
};

/// The library follows the links between nodes wherever they lead and takes memory for a register of whatever
/// length is named; this looks at the links before. One for all nodes of a description. Asks no camera.
class CNodeExaminer {
public:
  /// Bytes; also the limit for lengths that the camera tells.
  static constexpr uint64_t MAX_REGISTER_LENGTH = uint64_t{64} << 20U;

  /// Valid until the next call.
  const SNodeDemand &Examine(ArvGcNode *pNode) { return Visit(pNode, 0); }

private:
  const SNodeDemand &Visit(ArvGcNode *pNode, uint32_t nDepth);
  void VisitChildren(ArvDomNode *pParent, uint32_t nDepth, SNodeDemand *pstDemand);
  void Add(ArvGcNode *pNode, uint32_t nDepth, SNodeDemand *pstDemand);

  std::unordered_map<ArvGcNode *, SNodeDemand> m_mapDemands; ///< references into it survive an insertion
};

} // namespace ffc::camera
