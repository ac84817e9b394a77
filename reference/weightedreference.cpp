#include "reference/weightedreference.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <vector>

#include "reference/planefield.h"
#include "reference/singleframenoise.h"

namespace ffc::reference {
namespace {

constexpr uint32_t LARGEST_SIDE = 1U << 20;

bool IsUsable(const SFrameSums &stSums, const SReferenceInput &stInput)
{
  return stSums.pSums != nullptr && stSums.nShift <= 16 - std::min(16U, stInput.nBitDepth);
}

double GetSquare(double dValue)
{
  return dValue * dValue;
}

/// Mean of some of the plane's lines, DN.
double GetMean(const CPlaneSource &source)
{
  constexpr uint32_t LINES = 128;
  const SPlane &stPlane = source.GetPlane();
  std::vector<float> listLine(stPlane.nWidth);
  double dSum = 0;
  const uint32_t nLines = std::min(stPlane.nHeight, LINES);
  for (uint32_t n = 0; n < nLines; ++n) {
    source.ReadLine(static_cast<int64_t>(uint64_t{n} * stPlane.nHeight / nLines), 0, stPlane.nWidth, listLine.data());
    for (const float fValue : listLine) {
      dSum += double{fValue};
    }
  }
  return dSum / nLines / stPlane.nWidth;
}

/// Makes both references, one after the other. Throws std::bad_alloc.
class CReferenceMaker {
public:
  CReferenceMaker(const SReferenceInput &stInput, SReferenceResult &stResult)
    : m_stInput(stInput), m_stResult(stResult),
      m_listPlanes(GetPlanes(stInput.nWidth, stInput.nHeight, stInput.bMosaic)),
      m_fToWord(static_cast<float>(1U << (16 - stInput.nBitDepth)))
  {
  }

  void MakeDark(uint16_t *pDark)
  {
    const std::vector<CPlaneSource> listSources = MakeSources(m_stInput.stDark, nullptr);
    const double dVariance = MeasureDark(listSources);
    for (const CPlaneSource &source : listSources) {
      const SFieldNoise stNoise = AverageNoise({dVariance, 0, GetDarkLineNoise()}, m_stInput.stDark.nFrames, 0);
      (void)MakeField(source, stNoise, {pDark, m_fToWord, nullptr});
    }
    m_dDarkVariance = dVariance;
  }

  void MakeBright(uint16_t *pBright, const uint16_t *pDark)
  {
    const std::vector<CPlaneSource> listSources = MakeSources(m_stInput.stBright, pDark);
    const std::vector<SSampleNoise> listNoise = MeasureBright(listSources);
    double dWeights = 0;
    for (std::size_t n = 0; n < listSources.size(); ++n) {
      const double dLevel = GetMean(listSources[n]);
      m_stResult.dNoise = std::max(m_stResult.dNoise, std::sqrt(listNoise[n].At(dLevel)));
      dWeights += MakeField(listSources[n], AverageNoise(listNoise[n], m_stInput.stBright.nFrames, dLevel),
                            {pBright, m_fToWord, pDark});
    }
    m_stResult.dDetailWeight = dWeights / static_cast<double>(listSources.size());
  }

private:
  std::vector<CPlaneSource> MakeSources(const SFrameSums &stSums, const uint16_t *pDark) const
  {
    const double dScale = 1.0 / (static_cast<double>(stSums.nFrames) * static_cast<double>(1U << stSums.nShift));
    std::vector<CPlaneSource> listSources;
    for (const SPlane &stPlane : m_listPlanes) {
      listSources.emplace_back(stPlane, stSums.pSums, static_cast<float>(dScale), pDark, 1 / m_fToWord);
    }
    return listSources;
  }

  static bool HasPairs(const SFrameSums &stSums)
  {
    return stSums.pMeter != nullptr && stSums.pMeter->GetPairCount() > 0;
  }
  /// What makes a variance of samples as they were added one of DN^2.
  static double GetVarianceScale(const SFrameSums &stSums) { return 1 / GetSquare(1U << stSums.nShift); }

  double MeasureDark(const std::vector<CPlaneSource> &listSources) const
  {
    if (HasPairs(m_stInput.stDark)) {
      return m_stInput.stDark.pMeter->GetAll().dSample * GetVarianceScale(m_stInput.stDark);
    }
    return m_stInput.stCamera && m_stInput.stCamera->dDarkNoise
             ? GetSquare(*m_stInput.stCamera->dDarkNoise)
             : MeasureSingleDark(listSources, MakeSources(m_stInput.stBright, nullptr));
  }

