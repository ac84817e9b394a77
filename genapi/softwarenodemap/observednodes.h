/// \file
/// Nodes that stand for those of another map and report each access to a hook first.
#pragma once

#include <memory>

#include <GenApi/GenApi.h>

#include "genapi/softwarenodemap/nodeaccess.h"

namespace ffc::genapi {

/// A stand-in that offers the same one value interface as the node and no other.
/// \param pNode not null; it and the hook must outlive the stand-in
std::unique_ptr<GenApi::INode> MakeObservedNode(GenApi::INode *pNode, const NodeAccessHook &fnHook);

} // namespace ffc::genapi
