/// \file
/// What all samples of a column or of a line share.
#pragma once

#include <cstdint>
#include <vector>

namespace ffc::reference {

/// Sums of detail over squares of a plane: of each column within a band of lines, and the other way round. Each part is
/// written by one thread.
struct SProfileSums {
  uint32_t nBandSide = 0; ///< samples of a band; the last one may have fewer
  uint32_t nWidth = 0;
  uint32_t nHeight = 0;
  std::vector<float> listColumns; ///< band of lines after band, a value per column
  std::vector<float> listLines;   ///< band of columns after band, a value per line

  /// May throw std::bad_alloc.
  void Prepare(uint32_t nPlaneWidth, uint32_t nPlaneHeight, uint32_t nSide);
  uint32_t GetLineBands() const { return (nHeight + nBandSide - 1) / nBandSide; }
  uint32_t GetColumnBands() const { return (nWidth + nBandSide - 1) / nBandSide; }
  float *GetColumns(uint32_t nBand) { return listColumns.data() + static_cast<std::size_t>(nBand) * nWidth; }
  float *GetLines(uint32_t nBand) { return listLines.data() + static_cast<std::size_t>(nBand) * nHeight; }
  const float *GetColumns(uint32_t nBand) const { return const_cast<SProfileSums *>(this)->GetColumns(nBand); }
  const float *GetLines(uint32_t nBand) const { return const_cast<SProfileSums *>(this)->GetLines(nBand); }
};

/// Turns sums into profiles, DN, each weighted by signal / (signal + noise): first what is shared over the whole plane,
/// then what halves of it have besides, and so on down to bands. May throw std::bad_alloc.
/// \param dVariance of one sample, DN^2
/// \param dLineVariance of what all samples of a line share in time, DN^2
void WeightProfiles(SProfileSums &stSums, double dVariance, double dLineVariance);

} // namespace ffc::reference
