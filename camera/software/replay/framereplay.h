/// \file
/// Recorded frames as a source.
#pragma once

#include <array>
#include <cstddef>

#include "camera/software/iframesource.h"
#include "frames/recordedframes.h"

namespace ffc::camera {

/// Plays dark frames while the lens cap is on, where there are any, else bright ones, in order and round again; the
/// first half of each kind for acquisitions (one more when the number is odd), the second for measurements. Each round
/// begins one frame later, so that a host which is too slow for all frames does not get the same few again and again.
class CFrameReplay final : public IFrameSource {
public:
  explicit CFrameReplay(ffc::frames::SRecordedFrames stFrames);

  void Expose(const SCameraSettings &stSettings, const SScene &stScene, uint64_t nFrameId,
              std::vector<uint8_t> &listFrame) override;

private:
  ffc::frames::SRecordedFrames m_stFrames;
  std::array<std::array<std::size_t, 2>, 2> m_anPlayed{}; ///< how many, by kind and purpose
};

} // namespace ffc::camera
