/// \file
/// Giving back what takes the camera library long.
#pragma once

#include "camera/aravis/gobject.h"

namespace ffc::camera {

/// Gives an object back on a thread of its own, for which the program waits when it ends. A device that is gone, and
/// its stream, wait for its answer several times before they are finalised. Where no thread can be had it happens at
/// once.
void ReleaseElsewhere(CObjectPointer<GObject> pObject);

} // namespace ffc::camera
