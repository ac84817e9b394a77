/// \file
/// Frames per second, as a person can read them.
#pragma once

#include <cstdint>
#include <optional>

namespace ffc::host {

/// The rate over the last half second or more.
class CFrameRate {
public:
  /// \param nFrames frames that have come so far
  /// \param nMilliseconds of a clock that never goes back
  /// \return frames per second; 0 before the first half second is over
  double Update(uint64_t nFrames, int64_t nMilliseconds);
  /// Another camera, another count.
  void Reset();

private:
  static constexpr int64_t INTERVAL_MS = 500;

  std::optional<uint64_t> m_nFrames;
  int64_t m_nMilliseconds = 0;
  double m_dRate = 0;
};

} // namespace ffc::host
