/// \file
/// Single pixels far off all around them: defects, which no weight may take for noise.
#pragma once

#include <cstdint>
#include <vector>

#include "reference/noisemodel.h"
#include "reference/scales.h"

namespace ffc::reference {

struct SLonePixel {
  uint32_t nColumn;
  uint32_t nLine;
  float fSample; ///< as it was
};

/// Finds them in a part of an image, and takes them out before scales are made of it: there what is around them is told
/// from noise as if they were not there, and they keep their samples. One for each thread.
class CLonePixels {
public:
  /// All memory, for a part of so many samples. May throw std::bad_alloc; nothing else does.
  explicit CLonePixels(std::size_t nLargest);

  void Clear() { m_listPixels.clear(); }
  /// Each becomes the mean of its neighbours. Where they are many they are a pattern, and all stay.
  /// \param wide fine smoothed once; follows
  void TakeOut(const SImage &fine, const SImage &wide, const SFieldNoise &stNoise);

  /// Line after line.
  const std::vector<SLonePixel> &GetAll() const { return m_listPixels; }

private:
  bool FindOutliers(const SImage &fine, const SImage &wide, const SFieldNoise &stNoise);

  float m_fGain; ///< of white noise in the finest detail
  std::vector<SLonePixel> m_listPixels;
};

} // namespace ffc::reference
