/// \file
/// The numbers that a camera gives its frames, as numbers that only grow.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>

namespace ffc::camera {

/// Counts on over the end of the numbers that the transport has, and over streams, each of which begins anew.
class CFrameNumbers {
public:
  struct SNumber {
    uint64_t nNumber = 0;  ///< of all frames since this was made
    uint64_t nSkipped = 0; ///< numbers between the last frame and this one
  };

  /// The next frame is the first of a stream: what lies between is not known.
  void BeginStream() { m_nLastId.reset(); }

  /// \param nId as the transport has it: 1 to 65535 and again, or 64 bits; nothing where it got lost. A frame whose
  /// number lies behind the last one's has lost its own too, and counts as the next.
  SNumber Next(std::optional<uint64_t> nId)
  {
    uint64_t nSteps = 1;
    if (!m_nLastId) {
      m_nLastId = nId;
    } else {
      const uint64_t nAhead = nId ? GetSteps(*m_nLastId, *nId) : 0;
      nSteps = std::max<uint64_t>(nAhead, 1);
      m_nLastId = nAhead > 0 ? *nId : *m_nLastId + 1;
    }
    m_nNext += nSteps;
    return {m_nNext - 1, nSteps - 1};
  }

private:
  /// How far the number lies ahead; 0 when it lies behind.
  static uint64_t GetSteps(uint64_t nLast, uint64_t nId)
  {
    constexpr uint64_t MAX_SHORT = 0xFFFF;
    constexpr uint64_t HALF = MAX_SHORT / 2;
    const bool bShort = nLast <= MAX_SHORT && nId <= MAX_SHORT;
    if (nId > nLast) {
      return bShort && nId - nLast > HALF ? 0 : nId - nLast;
    }
    // Far smaller: the short numbers have begun again, mostly without 0.
    return bShort && nLast - nId > HALF ? std::max<uint64_t>(nId + MAX_SHORT - nLast, 1) : 0;
  }

  std::optional<uint64_t> m_nLastId;
  uint64_t m_nNext = 0;
};

} // namespace ffc::camera
