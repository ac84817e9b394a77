/// \file
/// Frames of one scene, as they came and as they were corrected.
#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_set>

#include "genapi/sensorformat.h"
#include "quality/brightfield.h"

namespace ffc::quality {

/// Stacks of the same exposures before and after the correction, so that both sets of figures describe the
/// same light and the same noise.
///
/// A frame equal to one already taken is left out: a short recording that is played in a loop would
/// otherwise pass for fresh frames, and its noise for a feature of the sensor.
class CPairedStacks {
public:
  /// \return false when the size is none or memory is short
  bool Prepare(uint32_t nWidth, uint32_t nHeight, const genapi::SSensorFormat &stFormat);

  /// Takes one exposure; both buffers have the prepared size.
  /// \return false for a buffer of another size; a repeated frame is no failure
  bool Add(const void *pRaw, const void *pCorrected, std::size_t nSize);

  const CFrameStack &GetRaw() const { return m_stackRaw; }
  const CFrameStack &GetCorrected() const { return m_stackCorrected; }
  /// The light of the raw frames.
  const CLightWatch &GetWatch() const { return m_watch; }
  uint32_t GetRepeatedCount() const { return m_nRepeated; }
  /// Samples at the depth's maximum in a corrected frame that were not there in its raw frame.
  uint64_t GetNewlyClippedCount() const { return m_nNewlyClipped; }
  /// The same in percent of all samples; 0 for empty stacks.
  double GetNewlyClippedPercent() const;

private:
  CFrameStack m_stackRaw;
  CFrameStack m_stackCorrected;
  CLightWatch m_watch;
  std::unordered_set<std::size_t> m_setSeen;
  uint32_t m_nRepeated = 0;
  uint64_t m_nNewlyClipped = 0;
};

} // namespace ffc::quality
