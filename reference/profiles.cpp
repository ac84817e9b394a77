#include "reference/profiles.h"

#include <algorithm>
#include <memory>

#include "reference/shrinkage.h"

namespace ffc::reference {
namespace {

/// Profiles of one direction: nBands runs of nLength values, each the sum of so many samples as its band is wide.
struct SBands {
  float *pValues;
  uint32_t nLength;
  uint32_t nBands;
  uint32_t nAcross; ///< samples over all bands
  uint32_t nSide;

  float *GetBand(uint32_t nBand) const { return pValues + static_cast<std::size_t>(nBand) * nLength; }
  uint32_t CountSamples(uint32_t nFirst, uint32_t nEnd) const
  {
    return std::min(nEnd * nSide, nAcross) - nFirst * nSide;
  }
};

class CBandWeights {
public:
  CBandWeights(const SBands &stBands, double dVariance, double dShared)
    : m_stBands(stBands), m_dVariance(dVariance), m_dShared(dShared), m_pShrinkage(std::make_unique<CShrinkage>()),
      m_pHistogram(std::make_unique<CShrinkage::Histogram>()),
      m_listFound(static_cast<std::size_t>(stBands.nBands) * stBands.nLength), m_listMean(stBands.nLength)
  {
  }

  void Run()
  {
    for (uint32_t nParts = 1; nParts <= m_stBands.nBands; nParts *= 2) {
      for (uint32_t nPart = 0; nPart < nParts; ++nPart) {
        WeightPart(m_stBands.nBands * nPart / nParts, m_stBands.nBands * (nPart + 1) / nParts);
      }
    }
    std::copy(m_listFound.begin(), m_listFound.end(), m_stBands.pValues);
  }

private:
  /// Adds to what is found of some bands what they share and is not found yet.
  void WeightPart(uint32_t nFirst, uint32_t nEnd)
  {
    const uint32_t nSamples = m_stBands.CountSamples(nFirst, nEnd);
    std::fill(m_listMean.begin(), m_listMean.end(), 0.0);
    for (uint32_t nBand = nFirst; nBand < nEnd; ++nBand) {
      const uint32_t nBandSamples = m_stBands.CountSamples(nBand, nBand + 1);
      const float *pSums = m_stBands.GetBand(nBand);
      const float *pFound = GetFound(nBand);
      for (uint32_t n = 0; n < m_stBands.nLength; ++n) {
        m_listMean[n] += (static_cast<double>(pSums[n]) - double{pFound[n]} * nBandSamples) / nSamples;
      }
    }
    Learn(m_dVariance / nSamples + m_dShared);
    for (uint32_t nBand = nFirst; nBand < nEnd; ++nBand) {
      float *pFound = GetFound(nBand);
      for (uint32_t n = 0; n < m_stBands.nLength; ++n) {
        pFound[n] += static_cast<float>(m_listMean[n]);
      }
    }
  }

  /// Weights the means, each of which has one degree of freedom.
  void Learn(double dNoise)
  {
    m_pHistogram->fill(0);
    const auto fnEnergy = [dNoise](double dMean) { return static_cast<float>(dMean * dMean / dNoise); };
    for (const double dMean : m_listMean) {
      ++(*m_pHistogram)[CShrinkage::GetBin(fnEnergy(dMean))];
    }
    m_pShrinkage->Learn(*m_pHistogram, 1);
    for (double &dMean : m_listMean) {
      dMean *= double{m_pShrinkage->GetWeight(fnEnergy(dMean))};
    }
  }

  float *GetFound(uint32_t nBand) { return m_listFound.data() + static_cast<std::size_t>(nBand) * m_stBands.nLength; }

  const SBands m_stBands;
  const double m_dVariance;
  const double m_dShared;
  std::unique_ptr<CShrinkage> m_pShrinkage;
  std::unique_ptr<CShrinkage::Histogram> m_pHistogram;
  std::vector<float> m_listFound;
  std::vector<double> m_listMean;
};

} // namespace

void SProfileSums::Prepare(uint32_t nPlaneWidth, uint32_t nPlaneHeight, uint32_t nSide)
{
  nBandSide = nSide;
  nWidth = nPlaneWidth;
  nHeight = nPlaneHeight;
  listColumns.assign(static_cast<std::size_t>(GetLineBands()) * nWidth, 0.0F);
  listLines.assign(static_cast<std::size_t>(GetColumnBands()) * nHeight, 0.0F);
}

void WeightProfiles(SProfileSums &stSums, double dVariance, double dLineVariance)
{
  const SBands stColumns = {stSums.listColumns.data(), stSums.nWidth, stSums.GetLineBands(), stSums.nHeight,
                            stSums.nBandSide};
  CBandWeights(stColumns, dVariance, 0).Run();
  const SBands stLines = {stSums.listLines.data(), stSums.nHeight, stSums.GetColumnBands(), stSums.nWidth,
                          stSums.nBandSide};
  CBandWeights(stLines, dVariance, dLineVariance).Run();
}

} // namespace ffc::reference
