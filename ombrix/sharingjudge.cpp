#include "ombrix/sharingjudge.h"

#include <algorithm>
#include <utility>

namespace ffc::ombrix {

namespace {

constexpr int FRAMES_OF_TYPICAL = 4;
constexpr uint32_t SLOWLY = 16;

} // namespace

// A frame that took very long was interrupted, and is not the rule.
void CSharingJudge::CountAlone(TDuration time) noexcept
{
  m_typical =
    m_typical == TDuration(0) ? time : m_typical + (std::min(time, 2 * m_typical) - m_typical) / FRAMES_OF_TYPICAL;
  m_nShared = 0;
  m_nAlone -= m_nAlone > 0 ? 1 : 0;
}

// In vain is a frame whose other thread lost its processor within a band, or took the caller's when it was woken. Where
// others keep the processors busy a try may cost a time slice, which is many frames: tries become rare.
void CSharingJudge::CountShared(TDuration time) noexcept
{
  ++m_nShared;
  if (m_typical == TDuration(0)) {
    m_nAlone = FRAMES_TO_LEARN;
  } else if (time < m_typical) {
    m_nNextAlone = std::max(m_nNextAlone - m_nNextAlone / SLOWLY, FRAMES_ALONE);
    m_nSuspicion -= m_nSuspicion > 0 ? 1 : 0;
    m_nAlone = m_nShared >= SHARED_FRAMES_IN_A_ROW ? 1 : 0;
  } else if (std::exchange(m_nSuspicion, FRAMES_OF_ONE_IN_VAIN) > 0) {
    m_nSuspicion = 0;
    m_nAlone = m_nNextAlone;
    m_nNextAlone = std::min(2 * m_nNextAlone, MOST_FRAMES_ALONE);
  }
}

} // namespace ffc::ombrix
