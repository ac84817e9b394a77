#include "camera/aravis/cameralink.h"

#include <utility>

namespace ffc::camera {

void CCameraLink::SetLostCallback(LostCallback fnLost)
{
  const std::lock_guard lock(m_mutex);
  m_fnLost = std::move(fnLost);
}

SFrameLosses CCameraLink::GetLosses() const
{
  const std::lock_guard lock(m_mutexLosses);
  SFrameLosses stLosses = m_stEarlier;
  return stLosses += m_stStream;
}

void CCameraLink::BeginStream()
{
  const std::lock_guard lock(m_mutexLosses);
  m_stEarlier += m_stStream;
  m_stStream = {};
}

void CCameraLink::SetStreamLosses(const SFrameLosses &stLosses)
{
  const std::lock_guard lock(m_mutexLosses);
  m_stStream = stLosses;
}

void CCameraLink::MarkLost()
{
  if (m_bLost.exchange(true)) {
    return;
  }
  const std::lock_guard lock(m_mutex);
  if (m_fnLost) {
    m_fnLost();
  }
}

} // namespace ffc::camera
