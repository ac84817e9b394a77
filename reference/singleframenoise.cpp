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
/// Standard deviations beyond which a detail does not count, and the variance of what is left of a normal distribution
/// of variance 1.
constexpr double FARTHEST_COUNTED = 2.5;
constexpr double VARIANCE_WITHIN = 0.911258;
/// Of the variance of such a variance, in units of its square over the count: that of independent normal samples, and
/// neighbours share some.
constexpr double VARIANCE_SPREAD = 3.5;
/// Rounds, from the median on.
constexpr int VARIANCE_ROUNDS = 12;
/// Largest standard error, of the whole variance, of a part that is believed whatever it is.
constexpr double LARGEST_ERROR = 0.05;
/// Standard errors by which the noise lies below the whole where the pattern certainly has a part in that.
constexpr double FARTHEST_NOISE = 3;
/// Standard errors by which the noise is taken for less than it seems, as far as the rest is pattern.
constexpr double CAUTION = 3;
/// Electrons, more than a pixel of a common sensor holds at its full scale.
constexpr double LARGEST_CAPACITY = 100'000;
/// Standard deviations beyond which a detail is a structure, which is not to decide for all pixels.
constexpr double FARTHEST = 4;
constexpr double MEDIAN_OF_NORMAL = 0.674489750196;

/// Absolute details of a level, by size.
struct SLevel {
  std::vector<uint32_t> listCounts;
  uint64_t nCount = 0;
  double dSum = 0; ///< of the levels

  /// \return the largest of the smaller half, on a scale of bins; of one detail or more
  double GetMedian() const
  {
    uint64_t nBelow = 0;
    uint32_t n = 0;
    while (2 * (nBelow + listCounts[n]) < nCount) {
      nBelow += listCounts[n++];
    }
    const double dWithin = (static_cast<double>(nCount) / 2 - static_cast<double>(nBelow)) / listCounts[n];
    return n == 0 ? 0 : std::exp2(SMALLEST_DETAIL + (n + dWithin) / DETAILS_PER_OCTAVE);
  }

  /// Variance of those that are no structure, as if they were normal.
  double GetVariance() const
  {
    double dDeviation = GetMedian() / MEDIAN_OF_NORMAL;
    for (int nRound = 0; nRound < VARIANCE_ROUNDS && dDeviation > 0; ++nRound) {
      dDeviation = std::sqrt(GetVarianceWithin(FARTHEST_COUNTED * dDeviation) / VARIANCE_WITHIN);
    }
    return dDeviation * dDeviation;
  }

private:
  /// Mean square of the details up to a limit, of which there are some. The bin that has the limit counts in part:
  /// whole bins would make steps of half a percent, and not the same at each level.
  double GetVarianceWithin(double dLimit) const
  {
    const double dEnd = std::min((std::log2(dLimit) - SMALLEST_DETAIL) * DETAILS_PER_OCTAVE, double{DETAIL_BINS});
    double dWithin = 0;
    double dSquares = 0;
    for (uint32_t n = 0; n < dEnd; ++n) {
      const double dPart = std::min(dEnd - n, 1.0);
      const double dDetail = std::exp2(SMALLEST_DETAIL + (n + dPart / 2) / DETAILS_PER_OCTAVE);
      dWithin += dPart * listCounts[n];
      dSquares += dPart * listCounts[n] * dDetail * dDetail;
    }
    return dSquares / dWithin;
  }
};

uint32_t Limit(double dBin, uint32_t nBins)
{
  return dBin > 0 ? std::min(static_cast<uint32_t>(dBin), nBins - 1) : 0;
}

class CDetails {
public:
  CDetails() : m_listLevels(LEVEL_BINS) {}

