#include "tests/quality/slowuniformity.h"

#include <algorithm>
#include <cmath>
#include <functional>

using namespace ffc::quality;
using ffc::genapi::EColorLayout;
using ffc::genapi::GetPixelColor;

namespace {

/// Everything about one stack, pixel by pixel, in floating point.
class CSlowStack {
public:
  CSlowStack(const SSyntheticScene &stScene, const std::vector<TestFrame> &listFrames,
             std::function<bool(uint32_t, uint32_t)> fnIsMember)
    : m_stScene(stScene), m_listFrames(listFrames), m_fnIsMember(std::move(fnIsMember))
  {
  }

  double PixelMean(uint32_t nX, uint32_t nY) const
  {
    double dSum = 0;
    for (const TestFrame &listSamples : m_listFrames) {
      dSum += listSamples[nY * m_stScene.nWidth + nX];
    }
    return dSum / static_cast<double>(m_listFrames.size());
  }

  double PixelVariance(uint32_t nX, uint32_t nY) const
  {
    double dSum = 0;
    for (const TestFrame &listSamples : m_listFrames) {
      dSum += std::pow(listSamples[nY * m_stScene.nWidth + nX] - PixelMean(nX, nY), 2);
    }
    return m_listFrames.size() < 2 ? 0 : dSum / static_cast<double>(m_listFrames.size() - 1);
  }

  /// Mean over the members in a rectangle of a value per pixel.
  double Average(uint32_t nX0, uint32_t nY0, uint32_t nW, uint32_t nH,
                 const std::function<double(uint32_t, uint32_t)> &fnValue) const
  {
    double dSum = 0;
    int nCount = 0;
    for (uint32_t nY = nY0; nY < nY0 + nH; ++nY) {
      for (uint32_t nX = nX0; nX < nX0 + nW; ++nX) {
        if (m_fnIsMember(nX, nY)) {
          dSum += fnValue(nX, nY);
          ++nCount;
        }
      }
    }
    return nCount == 0 ? 0 : dSum / nCount;
  }

  double AverageAll(const std::function<double(uint32_t, uint32_t)> &fnValue) const
  {
    return Average(0, 0, m_stScene.nWidth, m_stScene.nHeight, fnValue);
  }

  double Mean() const
  {
    return AverageAll([&](uint32_t nX, uint32_t nY) { return PixelMean(nX, nY); });
  }

  double SpatialVariance() const
  {
    const double dMean = Mean();
    const double dMeasured =
      AverageAll([&](uint32_t nX, uint32_t nY) { return std::pow(PixelMean(nX, nY) - dMean, 2); });
    const double dTemporal = AverageAll([&](uint32_t nX, uint32_t nY) { return PixelVariance(nX, nY); });
    return dMeasured - dTemporal / static_cast<double>(m_listFrames.size());
  }

  /// Means of the 32 x 32 blocks, line by line.
  std::vector<std::vector<double>> BlockMeans() const
  {
    const uint32_t nW = std::min(32U, m_stScene.nWidth);
    const uint32_t nH = std::min(32U, m_stScene.nHeight);
    std::vector<std::vector<double>> listMeans;
    for (uint32_t nY = 0; nY + nH <= m_stScene.nHeight; nY += nH) {
      listMeans.emplace_back();
      for (uint32_t nX = 0; nX + nW <= m_stScene.nWidth; nX += nW) {
        listMeans.back().push_back(
          Average(nX, nY, nW, nH, [&](uint32_t nPx, uint32_t nPy) { return PixelMean(nPx, nPy); }));
      }
      if (m_stScene.nHeight < 32) {
        break;
      }
    }
    return listMeans;
  }

  double ClippedPercent() const
  {
    const uint32_t nMaximum = (1U << m_stScene.nBitDepth) - 1U;
    return 100 * AverageAll([&](uint32_t nX, uint32_t nY) {
             double dShare = 0;
             for (const TestFrame &listSamples : m_listFrames) {
               dShare += listSamples[nY * m_stScene.nWidth + nX] == nMaximum ? 1 : 0;
             }
             return dShare / static_cast<double>(m_listFrames.size());
           });
  }

private:
  const SSyntheticScene &m_stScene;
  const std::vector<TestFrame> &m_listFrames;
  std::function<bool(uint32_t, uint32_t)> m_fnIsMember;
};

} // namespace

SUniformityFigures MeasureSlowly(const SSyntheticScene &stScene, const std::vector<TestFrame> &listBright,
                                 const std::vector<TestFrame> &listDark, EColorLayout eLayout, int nColor)
{
  const auto IsMember = [&](uint32_t nX, uint32_t nY) {
    return nColor < 0 || static_cast<int>(GetPixelColor(eLayout, nX, nY)) == nColor;
  };
  const CSlowStack bright(stScene, listBright, IsMember);
  const CSlowStack dark(stScene, listDark, IsMember);

  SUniformityFigures stFigures;
  stFigures.dMeanGray = bright.Mean();
  stFigures.dClippedPercent = bright.ClippedPercent();
  const double dDark = dark.SpatialVariance();
  stFigures.dDsnuDn = std::sqrt(std::max(0.0, dDark));
  stFigures.dPrnuPercent =
    100 * std::sqrt(std::max(0.0, bright.SpatialVariance() - dDark)) / (bright.Mean() - dark.Mean());

  const auto listLight = bright.BlockMeans();
  const auto listNone = dark.BlockMeans();
  double dMin = listLight[0][0];
  double dMax = dMin;
  double dSum = 0;
  double dCount = 0;
  for (const auto &listRow : listLight) {
    for (const double dMean : listRow) {
      dMin = std::min(dMin, dMean);
      dMax = std::max(dMax, dMean);
      dSum += dMean;
      ++dCount;
    }
  }
  stFigures.dShadingPercent = 100 * (dMax - dMin) / (dSum / dCount);
  const auto Signal = [&](std::size_t nRow, std::size_t nCol) { return listLight[nRow][nCol] - listNone[nRow][nCol]; };
  const std::size_t nLastRow = listLight.size() - 1;
  const std::size_t nLastCol = listLight[0].size() - 1;
  const double dCorners = (Signal(0, 0) + Signal(0, nLastCol) + Signal(nLastRow, 0) + Signal(nLastRow, nLastCol)) / 4;
  stFigures.dCornerToCentre = dCorners / Signal((nLastRow + 1) / 2, (nLastCol + 1) / 2);
  return stFigures;
}
