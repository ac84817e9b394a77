#include "ombrix/sharingjudge.h"

#include <algorithm>
#include <utility>

namespace ffc::ombrix {

namespace {

constexpr int SMALLEST_GAIN = 8; // as the part of the others' bands that it is
constexpr uint32_t SLOWLY = 16;

} // namespace

void SPace::Count(TDuration band) noexcept
{
  ++nBands;
  total += band;
  longest = std::max(longest, band);
}

SPace::TDuration SPace::GetMean() const noexcept
{
  return nBands > 1 ? (total - longest) / static_cast<TDuration::rep>(nBands - 1) : total;
}

bool CSharingJudge::SharesNext() noexcept
{
  if (m_nAlone > 0) {
    --m_nAlone;
    return false;
  }
  return true;
}

// What sharing gained are the others' bands, of which little is left where the memory decides, which is shared too.
// What it may have cost are the wait for a thread that lost its processor within a band, and a band of the caller's
// that took long, for the thread that was woken may have taken the caller's. Where others keep the processors busy, a
// try may cost a time slice, which is many frames: tries become rare.
void CSharingJudge::Judge(const SPace &stOwn, std::size_t nOthers, SPace::TDuration wait) noexcept
{
  const bool bFirst = std::exchange(m_bFirst, false);
  // Threads that have just been started may come too late for their first frame.
  if (bFirst && nOthers == 0) {
    return;
  }
  const SPace::TDuration lost = wait + stOwn.longest - stOwn.GetMean();
  if (lost < static_cast<SPace::TDuration::rep>(nOthers) * stOwn.GetMean() / SMALLEST_GAIN) {
    m_nNextAlone = std::max(m_nNextAlone - m_nNextAlone / SLOWLY, FRAMES_ALONE);
  } else {
    m_nAlone = m_nNextAlone;
    m_nNextAlone = std::min(2 * m_nNextAlone, MOST_FRAMES_ALONE);
  }
}

} // namespace ffc::ombrix
