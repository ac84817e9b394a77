#include "genapi/softwarenodemap/numbernodes.h"

#include "genapi/softwarenodemap/numberrange.h"

namespace ffc::genapi {

template <class TNode, class TInterface, class TValue>
void CSoftwareNumber<TNode, TInterface, TValue>::CheckRange(TValue value) const
{
  genapi::CheckRange(this->m_guard, value, m_min.Get(), m_max.Get(), m_inc.Get());
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

} // namespace ffc::genapi
