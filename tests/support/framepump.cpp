#include "tests/support/framepump.h"

#include <chrono>
#include <utility>

namespace ffc::test {

CFramePump::CFramePump(FnFill fnFill, FnDeliver fnDeliver, double dFramesPerSecond)
  : m_fnFill(std::move(fnFill)), m_fnDeliver(std::move(fnDeliver)), m_dFramesPerSecond(dFramesPerSecond),
    m_thread([this] { Run(); })
{
}

CFramePump::~CFramePump()
{
  Stop();
}

void CFramePump::Stop()
{
  m_bStop = true;
  if (m_thread.joinable()) {
    m_thread.join();
  }
}

void CFramePump::Run()
{
  std::vector<uint8_t> listFrame;
  while (!m_bStop) {
    m_fnFill(listFrame, m_nFrameCount);
    m_fnDeliver(listFrame);
    ++m_nFrameCount;
    const double dRate = m_dFramesPerSecond;
    if (dRate > 0.0) {
      std::this_thread::sleep_for(std::chrono::duration<double>(1.0 / dRate));
    }
  }
}

} // namespace ffc::test
