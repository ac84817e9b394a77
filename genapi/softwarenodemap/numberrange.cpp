#include "genapi/softwarenodemap/numberrange.h"

#include <cmath>

#include "genapi/softwarenodemap/numbertext.h"

namespace ffc::genapi {

namespace {

// In unsigned arithmetic, which no distance between two 64-bit values overflows.
bool IsOnGrid(int64_t nValue, int64_t nMin, int64_t nInc)
{
  return nInc <= 1 || (static_cast<uint64_t>(nValue) - static_cast<uint64_t>(nMin)) % static_cast<uint64_t>(nInc) == 0;
}

bool IsOnGrid(double dValue, double dMin, double dInc)
{
  const double dSteps = (dValue - dMin) / dInc;
  return !(dInc > 0.0) || std::fabs(dSteps - std::round(dSteps)) <= 1e-6;
}

template <class TValue>
void Check(const CNodeGuard &guard, TValue value, TValue min, TValue max, TValue inc)
{
  if (!(value >= min && value <= max)) { // NaN fails both comparisons
    guard.ThrowOutOfRange(FormatValue(value) + " is not between " + FormatValue(min) + " and " + FormatValue(max));
  }
  if (!IsOnGrid(value, min, inc)) {
    guard.ThrowOutOfRange(FormatValue(value) + " is not " + FormatValue(min) + " plus a multiple of " +
                          FormatValue(inc));
  }
}

} // namespace

void CheckRange(const CNodeGuard &guard, int64_t nValue, int64_t nMin, int64_t nMax, int64_t nInc)
{
  Check(guard, nValue, nMin, nMax, nInc);
}

void CheckRange(const CNodeGuard &guard, double dValue, double dMin, double dMax, double dInc)
{
  Check(guard, dValue, dMin, dMax, dInc);
}

} // namespace ffc::genapi
