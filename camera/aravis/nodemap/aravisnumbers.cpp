#include "camera/aravis/nodemap/aravisnumbers.h"

#include <algorithm>
#include <limits>

#include "camera/aravis/nodemap/floatchain.h"
#include "genapi/softwarenodemap/numberrange.h"

namespace ffc::camera {

CAravisInteger::CAravisInteger(ArvGcFeatureNode *pNode, std::string strName, SNodeMapState &state)
  : CAravisScalar(pNode, std::move(strName), state), m_pInteger(ARV_GC_INTEGER(pNode))
{
}

void CAravisInteger::SetValue(int64_t nValue, bool bVerify)
{
  const auto lock = m_core.Acquire();
  m_core.CheckWritable(bVerify);
  if (bVerify) {
    genapi::CheckRange(m_core.Guard(), nValue, GetMin(), GetMax(), GetInc());
  }
  m_core.Call([&](GError **ppError) { arv_gc_integer_set_value(m_pInteger, nValue, ppError); });
}

int64_t CAravisInteger::GetValue(bool bVerify, bool)
{
  const auto lock = m_core.Acquire();
  m_core.CheckReadable(bVerify);
  return m_core.Call([this](GError **ppError) { return arv_gc_integer_get_value(m_pInteger, ppError); });
}

int64_t CAravisInteger::GetMin()
{
  const auto lock = m_core.Acquire();
  m_core.CheckAvailable();
  return m_core.CallForLimit([this](GError **ppError) { return arv_gc_integer_get_min(m_pInteger, ppError); });
}

int64_t CAravisInteger::GetMax()
{
  const auto lock = m_core.Acquire();
  m_core.CheckAvailable();
  return m_core.CallForLimit([this](GError **ppError) { return arv_gc_integer_get_max(m_pInteger, ppError); });
}

int64_t CAravisInteger::GetInc()
{
  const auto lock = m_core.Acquire();
  if (!m_core.IsAvailable()) {
    return 1;
  }
  const int64_t nInc =
    m_core.CallForLimit([this](GError **ppError) { return arv_gc_integer_get_inc(m_pInteger, ppError); });
  return std::max<int64_t>(nInc, 1);
}

CAravisFloat::CAravisFloat(ArvGcFeatureNode *pNode, std::string strName, SNodeMapState &state)
  : CAravisScalar(pNode, std::move(strName), state), m_pFloat(ARV_GC_FLOAT(pNode))
{
}

void CAravisFloat::SetValue(double dValue, bool bVerify)
{
  const auto lock = m_core.Acquire();
  m_core.CheckWritable(bVerify);
  if (bVerify) {
    dValue = CheckRange(dValue);
  }
  m_core.Call([&](GError **ppError) { SetNearestValue(m_pFloat, dValue, ppError); });
}

/// A limit that was rounded to single precision may lie outside the range; it counts as the limit itself.
double CAravisFloat::CheckRange(double dValue)
{
  const double dMin = GetMin();
  const double dMax = GetMax();
  if (dValue < dMin && dValue == static_cast<double>(static_cast<float>(dMin))) {
    return dMin;
  }
  if (dValue > dMax && dValue == static_cast<double>(static_cast<float>(dMax))) {
    return dMax;
  }
  genapi::CheckRange(m_core.Guard(), dValue, dMin, dMax, 0.0);
  return dValue;
}

double CAravisFloat::GetValue(bool bVerify, bool)
{
  const auto lock = m_core.Acquire();
  m_core.CheckReadable(bVerify);
  return m_core.Call([this](GError **ppError) { return arv_gc_float_get_value(m_pFloat, ppError); });
}

double CAravisFloat::GetMin()
{
  const auto lock = m_core.Acquire();
  m_core.CheckAvailable();
  return m_core.CallForLimit([this](GError **ppError) { return arv_gc_float_get_min(m_pFloat, ppError); });
}

double CAravisFloat::GetMax()
{
  const auto lock = m_core.Acquire();
  m_core.CheckAvailable();
  return m_core.CallForLimit([this](GError **ppError) { return arv_gc_float_get_max(m_pFloat, ppError); });
}

bool CAravisFloat::HasInc()
{
  const auto lock = m_core.Acquire();
  return AskIncrement() > 0.0;
}

double CAravisFloat::GetInc()
{
  const auto lock = m_core.Acquire();
  const double dInc = AskIncrement();
  if (!(dInc > 0.0)) {
    m_core.Guard().ThrowAccess("node has no increment");
  }
  return dInc;
}

/// 0 when there is none: the library's word for that is the least number above 0.
double CAravisFloat::AskIncrement() const
{
  if (!m_core.IsAvailable()) {
    return 0.0;
  }
  const double dInc = m_core.CallForLimit([this](GError **ppError) { return arv_gc_float_get_inc(m_pFloat, ppError); });
  return dInc > std::numeric_limits<double>::min() ? dInc : 0.0;
}

CAravisBoolean::CAravisBoolean(ArvGcFeatureNode *pNode, std::string strName, SNodeMapState &state)
  : CAravisScalar(pNode, std::move(strName), state), m_pBoolean(ARV_GC_BOOLEAN(pNode))
{
}

void CAravisBoolean::SetValue(bool bValue, bool bVerify)
{
  const auto lock = m_core.Acquire();
  m_core.CheckWritable(bVerify);
  m_core.Call([&](GError **ppError) { arv_gc_boolean_set_value(m_pBoolean, bValue ? TRUE : FALSE, ppError); });
}

bool CAravisBoolean::GetValue(bool bVerify, bool) const
{
  const auto lock = m_core.Acquire();
  m_core.CheckReadable(bVerify);
  return m_core.Call([this](GError **ppError) { return arv_gc_boolean_get_value(m_pBoolean, ppError) != FALSE; });
}

} // namespace ffc::camera
