#include "reference/tile.h"

#include <algorithm>

namespace ffc::reference {
namespace {

constexpr std::size_t LARGEST_SIDE = TILE_SIDE + 2 * TILE_HALO;
constexpr std::size_t IMAGES = FINE_SCALES + 3;
/// Of the smoothing with the widest step.
constexpr std::size_t WIDE_LINE = LARGEST_SIDE + (std::size_t{4} << (FINE_SCALES - 1));
/// A pixel that stands out alone has little weight in the mean around it; what its own square has beyond this counts
/// where it is more. Noise has as much in one pixel of 2000.
constexpr float LONE = 12;

} // namespace

CTile::CTile()
  : m_listMemory(LARGEST_SIDE * LARGEST_SIDE * IMAGES + WIDE_LINE), m_lonePixels(LARGEST_SIDE * LARGEST_SIDE)
{
}

SImage CTile::MakeImage(uint32_t nPlace)
{
  return {m_listMemory.data() + LARGEST_SIDE * LARGEST_SIDE * nPlace, m_nWidth + 2 * TILE_HALO,
          m_nHeight + 2 * TILE_HALO};
}

void CTile::Load(const CPlaneSource &source, uint32_t nTile, const SProfileSums *pProfiles, const SFieldNoise *pNoise)
{
  const SPlane &stPlane = source.GetPlane();
  const uint32_t nColumns = STileGrid(stPlane).nColumns;
  m_nFirstColumn = nTile % nColumns * TILE_SIDE;
  m_nFirstLine = nTile / nColumns * TILE_SIDE;
  m_nWidth = std::min(TILE_SIDE, stPlane.nWidth - m_nFirstColumn);
  m_nHeight = std::min(TILE_SIDE, stPlane.nHeight - m_nFirstLine);
  for (uint32_t n = 0; n < m_aSmooth.size(); ++n) {
    m_aSmooth[n] = MakeImage(n);
  }
  m_squares = MakeImage(FINE_SCALES + 1);
  m_energy = MakeImage(FINE_SCALES + 2);
  for (uint32_t nLine = 0; nLine < m_aSmooth[0].nHeight; ++nLine) {
    float *pLine = m_aSmooth[0].GetLine(nLine);
    source.ReadLine(int64_t{m_nFirstLine} + nLine - TILE_HALO, int64_t{m_nFirstColumn} - TILE_HALO, m_aSmooth[0].nWidth,
                    pLine);
    if (pProfiles != nullptr) {
      Subtract(*pProfiles, stPlane, nLine, pLine);
    }
  }
  float *pSpare = m_listMemory.data() + LARGEST_SIDE * LARGEST_SIDE * IMAGES;
  m_lonePixels.Clear();
  for (uint32_t n = 0; n < FINE_SCALES; ++n) {
    Smooth(m_aSmooth[n], m_aSmooth[n + 1], 1U << n, pSpare);
    if (n == 0 && pNoise != nullptr) {
      m_lonePixels.TakeOut(m_aSmooth[0], m_aSmooth[1], *pNoise);
    }
  }
}

void CTile::Subtract(const SProfileSums &stProfiles, const SPlane &stPlane, uint32_t nLine, float *pLine) const
{
  const uint32_t nY = Mirror(int64_t{m_nFirstLine} + nLine - TILE_HALO, stPlane.nHeight);
  const float *pColumns = stProfiles.GetColumns(nY / TILE_SIDE);
  for (uint32_t n = 0; n < m_aSmooth[0].nWidth; ++n) {
    const uint32_t nX = Mirror(int64_t{m_nFirstColumn} + n - TILE_HALO, stPlane.nWidth);
    pLine[n] -= pColumns[nX] + stProfiles.GetLines(nX / TILE_SIDE)[nY];
  }
}

void CTile::ComputeEnergy(uint32_t nScale, double dGain, const SFieldNoise &stNoise)
{
  const SImage &fine = m_aSmooth[nScale];
  const SImage &wide = m_aSmooth[nScale + 1];
  for (std::size_t n = 0; n < fine.GetCount(); ++n) {
    const float fDetail = fine.pValues[n] - wide.pValues[n];
    m_squares.pValues[n] = fDetail * fDetail;
  }
  Smooth(m_squares, m_energy, 1U << nScale, m_listMemory.data() + LARGEST_SIDE * LARGEST_SIDE * IMAGES);
  const auto fGain = static_cast<float>(dGain);
  const float fConstant = stNoise.fConstant;
  const float fPerLevel = stNoise.fPerLevel;
  for (std::size_t n = 0; n < fine.GetCount(); ++n) {
    const float fLevel = wide.pValues[n] > 0 ? wide.pValues[n] : 0.0F;
    const float fNoise = fGain * (fConstant + fPerLevel * fLevel);
    const float fAround = m_energy.pValues[n] / fNoise;
    const float fAlone = m_squares.pValues[n] / fNoise - LONE;
    m_energy.pValues[n] = fAlone > fAround ? fAlone : fAround;
  }
}

} // namespace ffc::reference
