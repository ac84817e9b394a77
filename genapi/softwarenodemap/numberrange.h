/// \file
/// The verification of a written number.
#pragma once

#include <cstdint>

#include "genapi/softwarenodemap/nodeguard.h"

namespace ffc::genapi {

/// OutOfRangeException unless the value lies in the range and is the minimum plus a multiple of nInc; an increment
/// of 1 or less is none.
void CheckRange(const CNodeGuard &guard, int64_t nValue, int64_t nMin, int64_t nMax, int64_t nInc);
/// The same; NaN is never in range. A value within a millionth of a step is on it, and an increment that is not
/// above 0 is none.
void CheckRange(const CNodeGuard &guard, double dValue, double dMin, double dMax, double dInc);

} // namespace ffc::genapi
