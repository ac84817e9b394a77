/// \file
/// Whether frames are worth sharing among threads.
#pragma once

#include <chrono>
#include <cstdint>

namespace ffc::ombrix {

/// How many frames are not shared after the first one of all, to learn how long they take.
constexpr uint32_t FRAMES_TO_LEARN = 4;
/// Of so many shared frames one may be no faster, as frames of one thread are later now and then too.
constexpr uint32_t FRAMES_OF_ONE_IN_VAIN = 8;
/// How many are not shared after a second one; twice as many each time that the next try is no better, up to the larger
/// number. More than two hundred, so that fewer than one frame in a hundred is a try where sharing brings nothing.
constexpr uint32_t FRAMES_ALONE = 256;
constexpr uint32_t MOST_FRAMES_ALONE = 2048;
/// After so many shared frames in a row one is not, since what it takes may have changed.
constexpr uint32_t SHARED_FRAMES_IN_A_ROW = 256;

/// Decides by how long frames of one kind took, shared and not. One thread at a time.
class CSharingJudge {
public:
  using TDuration = std::chrono::steady_clock::duration;

  /// To be asked once for each frame, which has to be counted then. \return whether to share it
  bool SharesNext() const noexcept { return m_nAlone == 0; }
  /// Learns from a frame that was not shared.
  void CountAlone(TDuration time) noexcept;
  /// Learns from one that was.
  void CountShared(TDuration time) noexcept;

private:
  TDuration m_typical{0};    // of frames that were not shared; 0 until there was one
  uint32_t m_nShared = 0;    // frames in a row
  uint32_t m_nSuspicion = 0; // of shared frames, for one of which there was no gain
  uint32_t m_nAlone = 0;     // frames that are still not to be shared
  uint32_t m_nNextAlone = FRAMES_ALONE;
};

} // namespace ffc::ombrix
