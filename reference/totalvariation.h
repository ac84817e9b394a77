/// \file
/// An image of few levels with short edges.
#pragma once

#include <vector>

#include "reference/scales.h"

namespace ffc::reference {

/// Minimises the squared distance from samples, plus twice fWeight for all differences of neighbours: what noise there
/// is within a region goes, edges stay where many samples along them say so. One for each thread.
class CTotalVariation {
public:
  /// All memory, for images of so many samples. May throw std::bad_alloc; nothing else does.
  explicit CTotalVariation(std::size_t nLargest);

  /// \param fWeight DN, above 0
  /// \param result of the size of samples, and not the same
  void Smooth(const SImage &samples, float fWeight, const SImage &result);

private:
  void Descend(const SImage &result, float fStep, float fMomentum);

  /// Differences that are taken away of a sample towards the next column and line, from -1 to 1, and where they are
  /// looked for next.
  std::vector<float> m_listColumns;
  std::vector<float> m_listLines;
  std::vector<float> m_listNextColumns;
  std::vector<float> m_listNextLines;
};

} // namespace ffc::reference
