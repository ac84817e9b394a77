/// \file
/// Structures with edges: means over regions, where wavelet details would keep the noise along the edge.
#pragma once

#include <cstdint>
#include <vector>

#include "reference/edgepixels.h"
#include "reference/noisemodel.h"
#include "reference/shrinkage.h"
#include "reference/tile.h"
#include "reference/totalvariation.h"

namespace ffc::reference {

/// What is removed as noise of the samples of a tile and of its halo: first by the weights of the scales; then, around
/// edges, by means over regions of one level, where the samples speak for that. One for each thread.
class CRegions {
public:
  /// All memory, for the largest tile. May throw std::bad_alloc; nothing else does.
  CRegions();

  /// Begins a tile: nothing is removed.
  void Begin(const CTile &tile);
  /// Removes of a scale whose energies the tile has.
  void RemoveScale(const CTile &tile, uint32_t nScale, const CShrinkage &shrinkage);
  /// Finds edges where the tile has the energies of the finest scale.
  /// \param fPlain mean weight of that scale's detail
  void FindEdges(const CTile &tile, const CShrinkage &shrinkage, float fPlain);
  /// Goes on with regions.
  /// \param fPlain mean weight of the finest detail: what is believed of a pixel's deviation from its region
  void Refine(const CTile &tile, const SFieldNoise &stNoise, float fPlain);

  /// What is removed of a line of the tile.
  float *GetRemoved(uint32_t nLine)
  {
    return m_listRemoved.data() + std::size_t{nLine + TILE_HALO} * m_nWidth + TILE_HALO;
  }

private:
  float GetProbe(std::size_t nIndex) const;
  void FindMeans(const float *pSamples, float *pProbed);
  void TakeMeans();
  void GrowMeans(const float *pProbed, float fRadius);
  void FindRisks(const float *pSamples);
  void Choose(std::size_t nFirst, std::size_t nCount);

  uint32_t m_nWidth = 0; ///< with the halo
  uint32_t m_nHeight = 0;
  float m_fPlain = 0;     ///< what is believed of a pixel's deviation from its region
  float m_fVariation = 0; ///< weight of the total variation, DN
  std::vector<float> m_listRemoved;
  std::vector<float> m_listFreedom; ///< how much of an estimate is its own sample, by the scales
  std::vector<float> m_listMeans;
  /// Samples that a mean is worth, over twice the tolerated variance; at last how much more risk there is with regions.
  std::vector<float> m_listCounts;
  CEdgePixels m_edges;
  std::vector<float> m_listNoise; ///< variance of each pixel around edges
  std::vector<float> m_listNext;  ///< means of these
  std::vector<float> m_listNextCounts;
  std::vector<float> m_listProbe; ///< samples that were changed a little
  std::vector<float> m_listProbeMeans;
  CTotalVariation m_variation;
};

} // namespace ffc::reference
