/// \file
/// Whether frames are worth sharing among threads.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

namespace ffc::ombrix {

/// How many frames are not shared after one that sharing made no faster; twice as many each time that the next try is
/// no better, up to the larger number. More than a hundred, so that such frames are fewer than one in a hundred.
constexpr uint32_t FRAMES_ALONE = 128;
constexpr uint32_t MOST_FRAMES_ALONE = 1024;

/// How a thread's bands of a frame went.
struct SPace {
  using TDuration = std::chrono::steady_clock::duration;

  std::size_t nBands = 0;
  TDuration total{0};
  TDuration longest{0};

  void Count(TDuration band) noexcept;
  /// Without the longest band, which may not have been work.
  TDuration GetMean() const noexcept;
};

/// Decides by how sharing went so far. One thread at a time.
class CSharingJudge {
public:
  /// To be asked once for each frame. \return whether to share it
  bool SharesNext() noexcept;
  /// Learns from a frame that was shared.
  /// \param stOwn the caller's bands
  /// \param nOthers bands that other threads worked on
  /// \param wait how long the caller waited for them at the end
  void Judge(const SPace &stOwn, std::size_t nOthers, SPace::TDuration wait) noexcept;

private:
  uint32_t m_nAlone = 0; // frames that are still not to be shared
  uint32_t m_nNextAlone = FRAMES_ALONE;
  bool m_bFirst = true;
};

} // namespace ffc::ombrix
