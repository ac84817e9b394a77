/// \file
/// A square of a plane with its fine scales.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "reference/lonepixels.h"
#include "reference/noisemodel.h"
#include "reference/planesource.h"
#include "reference/profiles.h"
#include "reference/scales.h"

namespace ffc::reference {

constexpr uint32_t TILE_SIDE = 256;
/// Scales whose detail is taken from the samples as they are; wider ones from the smooth image, one sample of 4 x 4.
constexpr uint32_t FINE_SCALES = 3;
constexpr uint32_t COARSE_STEP = 4;
/// What the smoothings reach beyond the tile, 2 + 4 + 8, and the last energy, 8.
constexpr uint32_t TILE_HALO = 22;

/// How a plane is cut into tiles.
struct STileGrid {
  uint32_t nColumns = 0; ///< tiles
  uint32_t nLines = 0;

  explicit STileGrid(const SPlane &stPlane)
    : nColumns((stPlane.nWidth + TILE_SIDE - 1) / TILE_SIDE), nLines((stPlane.nHeight + TILE_SIDE - 1) / TILE_SIDE)
  {
  }
  uint32_t GetCount() const { return nColumns * nLines; }
};

/// The samples of a tile and of its halo, smoothed three times. One for each thread.
class CTile {
public:
  /// Memory for the largest tile. May throw std::bad_alloc.
  CTile();

  /// Reads a tile, less the profiles, and smooths it.
  /// \param pProfiles may be null
  /// \param pNoise by which lone pixels are found and taken out; null: they stay
  void Load(const CPlaneSource &source, uint32_t nTile, const SProfileSums *pProfiles, const SFieldNoise *pNoise);

  uint32_t GetFirstColumn() const { return m_nFirstColumn; }
  uint32_t GetFirstLine() const { return m_nFirstLine; }
  /// Samples of the tile itself.
  uint32_t GetWidth() const { return m_nWidth; }
  uint32_t GetHeight() const { return m_nHeight; }

  /// A line of the tile after so many smoothings; line 0 is the tile's first.
  const float *GetSmooth(uint32_t nSmoothings, uint32_t nLine) const { return GetInner(m_aSmooth[nSmoothings], nLine); }

  /// Those that were taken out, by their places in the smoothed images, with halo.
  const std::vector<SLonePixel> &GetLonePixels() const { return m_lonePixels.GetAll(); }

  /// Mean squares of the detail of a scale around each sample, in units of the noise; more for a sample that stands out
  /// alone.
  /// \param dGain of the scale
  void ComputeEnergy(uint32_t nScale, double dGain, const SFieldNoise &stNoise);
  const float *GetEnergy(uint32_t nLine) const { return GetInner(m_energy, nLine); }

  /// The same with the halo.
  const SImage &GetSmoothImage(uint32_t nSmoothings) const { return m_aSmooth[nSmoothings]; }
  const SImage &GetEnergyImage() const { return m_energy; }

  /// Memory of the size of a smoothed image, until the next energy.
  const SImage &GetSpare() const { return m_squares; }

private:
  SImage MakeImage(uint32_t nPlace);
  static const float *GetInner(const SImage &image, uint32_t nLine)
  {
    return image.GetLine(nLine + TILE_HALO) + TILE_HALO;
  }
  void Subtract(const SProfileSums &stProfiles, const SPlane &stPlane, uint32_t nLine, float *pLine) const;

  std::vector<float> m_listMemory;
  CLonePixels m_lonePixels;
  std::array<SImage, FINE_SCALES + 1> m_aSmooth;
  SImage m_squares;
  SImage m_energy;
  uint32_t m_nFirstColumn = 0;
  uint32_t m_nFirstLine = 0;
  uint32_t m_nWidth = 0;
  uint32_t m_nHeight = 0;
};

} // namespace ffc::reference
