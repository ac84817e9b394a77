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
  /// What of the samples around a box has to do with it, pixels.
  static constexpr uint32_t REACH = 13;

  /// All memory, for boxes that have so many pixels together with those in reach. May throw std::bad_alloc; nothing
  /// else does.
  explicit CTotalVariation(std::size_t nLargest);

  /// Writes one box of the result: the same as if it were all of the image.
  /// \param stBox not empty
  /// \param fWeight DN, above 0
  /// \param result of the size of samples, and not the same
  void Smooth(const SImage &samples, const SBox &stBox, float fWeight, const SImage &result);

private:
  void TakeAway(const SImage &samples, const SBox &stWide, const std::vector<float> &listColumns,
                const std::vector<float> &listLines, float fWeight);
  void Descend(const SBox &stWide, float fStep, float fMomentum);

  std::vector<float> m_listResult;
  /// Differences that are taken away of a sample towards the next column and line, from -1 to 1, and where they are
  /// looked for next.
  std::vector<float> m_listColumns;
  std::vector<float> m_listLines;
  std::vector<float> m_listNextColumns;
  std::vector<float> m_listNextLines;
};

} // namespace ffc::reference
