#include "reference/shrinkage.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace ffc::reference {
namespace {

constexpr uint32_t ROUNDS = 200;
/// Of a share from round to round, from which on no more are needed.
constexpr double SMALLEST_CHANGE = 1e-6;
/// Share of each variance of the grid that is possible however few energies speak for it: a lone structure must not be
/// taken for noise because it is rare.
constexpr double SMALLEST_SHARE = 1e-5;

constexpr std::array<double, 18> GRID = {0,    0.01, 0.02, 0.04, 0.08, 0.16, 0.32, 0.64, 1.28,
                                         2.56, 5,    10,   20,   40,   100,  400,  1600, 6400};
using Shares = std::array<double, GRID.size()>;

/// \param dWithin place in the bin, 0 to 1
double GetEnergy(uint32_t nBin, double dWithin)
{
  constexpr uint32_t PER_OCTAVE = 1U << CShrinkage::BINS_PER_OCTAVE_BITS;
  const double dMantissa = 1 + (nBin % PER_OCTAVE + dWithin) / PER_OCTAVE;
  return std::ldexp(dMantissa, CShrinkage::LOWEST_OCTAVE + static_cast<int>(nBin / PER_OCTAVE));
}

/// Likelihoods of one energy, the largest of them 1.
Shares GetLikelihoods(double dEnergy, double dFreedom)
{
  Shares adLogs{};
  for (std::size_t n = 0; n < GRID.size(); ++n) {
    adLogs[n] = -dFreedom / 2 * (std::log1p(GRID[n]) + dEnergy / (1 + GRID[n]));
  }
  const double dLargest = *std::max_element(adLogs.begin(), adLogs.end());
  Shares adLikelihoods{};
  std::transform(adLogs.begin(), adLogs.end(), adLikelihoods.begin(),
                 [&](double dLog) { return std::exp(dLog - dLargest); });
  return adLikelihoods;
}

struct SCounted {
  double dCount;
  Shares adLikelihoods;
};

double Mix(const Shares &adShares, const Shares &adLikelihoods)
{
  double dSum = 0;
  for (std::size_t n = 0; n < GRID.size(); ++n) {
    dSum += adShares[n] * adLikelihoods[n];
  }
  return dSum;
}

/// Shares of the mixture by expectation and maximisation.
Shares FindShares(const std::vector<SCounted> &listCounted)
{
  double dTotal = 0;
  for (const SCounted &stCounted : listCounted) {
    dTotal += stCounted.dCount;
  }
  Shares adShares{};
  adShares.fill(1.0 / GRID.size());
  double dChange = 1;
  for (uint32_t nRound = 0; nRound < ROUNDS && dTotal > 0 && dChange > SMALLEST_CHANGE; ++nRound) {
    Shares adNext{};
    for (const SCounted &stCounted : listCounted) {
      const double dTimes = stCounted.dCount / dTotal / std::max(Mix(adShares, stCounted.adLikelihoods), 1e-300);
      for (std::size_t n = 0; n < GRID.size(); ++n) {
        adNext[n] += dTimes * adShares[n] * stCounted.adLikelihoods[n];
      }
    }
    dChange = 0;
    for (std::size_t n = 0; n < GRID.size(); ++n) {
      dChange = std::max(dChange, std::abs(adNext[n] - adShares[n]));
    }
    adShares = adNext;
  }
  for (double &dShare : adShares) {
    dShare = std::max(dShare, SMALLEST_SHARE);
  }
  return adShares;
}

} // namespace

void CShrinkage::Learn(const Histogram &aCounts, double dFreedom)
{
  std::vector<SCounted> listCounted;
  for (uint32_t nBin = 0; nBin < BINS; ++nBin) {
    if (aCounts[nBin] > 0) {
      listCounted.push_back({static_cast<double>(aCounts[nBin]), GetLikelihoods(GetEnergy(nBin, 0.5), dFreedom)});
    }
  }
  const Shares adShares = FindShares(listCounted);
  float fLargest = 0;
  for (uint32_t nBin = 0; nBin < BINS; ++nBin) {
    const Shares adLikelihoods = GetLikelihoods(GetEnergy(nBin, 0.5), dFreedom);
    double dSum = 0;
    for (std::size_t n = 0; n < GRID.size(); ++n) {
      dSum += adShares[n] * adLikelihoods[n] * GRID[n] / (1 + GRID[n]);
    }
    fLargest = std::max(fLargest, static_cast<float>(dSum / Mix(adShares, adLikelihoods)));
    m_afWeights[nBin] = fLargest;
  }
}

float CShrinkage::FindEnergy(float fWeight) const
{
  const auto itFirst = std::upper_bound(m_afWeights.begin(), m_afWeights.end(), fWeight);
  if (itFirst == m_afWeights.end()) {
    return std::numeric_limits<float>::infinity();
  }
  const auto nBin = static_cast<uint32_t>(itFirst - m_afWeights.begin());
  // The lowest bin has all that is smaller too.
  return nBin == 0 ? 0.0F : static_cast<float>(GetEnergy(nBin, 0));
}

double CShrinkage::GetMeanWeight(const Histogram &aCounts) const
{
  double dSum = 0;
  double dCount = 0;
  for (uint32_t nBin = 0; nBin < BINS; ++nBin) {
    dSum += static_cast<double>(aCounts[nBin]) * double{m_afWeights[nBin]};
    dCount += static_cast<double>(aCounts[nBin]);
  }
  return dCount > 0 ? dSum / dCount : 0;
}

} // namespace ffc::reference
