#include "camera/aravis/overlay/floatalias.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "genapi/softwarenodemap/numbertext.h"

namespace ffc::camera {

CFloatAlias::CFloatAlias(std::recursive_mutex &mutex, std::string strName, const SFloatSource &stSource)
  : m_stSource(stSource), m_guard(std::move(strName), mutex)
{
}

GenApi::EAccessMode CFloatAlias::GetAccessMode() const
{
  const auto lock = m_guard.Acquire();
  if (m_stSource.pFactor != nullptr && !GenApi::IsReadable(m_stSource.pFactor->GetAccessMode())) {
    return GenApi::NA;
  }
  return m_stSource.pFloat != nullptr ? m_stSource.pFloat->GetAccessMode() : m_stSource.pInteger->GetAccessMode();
}

double CFloatAlias::AskFactor() const
{
  const double dFactor = m_stSource.dFactor * (m_stSource.pFactor == nullptr ? 1.0 : m_stSource.pFactor->GetValue());
  if (!(dFactor > 0.0) || std::isinf(dFactor)) {
    m_guard.ThrowRuntime("the camera has no unit for it at the moment");
  }
  return dFactor;
}

void CFloatAlias::SetValue(double dValue, bool bVerify)
{
  const auto lock = m_guard.Acquire();
  const double dSource = dValue / AskFactor();
  if (m_stSource.pFloat != nullptr) {
    m_stSource.pFloat->SetValue(dSource, bVerify);
  } else {
    SetInteger(dSource, bVerify);
  }
}

/// Verified: up to half a step beyond the range is its end.
void CFloatAlias::SetInteger(double dValue, bool bVerify)
{
  constexpr double LIMIT = 9e18; // of the type
  if (!(std::fabs(dValue) <= LIMIT)) {
    m_guard.ThrowOutOfRange("the value is beyond all integers");
  }
  GenApi::IInteger &integer = *m_stSource.pInteger;
  const int64_t nInc = integer.GetInc();
  const int64_t nMin = nInc > 1 ? integer.GetMin() : 0; // what the steps count from
  const double dSteps = std::round((dValue - static_cast<double>(nMin)) / static_cast<double>(nInc));
  integer.SetValue(nMin + static_cast<int64_t>(dSteps) * nInc, bVerify);
}

double CFloatAlias::GetValue(bool bVerify, bool bIgnoreCache)
{
  const auto lock = m_guard.Acquire();
  const double dSource = m_stSource.pFloat != nullptr
                           ? m_stSource.pFloat->GetValue(bVerify, bIgnoreCache)
                           : static_cast<double>(m_stSource.pInteger->GetValue(bVerify, bIgnoreCache));
  return dSource * AskFactor();
}

double CFloatAlias::GetMin()
{
  const auto lock = m_guard.Acquire();
  return AskFactor() * (m_stSource.pFloat != nullptr ? m_stSource.pFloat->GetMin()
                                                     : static_cast<double>(m_stSource.pInteger->GetMin()));
}

double CFloatAlias::GetMax()
{
  const auto lock = m_guard.Acquire();
  return AskFactor() * (m_stSource.pFloat != nullptr ? m_stSource.pFloat->GetMax()
                                                     : static_cast<double>(m_stSource.pInteger->GetMax()));
}

bool CFloatAlias::HasInc()
{
  return m_stSource.pFloat == nullptr || m_stSource.pFloat->HasInc();
}

double CFloatAlias::GetInc()
{
  const auto lock = m_guard.Acquire();
  return AskFactor() * (m_stSource.pFloat != nullptr ? m_stSource.pFloat->GetInc()
                                                     : static_cast<double>(m_stSource.pInteger->GetInc()));
}

GenICam::gcstring CFloatAlias::ToString(bool bVerify, bool bIgnoreCache)
{
  return genapi::FormatValue(GetValue(bVerify, bIgnoreCache)).c_str();
}

void CFloatAlias::FromString(const GenICam::gcstring &strValue, bool bVerify)
{
  const auto value = genapi::ParseValue<double>(strValue.c_str());
  if (!value) {
    m_guard.ThrowInvalidArgument("'" + std::string(strValue.c_str()) + "' is no value of this node");
  }
  SetValue(*value, bVerify);
}

} // namespace ffc::camera
