/// \file
/// The field of one plane: its average, less what of it is noise.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "reference/noisemodel.h"
#include "reference/planesource.h"
#include "reference/profiles.h"
#include "reference/regions.h"
#include "reference/scales.h"
#include "reference/shrinkage.h"
#include "reference/tile.h"

namespace ffc::reference {

/// Where and how the field is written: left-justified in 16 bits, in the whole image.
struct SFieldTarget {
  uint16_t *pValues = nullptr;
  float fScale = 1;                ///< what makes such a number of DN
  const uint16_t *pDark = nullptr; ///< added; null: none
};

/// Splits an average into profiles, fine scales, coarse scales and the smooth rest, weights each part, and puts them
/// together again. Every number of threads gives the same field. What needs memory may throw std::bad_alloc.
class CPlaneField {
public:
  CPlaneField(const CPlaneSource &source, const SFieldNoise &stNoise, uint32_t nThreads);

  /// The steps, in their order.
  void FindProfiles();
  void WeightCoarseScales();
  void LearnFineScales();
  void Write(const SFieldTarget &stTarget);

  /// Mean weight of the finest detail in the tiles that were learnt from, 0 to 1.
  double GetDetailWeight() const { return m_dDetailWeight; }

private:
  void CollectTile(CTile &tile);
  void WeightCoarseScale(uint32_t nScale, SImage &fine, SImage &wide, const SImage &spare, float *pLine);
  void WriteTile(CTile &tile, const SFieldTarget &stTarget, CRegions &regions);
  static void KeepLonePixels(const CTile &tile, CRegions &regions);
  void WriteLine(const CTile &tile, uint32_t nLine, const SFieldTarget &stTarget, const float *pRemoved) const;
  void AddCoarse(uint32_t nLine, uint32_t nFirst, uint32_t nCount, float *pRemoved) const;

  CPlaneSource m_source;
  SFieldNoise m_stNoise;
  STileGrid m_stGrid;
  uint32_t m_nThreads;
  std::vector<CTile> m_listTiles; ///< one per thread
  std::vector<SScaleStatistics> m_listScales;
  SProfileSums m_stProfiles;
  double m_dMean = 0;
  uint32_t m_nCoarseWidth;
  uint32_t m_nCoarseHeight;
  std::vector<float> m_listCoarse; ///< the smooth image; later what is removed of it
  std::array<CShrinkage, FINE_SCALES> m_aShrinkage;
  double m_dDetailWeight = 0;
};

} // namespace ffc::reference