  double GetDarkLineNoise() const
  {
    return HasPairs(m_stInput.stDark) ? m_stInput.stDark.pMeter->GetAll().dLine * GetVarianceScale(m_stInput.stDark)
                                      : 0;
  }

  /// Of each plane.
  std::vector<SSampleNoise> MeasureBright(const std::vector<CPlaneSource> &listSources)
  {
    if (HasPairs(m_stInput.stBright)) {
      m_stResult.eNoise = ENoiseSource::Differences;
      return MeasureDifferences(listSources);
    }
    if (m_stInput.stCamera) {
      m_stResult.eNoise = ENoiseSource::Camera;
      const std::optional<double> &dDarkNoise = m_stInput.stCamera->dDarkNoise;
      return {
        listSources.size(),
        {dDarkNoise ? GetSquare(*dDarkNoise) : m_dDarkVariance, m_stInput.stCamera->dSystemGain, GetDarkLineNoise()}};
    }
    const SSingleFrameNoise stSingle = MeasureSingleFrame(listSources, m_dDarkVariance, m_stInput.nBitDepth);
    m_stResult.eNoise = stSingle.eSource;
    return {listSources.size(), stSingle.stNoise};
  }

  /// Photon transfer through two points: the dark, and the mean level of each plane.
  std::vector<SSampleNoise> MeasureDifferences(const std::vector<CPlaneSource> &listSources) const
  {
    const double dScale = GetVarianceScale(m_stInput.stBright);
    const CNoiseMeter &meter = *m_stInput.stBright.pMeter;
    std::vector<SSampleNoise> listNoise;
    for (const CPlaneSource &source : listSources) {
      const CNoiseMeter::SVariances stAll =
        m_stInput.bMosaic ? meter.GetSite(source.GetPlane().GetSite()) : meter.GetAll();
      const double dVariance = stAll.dSample * dScale;
      const double dDark = std::min(m_dDarkVariance, dVariance);
      const double dLevel = GetMean(source);
      const bool bGrows = dLevel > 1;
      listNoise.push_back(
        {bGrows ? dDark : dVariance, bGrows ? (dVariance - dDark) / dLevel : 0, stAll.dLine * dScale});
    }
    return listNoise;
  }

  /// \return the mean weight of its finest detail
  double MakeField(const CPlaneSource &source, const SFieldNoise &stNoise, const SFieldTarget &stTarget) const
  {
    CPlaneField field(source, stNoise, m_stInput.nThreads);
    field.FindProfiles();
    field.WeightCoarseScales();
    field.LearnFineScales();
    field.Write(stTarget);
    return field.GetDetailWeight();
  }

  const SReferenceInput &m_stInput;
  SReferenceResult &m_stResult;
  const std::vector<SPlane> m_listPlanes;
  const float m_fToWord;
  double m_dDarkVariance = 0;
};

} // namespace

const char *DescribeNoiseSource(ENoiseSource eSource)
{
  switch (eSource) {
  case ENoiseSource::Differences: return "differences of the frames";
  case ENoiseSource::Camera: return "camera data";
  case ENoiseSource::PhotonTransfer: return "photon transfer within the frame";
  case ENoiseSource::AllDetail: return "all fine detail of the one frame";
  case ENoiseSource::HalfDetail: return "half of the fine detail of the one frame";
  }
  return ""; // no other value
}

int32_t MakeWeightedReference(const SReferenceInput &stInput, uint16_t *pBright, uint16_t *pDark,
                              SReferenceResult &stResult) noexcept
{
  const uint32_t nShortest = std::min(stInput.nWidth, stInput.nHeight);
  const uint32_t nLongest = std::max(stInput.nWidth, stInput.nHeight);
  const bool bDark = stInput.stDark.nFrames > 0;
  if (nShortest == 0 || nLongest > LARGEST_SIDE || stInput.nBitDepth < 8 || stInput.nBitDepth > 16 ||
      stInput.stBright.nFrames == 0 || !IsUsable(stInput.stBright, stInput) || pBright == nullptr ||
      (bDark && (!IsUsable(stInput.stDark, stInput) || pDark == nullptr))) {
    return STATUS_INVALID_PARAM;
  }
  try {
    stResult = {};
    CReferenceMaker maker(stInput, stResult);
    if (bDark) {
      maker.MakeDark(pDark);
    }
    maker.MakeBright(pBright, bDark ? pDark : nullptr);
    return STATUS_SUCCESS;
  } catch (const std::exception &) {
    return STATUS_OUT_OF_MEMORY; // or more than a vector may have
  }
}

} // namespace ffc::reference
