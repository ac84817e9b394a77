/// \file
/// Writing a float whose value is kept in an integer at last. Whoever calls holds the map's lock.
#pragma once

#include <arv.h>

namespace ffc::camera {

/// Sets a float to the nearest value that the camera can have: the library cuts what is written to an integer off,
/// so that a value that is read and written back would move by one step.
///
/// Where the chain of nodes has formulas, the nearest is what reads back with the least difference.
void SetNearestValue(ArvGcFloat *pFloat, double dValue, GError **ppError);

} // namespace ffc::camera
