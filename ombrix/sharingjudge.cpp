#include "ombrix/sharingjudge.h"

#include <algorithm>
#include <utility>

namespace ffc::ombrix {

namespace {

constexpr int FRAMES_OF_TYPICAL = 4;
constexpr int LATE = 8; // as the part of a typical frame; those of one thread are later now and then
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

// Late is a frame whose other thread lost its processor within a band, or took the caller's when it was woken. Where
// others keep the processors busy a try may cost a time slice, which is many frames: tries become rare. Two frames in a
// row that are no faster tell that there is nothing to gain.
void CSharingJudge::CountShared(TDuration time) noexcept
{
  ++m_nShared;
  if (m_typical == TDuration(0)) {
    m_nAlone = FRAMES_TO_LEARN;
    return;
  }
  const bool bGained = time < m_typical;
  const bool bGainedBefore = std::exchange(m_bGained, bGained);
  if (time > m_typical + m_typical / LATE || !(bGained || bGainedBefore)) {
    m_nAlone = m_nNextAlone;
    m_nNextAlone = std::min(2 * m_nNextAlone, MOST_FRAMES_ALONE);
    return;
  }
  m_nNextAlone = std::max(m_nNextAlone - m_nNextAlone / SLOWLY, FRAMES_ALONE);
  if (m_nShared == SHARED_FRAMES_IN_A_ROW) {
    m_nAlone = 1;
  }
}

} // namespace ffc::ombrix