  void Add(const CPlaneSource &source, const SFieldNoise *pNoise)
  {
    const uint32_t nTiles = STileGrid(source.GetPlane()).GetCount();
    const uint32_t nLookedAt = std::min(nTiles, LOOKED_AT);
    for (uint32_t n = 0; n < nLookedAt; ++n) {
      m_tile.Load(source, static_cast<uint32_t>(uint64_t{n} * nTiles / nLookedAt), nullptr, pNoise);
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
      if (stLevel.nCount >= std::clamp<uint64_t>(m_nCount / 4, 1, ENOUGH_DETAILS)) {
        const auto dCount = static_cast<double>(stLevel.nCount);
        listPoints.push_back({stLevel.dSum / dCount, stLevel.GetVariance() / dGain, dCount});
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
    const double dWeight = stPoint.dCount / (VARIANCE_SPREAD * std::max(stPoint.dVariance * stPoint.dVariance, 1e-12));
    const double dS = stPoint.dLevel;
    dSS += dWeight * dS * dS;
    dSSS += dWeight * dS * dS * dS;
    dSSSS += dWeight * dS * dS * dS * dS;
    dVS += dWeight * dVariance * dS;
    dVSS += dWeight * dVariance * dS * dS;
  }
};

/// Sums over the finest details of a dark and a bright frame: of x = dark (dark - bright), whose mean is the variance
/// of the dark one's noise.
struct SSharedDetail {
  double dCount = 0;
  double dSum = 0;
  double dSquares = 0;

  /// Where neither lies beyond its limit.
  void Add(const CTile &dark, double dLimit, const CTile &bright, double dLimitBright)
  {
    for (uint32_t nLine = 0; nLine < dark.GetHeight(); ++nLine) {
      const float *pDark = dark.GetSmooth(0, nLine);
      const float *pDarkWide = dark.GetSmooth(1, nLine);
      const float *pBright = bright.GetSmooth(0, nLine);
      const float *pBrightWide = bright.GetSmooth(1, nLine);
      for (uint32_t n = 0; n < dark.GetWidth(); ++n) {
        const double dDark = double{pDark[n]} - double{pDarkWide[n]};
        const double dBright = double{pBright[n]} - double{pBrightWide[n]};
        if (std::abs(dDark) <= dLimit && std::abs(dBright) <= dLimitBright) {
          const double dNoise = dDark * (dDark - dBright);
          dCount += 1;
          dSum += dNoise;
          dSquares += dNoise * dNoise;
        }
      }
    }
  }

  /// Lowered by its error: too little noise brings the average back, too much takes the pattern away.
  double GetNoise() const
  {
    const double dDetails = std::max(dCount, 1.0);
    const double dMean = dSum / dDetails;
    return dMean - CAUTION * std::sqrt(std::max(0.0, dSquares / dDetails - dMean * dMean) / dDetails);
  }
};

/// \param pNoise by which lone pixels are found, which do not count; null: they do
CDetails CollectDetails(const std::vector<CPlaneSource> &listPlanes, const SFieldNoise *pNoise)
{
  CDetails details;
  for (const CPlaneSource &source : listPlanes) {
    details.Add(source, pNoise);
  }
  return details;
}

/// Variances, weighted by how many details there are of each level.
struct SMeans {
  double dCount = 0;
  double dLevel = 0;
  double dVariance = 0;

  explicit SMeans(const std::vector<CDetails::SPoint> &listPoints)
  {
    for (const CDetails::SPoint &stPoint : listPoints) {
      dCount += stPoint.dCount;
      dLevel += stPoint.dCount * stPoint.dLevel;
      dVariance += stPoint.dCount * stPoint.dVariance;
    }
    dLevel /= std::max(dCount, 1.0);
    dVariance /= std::max(dCount, 1.0);
  }
};

} // namespace

SSingleFrameNoise MeasureSingleFrame(const std::vector<CPlaneSource> &listPlanes, double dDark, uint32_t nBitDepth)
{
  // Pixels far off would pass for a level of their own, with much pattern. What is far off, the whole tells.
  const SMeans stAll(CollectDetails(listPlanes, nullptr).GetPoints());
  const double dLight = std::max(0.0, stAll.dVariance - dDark) / std::max(stAll.dLevel, 1e-3);
  const SFieldNoise stNoise = {static_cast<float>(std::min(dDark, stAll.dVariance)), static_cast<float>(dLight), 0};
  const std::vector<CDetails::SPoint> listPoints = CollectDetails(listPlanes, &stNoise).GetPoints();
  const SMeans stMeans(listPoints);
  SSingleFrameNoise stResult;
  if (!(stMeans.dLevel > 0)) {
    stResult.stNoise.dDark = stMeans.dVariance;
    return stResult;
  }
  const double dWhole = std::max(0.0, stMeans.dVariance - dDark) / stMeans.dLevel;
  stResult.stNoise = {std::min(dDark, stMeans.dVariance), dWhole, 0};
  SFit stFit;
  for (const CDetails::SPoint &stPoint : listPoints) {
    stFit.Add(stPoint, stPoint.dVariance - dDark);
  }
  const double dDeterminant = stFit.dSS * stFit.dSSSS - stFit.dSSS * stFit.dSSS;
  if (dDeterminant > 1e-9 * stFit.dSS * stFit.dSSSS) {
    const double dLinear = (stFit.dSSSS * stFit.dVS - stFit.dSSS * stFit.dVSS) / dDeterminant;
    const double dError = std::sqrt(stFit.dSSSS / dDeterminant);
    // What is known too badly to be believed may still say that it is not the whole. Too little noise brings the
    // average back, too much takes the pattern away: where there is one, the estimate is lowered to be safe.
    if (dError < LARGEST_ERROR * dWhole || dLinear + FARTHEST_NOISE * dError < dWhole) {
      const double dPattern = std::clamp(1 - dLinear / dWhole, 0.0, 1.0);
      stResult.eSource = ENoiseSource::PhotonTransfer;
      stResult.stNoise.dPerLevel = std::clamp(dLinear - CAUTION * dError * dPattern, 0.0, dWhole);
      return stResult;
    }
  }
  // As noise of the light it would be that of so many electrons. Half of a whole is never farther from either of its
  // parts than the half.
  if (dWhole * LARGEST_CAPACITY < std::exp2(nBitDepth)) {
    stResult.eSource = ENoiseSource::HalfDetail;
    stResult.stNoise.dPerLevel = dWhole / 2;
  }
  return stResult;
}

double MeasureSingleDark(const std::vector<CPlaneSource> &listDark, const std::vector<CPlaneSource> &listBright)
{
  const double dDetail = SMeans(CollectDetails(listDark, nullptr).GetPoints()).dVariance;
  const double dBright = SMeans(CollectDetails(listBright, nullptr).GetPoints()).dVariance;
  CTile tileDark;
  CTile tileBright;
  SSharedDetail stShared;
  for (std::size_t nPlane = 0; nPlane < listDark.size(); ++nPlane) {
    const uint32_t nTiles = STileGrid(listDark[nPlane].GetPlane()).GetCount();
    const uint32_t nLookedAt = std::min(nTiles, LOOKED_AT);
    for (uint32_t n = 0; n < nLookedAt; ++n) {
      const auto nTile = static_cast<uint32_t>(uint64_t{n} * nTiles / nLookedAt);
      tileDark.Load(listDark[nPlane], nTile, nullptr, nullptr);
      tileBright.Load(listBright[nPlane], nTile, nullptr, nullptr);
      stShared.Add(tileDark, FARTHEST * std::sqrt(dDetail), tileBright, FARTHEST * std::sqrt(dBright));
    }
  }
  return std::clamp(stShared.GetNoise() / GetScaleStatistics(1).front().dGain, 0.0, dDetail);
}

} // namespace ffc::reference
