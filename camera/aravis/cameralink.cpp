#include "camera/aravis/cameralink.h"

#include <utility>

namespace ffc::camera {

void CCameraLink::SetLostCallback(LostCallback fnLost)
{
  const std::lock_guard lock(m_mutex);
  m_fnLost = std::move(fnLost);
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
