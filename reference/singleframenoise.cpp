#include "reference/singleframenoise.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "reference/tile.h"

namespace ffc::reference {
namespace {

constexpr uint32_t LEVELS_PER_OCTAVE = 8;
constexpr uint32_t LEVEL_BINS = 17 * LEVELS_PER_OCTAVE; ///< levels from 1/2 DN
constexpr uint32_t DETAILS_PER_OCTAVE = 32;
constexpr uint32_t DETAIL_OCTAVES = 30;
constexpr int32_t SMALLEST_DETAIL = -13; ///< octave, DN
constexpr uint32_t DETAIL_BINS = DETAIL_OCTAVES * DETAILS_PER_OCTAVE;
constexpr uint64_t ENOUGH_DETAILS = 500; ///< of a level
constexpr uint32_t LOOKED_AT = 32;       ///< tiles of a plane
/// Of the variance of a median's square, in units of the square over the count: that of independent normal samples, and
/// neighbours share some.
constexpr double MEDIAN_SPREAD = 7;
/// Largest standard error, of the whole variance, of a part that is believed whatever it is.
constexpr double LARGEST_ERROR = 0.05;
/// Standard errors by which the noise lies below the whole where the pattern certainly has a part in that.
constexpr double FARTHEST_NOISE = 3;
/// Standard deviations beyond which a detail is a structure, which is not to decide for all pixels.
constexpr double FARTHEST = 4;
constexpr double MEDIAN_OF_NORMAL = 0.674489750196;

/// Absolute details of a level, by size.
struct SLevel {
  std::vector<uint32_t> listCounts;
  uint64_t nCount = 0;
  double dSum = 0; ///< of the levels

  /// \return the largest of the smaller half, on a scale of bins
  double GetMedian() const
  {
    uint64_t nBelow = 0;
    for (uint32_t n = 0; n < DETAIL_BINS; ++n) {
      if (2 * (nBelow + listCounts[n]) >= nCount) {
        const double dWithin = (static_cast<double>(nCount) / 2 - static_cast<double>(nBelow)) / listCounts[n];
        return n == 0 ? 0 : std::exp2(SMALLEST_DETAIL + (n + dWithin) / DETAILS_PER_OCTAVE);
      }
      nBelow += listCounts[n];
    }
    return 0;
  }
};

uint32_t Limit(double dBin, uint32_t nBins)
{
  return dBin > 0 ? std::min(static_cast<uint32_t>(dBin), nBins - 1) : 0;
}

class CDetails {
public:
  CDetails() : m_listLevels(LEVEL_BINS) {}

  void Add(const CPlaneSource &source)
  {
    const uint32_t nTiles = STileGrid(source.GetPlane()).GetCount();
    const uint32_t nLookedAt = std::min(nTiles, LOOKED_AT);
    for (uint32_t n = 0; n < nLookedAt; ++n) {
      m_tile.Load(source, static_cast<uint32_t>(uint64_t{n} * nTiles / nLookedAt), nullptr);
      for (uint32_t nLine = 0; nLine < m_tile.GetHeight(); ++nLine) {
        AddLine(nLine);
      }
    }
  }

  /// A level with its variance of a sample, DN and DN^2.
  struct SPoint {
    double dLevel;
    double dVariance;
    double dCount;
  };

  std::vector<SPoint> GetPoints() const
  {
    const double dGain = GetScaleStatistics(1).front().dGain;
    std::vector<SPoint> listPoints;
    for (const SLevel &stLevel : m_listLevels) {
      if (stLevel.nCount >= std::min(ENOUGH_DETAILS, m_nCount / 4)) {
        const double dDeviation = stLevel.nCount > 0 ? stLevel.GetMedian() / MEDIAN_OF_NORMAL : 0;
        const auto dCount = static_cast<double>(stLevel.nCount);
        listPoints.push_back({dCount > 0 ? stLevel.dSum / dCount : 0, dDeviation * dDeviation / dGain, dCount});
      }
    }
    return listPoints;
  }

private:
  void AddLine(uint32_t nLine)
  {
    const float *pFine = m_tile.GetSmooth(0, nLine);
    const float *pWide = m_tile.GetSmooth(1, nLine);
    for (uint32_t n = 0; n < m_tile.GetWidth(); ++n) {
      const double dLevel = std::max(0.5, double{pWide[n]});
      SLevel &stLevel = m_listLevels[Limit((std::log2(dLevel) + 1) * LEVELS_PER_OCTAVE, LEVEL_BINS)];
      if (stLevel.listCounts.empty()) {
        stLevel.listCounts.resize(DETAIL_BINS);
      }
      const double dDetail = std::max(1e-9, std::abs(double{pFine[n]} - double{pWide[n]}));
      ++stLevel.listCounts[Limit((std::log2(dDetail) - SMALLEST_DETAIL) * DETAILS_PER_OCTAVE, DETAIL_BINS)];
      ++stLevel.nCount;
      stLevel.dSum += double{pWide[n]};
      ++m_nCount;
    }
  }

  CTile m_tile;
  std::vector<SLevel> m_listLevels;
  uint64_t m_nCount = 0;
};

/// Sums for the least squares of V = linear x S + square x S^2.
struct SFit {
  double dSS = 0;
  double dSSS = 0;
  double dSSSS = 0;
  double dVS = 0;
  double dVSS = 0;

