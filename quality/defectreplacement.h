/// \file
/// Puts values of their neighbours in place of defect pixels.
#pragma once

#include "quality/defects.h"

namespace ffc::quality {

/// For frames of one size. Each defect takes the mean, rounded, of the nearest pixels of its channel that are none:
/// those beside, above and below it, else those on the smallest square around it that has any. From any thread.
class CDefectReplacement {
public:
  /// \return a failure for a pixel outside, as the end of a sentence about the list
  Result<> Prepare(const std::vector<SDefect> &listDefects, uint32_t nWidth, uint32_t nHeight, genapi::EColorLayout eLayout);

  std::size_t GetCount() const { return m_listPlaces.size(); }
  /// Defects whose surroundings have no good pixel either; they stay as they are.
  std::size_t GetLeftCount() const { return m_nLeft; }

  /// Changes a frame of the prepared size, tightly packed.
  /// \param nBytesPerSample 1 or 2
  void Apply(void *pFrame, uint32_t nBytesPerSample) const;

private:
  struct SPlace {
    std::size_t nPixel = 0;
    std::size_t nFirst = 0; ///< in m_listSources
    std::size_t nCount = 0;
  };
  template <class TSample>
  void Replace(TSample *pSamples) const;

  std::vector<SPlace> m_listPlaces;
  std::vector<std::size_t> m_listSources;
  std::size_t m_nLeft = 0;
};

} // namespace ffc::quality
