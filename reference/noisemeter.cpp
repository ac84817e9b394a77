#include "reference/noisemeter.h"

#include <algorithm>
#include <cstddef>

namespace ffc::reference {
namespace {

/// Samples of a pair that are enough for its variance to one in a thousand.
constexpr std::size_t ENOUGH_SAMPLES = 2'000'000;

/// Sums over samples: d is the difference of two frames, s their sum.
struct SMoments {
  double dCount = 0;
  double dD = 0;
  double dS = 0;
  double dDD = 0;
  double dDS = 0;
  double dSS = 0;

  void Add(const SMoments &stOther)
  {
    dCount += stOther.dCount;
    dD += stOther.dD;
    dS += stOther.dS;
    dDD += stOther.dDD;
    dDS += stOther.dDS;
    dSS += stOther.dSS;
  }
};

template <class TSample>
SMoments AddUpLine(const TSample *pFormer, const TSample *pLatter, uint32_t nFirst, uint32_t nWidth)
{
  int64_t nD = 0;
  int64_t nS = 0;
  int64_t nDD = 0;
  int64_t nDS = 0;
  int64_t nSS = 0;
  for (uint32_t n = nFirst; n < nWidth; n += 2) {
    const int64_t nDifference = int64_t{pLatter[n]} - pFormer[n];
    const int64_t nSum = int64_t{pLatter[n]} + pFormer[n];
    nD += nDifference;
    nS += nSum;
    nDD += nDifference * nDifference;
    nDS += nDifference * nSum;
    nSS += nSum * nSum;
  }
  const uint32_t nCount = (nWidth - nFirst + 1) / 2;
  return {static_cast<double>(nCount), static_cast<double>(nD),  static_cast<double>(nS),
          static_cast<double>(nDD),    static_cast<double>(nDS), static_cast<double>(nSS)};
}

/// Sum of the squared differences that no straight line over the sums explains.
double GetUnexplained(const SMoments &stSums)
{
  const double dDD = stSums.dDD - stSums.dD * stSums.dD / stSums.dCount;
  const double dDS = stSums.dDS - stSums.dD * stSums.dS / stSums.dCount;
  const double dSS = stSums.dSS - stSums.dS * stSums.dS / stSums.dCount;
  return std::max(0.0, dSS > 0 ? dDD - dDS * dDS / dSS : dDD);
}

} // namespace

void CNoiseMeter::Add(const void *pFormer, const void *pLatter, uint32_t nWidth, uint32_t nHeight,
                      uint32_t nBytesPerSample)
{
  for (uint32_t nSite = 0; nSite < SITES; ++nSite) {
    if (nBytesPerSample == 1) {
      AddSite(static_cast<const uint8_t *>(pFormer), static_cast<const uint8_t *>(pLatter), nWidth, nHeight, nSite);
    } else {
      AddSite(static_cast<const uint16_t *>(pFormer), static_cast<const uint16_t *>(pLatter), nWidth, nHeight, nSite);
    }
  }
  ++m_nPairs;
}

template <class TSample>
void CNoiseMeter::AddSite(const TSample *pFormer, const TSample *pLatter, uint32_t nWidth, uint32_t nHeight,
                          uint32_t nSite)
{
  const uint32_t nFirst = nSite & 1U;
  const auto nSkip = static_cast<uint32_t>(std::size_t{nWidth} * nHeight / ENOUGH_SAMPLES + 1);
  SMoments stSums;
  double dLines = 0;
  double dLineMeans = 0;
  double dSquaredLineMeans = 0;
  for (uint64_t nLine = nSite >> 1U; nFirst < nWidth && nLine < nHeight; nLine += uint64_t{2} * nSkip) {
    const std::size_t nStart = static_cast<std::size_t>(nLine) * nWidth;
    const SMoments stLine = AddUpLine(pFormer + nStart, pLatter + nStart, nFirst, nWidth);
    stSums.Add(stLine);
    const double dMean = stLine.dD / stLine.dCount;
    dLines += 1;
    dLineMeans += dMean;
    dSquaredLineMeans += dMean * dMean;
  }
  if (stSums.dCount < 8) {
    return;
  }
  // A difference has twice the variance of a sample.
  const double dVariance = GetUnexplained(stSums) / (stSums.dCount - 2) / 2;
  const double dPerLine = stSums.dCount / dLines;
  const double dOfLines = dLines > 1 ? (dSquaredLineMeans - dLineMeans * dLineMeans / dLines) / (dLines - 1) / 2 : 0;
  SSums &stSite = m_astSums[nSite];
  stSite.dVariance += dVariance * stSums.dCount;
  stSite.dLine += (dOfLines - dVariance / dPerLine) * stSums.dCount;
  stSite.dSamples += stSums.dCount;
}

CNoiseMeter::SVariances CNoiseMeter::Get(double dVariance, double dLine, double dSamples) const
{
  return dSamples > 0 ? SVariances{dVariance / dSamples, std::max(0.0, dLine / dSamples)} : SVariances{};
}

CNoiseMeter::SVariances CNoiseMeter::GetSite(uint32_t nSite) const
{
  const SSums &stSums = m_astSums[nSite];
  return Get(stSums.dVariance, stSums.dLine, stSums.dSamples);
}

CNoiseMeter::SVariances CNoiseMeter::GetAll() const
{
  SSums stAll;
  for (const SSums &stSums : m_astSums) {
    stAll.dVariance += stSums.dVariance;
    stAll.dLine += stSums.dLine;
    stAll.dSamples += stSums.dSamples;
  }
  return Get(stAll.dVariance, stAll.dLine, stAll.dSamples);
}

} // namespace ffc::reference