  void Add(const CDetails::SPoint &stPoint, double dVariance)
  {
    const double dWeight = stPoint.dCount / (MEDIAN_SPREAD * std::max(stPoint.dVariance * stPoint.dVariance, 1e-12));
    const double dS = stPoint.dLevel;
    dSS += dWeight * dS * dS;
    dSSS += dWeight * dS * dS * dS;
    dSSSS += dWeight * dS * dS * dS * dS;
    dVS += dWeight * dVariance * dS;
    dVSS += dWeight * dVariance * dS * dS;
  }
};

/// Over all levels.
double GetMeanVariance(const std::vector<CPlaneSource> &listPlanes)
{
  CDetails details;
  for (const CPlaneSource &source : listPlanes) {
    details.Add(source);
  }
  double dCount = 0;
  double dVariance = 0;
  for (const CDetails::SPoint &stPoint : details.GetPoints()) {
    dCount += stPoint.dCount;
    dVariance += stPoint.dCount * stPoint.dVariance;
  }
  return dCount > 0 ? dVariance / dCount : 0;
}

/// Products of the finest details of two frames, neither beyond its limit.
double SumProducts(const CTile &one, double dLimitOne, const CTile &other, double dLimitOther)
{
  double dSum = 0;
  for (uint32_t nLine = 0; nLine < one.GetHeight(); ++nLine) {
    const float *pOne = one.GetSmooth(0, nLine);
    const float *pOneWide = one.GetSmooth(1, nLine);
    const float *pOther = other.GetSmooth(0, nLine);
    const float *pOtherWide = other.GetSmooth(1, nLine);
    for (uint32_t n = 0; n < one.GetWidth(); ++n) {
      dSum += std::clamp(double{pOne[n]} - double{pOneWide[n]}, -dLimitOne, dLimitOne) *
              std::clamp(double{pOther[n]} - double{pOtherWide[n]}, -dLimitOther, dLimitOther);
    }
  }
  return dSum;
}

} // namespace

SSingleFrameNoise MeasureSingleFrame(const std::vector<CPlaneSource> &listPlanes, double dDark)
{
  CDetails details;
  for (const CPlaneSource &source : listPlanes) {
    details.Add(source);
  }
  SFit stFit;
  double dCount = 0;
  double dLevel = 0;
  double dVariance = 0;
  for (const CDetails::SPoint &stPoint : details.GetPoints()) {
    stFit.Add(stPoint, stPoint.dVariance - dDark);
    dCount += stPoint.dCount;
    dLevel += stPoint.dCount * stPoint.dLevel;
    dVariance += stPoint.dCount * stPoint.dVariance;
  }
  SSingleFrameNoise stResult;
  if (!(dCount > 0) || !(dLevel > 0)) {
    stResult.stNoise.dDark = dCount > 0 ? dVariance / dCount : 0;
    return stResult;
  }
  const double dWhole = std::max(0.0, dVariance - dDark * dCount) / dLevel;
  stResult.stNoise = {std::min(dDark, dVariance / dCount), dWhole, 0};
  const double dDeterminant = stFit.dSS * stFit.dSSSS - stFit.dSSS * stFit.dSSS;
  if (dDeterminant > 1e-9 * stFit.dSS * stFit.dSSSS) {
    const double dLinear = (stFit.dSSSS * stFit.dVS - stFit.dSSS * stFit.dVSS) / dDeterminant;
    const double dError = std::sqrt(stFit.dSSSS / dDeterminant);
    // What is known too badly to be believed may still say that it is not the whole. Too little noise brings the
    // average back, too much takes the pattern away: the estimate is not raised to be safe.
    stResult.bSeparated =
      (dError < LARGEST_ERROR * dWhole && dLinear > 0) || dLinear + FARTHEST_NOISE * dError < dWhole;
    stResult.stNoise.dPerLevel = stResult.bSeparated ? std::clamp(dLinear, 0.0, dWhole) : dWhole;
  }
  return stResult;
}

double MeasureSingleDark(const std::vector<CPlaneSource> &listDark, const std::vector<CPlaneSource> &listBright)
{
  const double dDetail = GetMeanVariance(listDark);
  const double dLimit = FARTHEST * std::sqrt(dDetail);
  const double dLimitBright = FARTHEST * std::sqrt(GetMeanVariance(listBright));
  CTile tileDark;
  CTile tileBright;
  double dProducts = 0;
  double dCount = 0;
  for (std::size_t nPlane = 0; nPlane < listDark.size(); ++nPlane) {
    const uint32_t nTiles = STileGrid(listDark[nPlane].GetPlane()).GetCount();
    const uint32_t nLookedAt = std::min(nTiles, LOOKED_AT);
    for (uint32_t n = 0; n < nLookedAt; ++n) {
      const auto nTile = static_cast<uint32_t>(uint64_t{n} * nTiles / nLookedAt);
      tileDark.Load(listDark[nPlane], nTile, nullptr);
      tileBright.Load(listBright[nPlane], nTile, nullptr);
      dProducts += SumProducts(tileDark, dLimit, tileBright, dLimitBright);
      dCount += static_cast<double>(tileDark.GetWidth()) * tileDark.GetHeight();
    }
  }
  const double dShared = dCount > 0 ? dProducts / dCount / GetScaleStatistics(1).front().dGain : 0;
  return std::clamp(dDetail - dShared, 0.0, dDetail);
}

} // namespace ffc::reference
