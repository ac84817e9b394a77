#include "host/window/framerate.h"

namespace ffc::host {

double CFrameRate::Update(uint64_t nFrames, int64_t nMilliseconds)
{
  if (!m_nFrames || nFrames < *m_nFrames) {
    m_nFrames = nFrames;
    m_nMilliseconds = nMilliseconds;
    m_dRate = 0;
  } else if (nMilliseconds - m_nMilliseconds >= INTERVAL_MS) {
    m_dRate = 1000.0 * static_cast<double>(nFrames - *m_nFrames) / static_cast<double>(nMilliseconds - m_nMilliseconds);
    m_nFrames = nFrames;
    m_nMilliseconds = nMilliseconds;
  }
  return m_dRate;
}

void CFrameRate::Reset()
{
  *this = CFrameRate();
}

} // namespace ffc::host
