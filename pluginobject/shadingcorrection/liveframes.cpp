#include "pluginobject/shadingcorrection/liveframes.h"

#include <chrono>
#include <thread>

namespace ffc::dialog {

CFrameGate::CPass::CPass(CFrameGate &gate) : m_gate(gate)
{
  // Frames before a closed gate are not counted: however many they are, Close does not wait for them.
  if (!m_gate.m_bOpen) {
    return;
  }
  // Counted first, then looked: Close looks in the other order, so one of the two sees the other.
  ++m_gate.m_nWithin;
  m_bGranted = m_gate.m_bOpen;
  if (!m_bGranted) {
    --m_gate.m_nWithin;
  }
}

CFrameGate::CPass::~CPass()
{
  if (m_bGranted) {
    --m_gate.m_nWithin;
  }
}

void CFrameGate::Close()
{
  constexpr std::chrono::microseconds PAUSE(100);
  m_bOpen = false;
  while (m_nWithin > 0) {
    std::this_thread::sleep_for(PAUSE);
  }
}

} // namespace ffc::dialog
