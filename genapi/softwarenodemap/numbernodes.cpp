#include "genapi/softwarenodemap/numbernodes.h"

#include <cmath>

namespace {

/// In unsigned arithmetic, which no distance between two 64-bit values overflows.
bool IsOnGrid(int64_t nValue, int64_t nMin, int64_t nInc)
{
  return nInc <= 1 || (static_cast<uint64_t>(nValue) - static_cast<uint64_t>(nMin)) % static_cast<uint64_t>(nInc) == 0;
}

bool IsOnGrid(double dValue, double dMin, double dInc)
{
  const double dSteps = (dValue - dMin) / dInc;
  return !(dInc > 0.0) || std::fabs(dSteps - std::round(dSteps)) <= 1e-6;
}

} // namespace

template <class TNode, class TInterface, class TValue>
void CSoftwareNumber<TNode, TInterface, TValue>::CheckRange(TValue value) const
{
  const TValue min = m_min.Get();
  const TValue max = m_max.Get();
  const TValue inc = m_inc.Get();
  if (!(value >= min && value <= max)) { // NaN fails both comparisons
    this->m_guard.ThrowOutOfRange(FormatValue(value) + " is not between " + FormatValue(min) + " and " +
                                  FormatValue(max));
  }
  if (!IsOnGrid(value, min, inc)) {
    this->m_guard.ThrowOutOfRange(FormatValue(value) + " is not " + FormatValue(min) + " plus a multiple of " +
                                  FormatValue(inc));
  }
}

template class CSoftwareNumber<CSoftwareInteger, GenApi::IInteger, int64_t>;
template class CSoftwareNumber<CSoftwareFloat, GenApi::IFloat, double>;

double CSoftwareFloat::GetInc()
{
  const double dInc = AskIncrement();
  if (!(dInc > 0.0)) {
    m_guard.ThrowAccess("node has no increment");
  }
  return dInc;
}

void CSoftwareBoolean::SetValue(bool bValue, bool bVerify)
{
  const auto lock = m_guard.Acquire();
  CheckWritable(bVerify);
  Write(bValue);
}

bool CSoftwareBoolean::GetValue(bool bVerify, bool) const
{
  const auto lock = m_guard.Acquire();
  return Read(bVerify);
}
