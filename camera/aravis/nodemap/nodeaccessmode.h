/// \file
/// The access mode of a node, which the library itself does not combine. Whoever calls holds the map's lock.
#pragma once

#include <GenApi/GenApi.h>
#include <arv.h>

namespace ffc::camera {

/// As the description file has it: the node's own mode and that of the nodes that its value is kept in. Asks the
/// camera only where an index selects the value.
GenApi::EAccessMode AskDeclaredMode(ArvGcFeatureNode *pNode, GError **ppError);

/// At this moment: the declared mode, and whether the node and those that its value is kept in are implemented,
/// available and not locked. Asks the camera.
GenApi::EAccessMode AskAccessMode(ArvGcFeatureNode *pNode, GError **ppError);

} // namespace ffc::camera
