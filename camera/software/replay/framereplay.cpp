#include "camera/software/replay/framereplay.h"

#include <utility>

namespace ffc::camera {

CFrameReplay::CFrameReplay(frames::SRecordedFrames stFrames) : m_stFrames(std::move(stFrames)) {}

void CFrameReplay::Expose(const SCameraSettings &, const SScene &stScene, uint64_t, std::vector<uint8_t> &listFrame)
{
  const auto &listFrames =
    stScene.bLensCapOn && !m_stFrames.listDark.empty() ? m_stFrames.listDark : m_stFrames.listBright;
  const bool bMeasure = stScene.ePurpose == ISceneControl::EPurpose::Measurement;
  const std::size_t nFirstHalf = (listFrames.size() + 1) / 2;
  const std::size_t nBegin = bMeasure ? nFirstHalf : 0;
  const std::size_t nCount = bMeasure ? listFrames.size() - nFirstHalf : nFirstHalf;
  std::size_t &nPlayed = m_anPlayed[stScene.bLensCapOn ? 0 : 1][bMeasure ? 1 : 0];
  const std::size_t nRound = nPlayed / nCount;
  listFrame = listFrames[nBegin + (nPlayed + nRound) % nCount];
  ++nPlayed;
}

} // namespace ffc::camera
