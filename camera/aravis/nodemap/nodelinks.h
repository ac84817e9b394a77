/// \file
/// The links between the nodes of a camera's description file. Whoever calls holds the map's lock.
#pragma once

#include <arv.h>

namespace ffc::camera {

/// The first property of that type below an element; null when it has none.
ArvGcPropertyNode *FindProperty(ArvDomNode *pElement, ArvGcPropertyNodeType eType);
/// The node that a property links to, if it is a feature; null else.
ArvGcFeatureNode *GetLinkedFeature(ArvGcPropertyNode *pProperty);

/// The node that the value of this one is kept in (pValue); null when it is kept in none.
///
/// A value that an index selects is looked up with the index as it is now, which asks the camera.
ArvGcFeatureNode *FindValueNode(ArvGcFeatureNode *pNode, GError **ppError);

} // namespace ffc::camera
