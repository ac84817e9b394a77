#include "flat/weightedflat.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "flat/weightedframes.h"
#include "pluginobject/shadingcorrection/process/acquisition/brightfield.h"
#include "pluginobject/shadingcorrection/process/acquisition/framejudge.h"
#include "pluginobject/shadingcorrection/process/coefficients/entrytables.h"
#include "pluginobject/statuscode.h"

namespace ffc::flat {

using genapi::GetLayoutName;
using process::CFrameAccumulator;
using process::CFrameBuffer;
using process::SFrameFormat;
using reference::CNoiseMeter;

namespace {

constexpr int64_t BLOCK_SIDE = 32; ///< of the blocks that the host-side process judges frames by
const char *const NO_MEMORY = "There is not enough memory.";

SFrameFormat GetFormat(const SFrameSet &stSet)
{
  return {stSet.pFormat->nCode, stSet.nWidth, stSet.nHeight,
          uint64_t{stSet.nWidth} * stSet.nHeight * stSet.pFormat->GetBytesPerPixel()};
}

/// The frames of a set, added up.
struct SAdded {
  CFrameAccumulator sums;
  CNoiseMeter meter;
  uint32_t nFrames = 0;

  reference::SFrameSums GetSums() { return {sums.GetSums(), nFrames, 0, &meter}; }
};

/// \return false when there is no memory, or after bStop
bool AddFrames(const SFrameSet &stSet, const std::atomic<bool> &bStop, SAdded &stAdded)
{
  const SFrameFormat stFormat = GetFormat(stSet);
  CFrameBuffer frame;
  if (!frame.Allocate(stFormat.nFrameSize) || !stAdded.sums.Allocate(stFormat.nFrameSize)) {
    return false;
  }
  const std::vector<uint8_t> *pFormer = nullptr;
  for (const std::vector<uint8_t> &listFrame : stSet.listFrames) {
    std::memcpy(frame.GetData(), listFrame.data(), listFrame.size());
    if (bStop || stAdded.sums.Add(frame, stFormat) != 0) {
      return false;
    }
    if (pFormer != nullptr) {
      stAdded.meter.Add(pFormer->data(), listFrame.data(), stSet.nWidth, stSet.nHeight,
                        stSet.pFormat->GetBytesPerPixel());
    }
    pFormer = &listFrame;
    ++stAdded.nFrames;
  }
  return true;
}

/// Makes one table. The steps stop at the first that fails.
class CAcquiredFlat {
public:
  CAcquiredFlat(const SFlatFrames &stFrames, const std::atomic<bool> &bStop)
    : m_stFrames(stFrames), m_stSet(*stFrames.pBright), m_bStop(bStop), m_stFormat(GetFormat(m_stSet)),
      m_nBayerType(process::GetBayerType(GetLayoutName(m_stSet.pFormat->eLayout)))
  {
  }

  Result<SWeightedFlat> Make()
  {
    const auto checkStop = [this] { return m_bStop ? Failure("It was cancelled.") : Result<>(); };
    const Result<> made = RunUntilFailure([this] { return Add(); }, checkStop, [this] { return Weight(); }, checkStop,
                                          [this] { return Compute(); });
    if (!made) {
      return made.GetFailure();
    }
    return std::move(m_stFlat);
  }

private:
  bool IsDarkAlike() const
  {
    const SFrameSet *pDark = m_stFrames.pDark.get();
    return pDark != nullptr && pDark->pFormat == m_stSet.pFormat && pDark->nWidth == m_stSet.nWidth &&
           pDark->nHeight == m_stSet.nHeight;
  }

  Result<> Add()
  {
    // Of dark frames like the bright ones sums do not fail; what is left is bStop, and memory.
    CFrameBuffer average;
    if (!AddFrames(m_stSet, m_bStop, m_stBright) ||
        (IsDarkAlike() &&
         !(AddFrames(*m_stFrames.pDark, m_bStop, m_stDark) && average.Allocate(m_stFormat.nFrameSize)))) {
      return Failure(NO_MEMORY);
    }
    process::SBlockMeanRange stRange;
    const int32_t nStatus =
      IsDarkAlike() && m_stDark.sums.Average(m_stDark.nFrames, m_stFormat, average) == 0
        ? process::MeasureEightBitMeans(average, m_stFormat, {BLOCK_SIDE, BLOCK_SIDE, m_nBayerType}, stRange)
        : PLUGIN_STATUS_INVALID_PARAM;
    if (nStatus == PLUGIN_STATUS_OUT_OF_MEMORY) {
      return Failure(NO_MEMORY);
    }
    const bool bDarkUsed = nStatus == PLUGIN_STATUS_SUCCESS && stRange.IsDark();
    m_stFlat.nFrames = m_stBright.nFrames;
    m_stFlat.nDarkFrames = bDarkUsed ? m_stDark.nFrames : 0;
    return {};
  }

  Result<> Weight()
  {
    SAddedFrames stAdded{m_stFormat, m_nBayerType, m_stBright.GetSums(), {}, {}, m_stFrames.nThreads};
    stAdded.stDark = m_stFlat.nDarkFrames > 0 ? m_stDark.GetSums() : reference::SFrameSums{};
    if (WeightFrames(stAdded, m_stWeighted) != 0) {
      return Failure(NO_MEMORY);
    }
    m_stFlat.eNoise = m_stWeighted.stResult.eNoise;
    MeasureNoise();
    return {};
  }

  /// What a weighted mean leaves of the average is independent of its own error, so that the variance of their
  /// difference is that by which the error has become less.
  void MeasureNoise()
  {
    const uint32_t nStep = m_nBayerType != 0 ? 2 : 1;
    double dPlain = 0;
    double dWeighted = 0;
    for (uint32_t nSite = 0; nSite < nStep * nStep; ++nSite) {
      const SSite stSite = MeasureSite(nSite / nStep, nSite % nStep, nStep);
      const double dPairs = nStep == 1 ? m_stBright.meter.GetAll().dSample : m_stBright.meter.GetSite(nSite).dSample;
      const double dFrame =
        m_stBright.meter.GetPairCount() > 0 ? dPairs : m_stWeighted.stResult.dNoise * m_stWeighted.stResult.dNoise;
      const double dAverage = dFrame / m_stBright.nFrames;
      const double dScale = stSite.dLevel > 0 ? 1 / (stSite.dLevel * stSite.dLevel) : 0;
      dPlain += dAverage * dScale;
      dWeighted += std::max(0.0, dAverage - stSite.dDifference) * dScale;
    }
    m_stFlat.dPlainNoise = 100 * std::sqrt(dPlain / (nStep * nStep));
    m_stFlat.dNoise = 100 * std::sqrt(dWeighted / (nStep * nStep));
  }

  struct SSite {
    double dLevel = 0;      ///< mean less the dark level, DN
    double dDifference = 0; ///< mean square between average and weighted average, DN^2
  };

  SSite MeasureSite(uint32_t nFirstLine, uint32_t nFirstColumn, uint32_t nStep)
  {
    const uint32_t *pSums = m_stBright.sums.GetSums();
    const auto *pBright = reinterpret_cast<const uint16_t *>(m_stWeighted.bright.GetData());
    const auto *pDark = reinterpret_cast<const uint16_t *>(m_stWeighted.dark.GetData());
    const double dToLevel = 1.0 / (1U << (16U - m_stSet.pFormat->nBitDepth));
    SSite stSite;
    double dPixels = 0;
    for (uint32_t nLine = nFirstLine; nLine < m_stSet.nHeight; nLine += nStep) {
      for (uint32_t nColumn = nFirstColumn; nColumn < m_stSet.nWidth; nColumn += nStep) {
        const std::size_t n = std::size_t{nLine} * m_stSet.nWidth + nColumn;
        const double dAverage = static_cast<double>(pSums[n]) / m_stBright.nFrames;
        const double dDifference = dAverage - pBright[n] * dToLevel;
        stSite.dLevel += dAverage - (m_stFlat.nDarkFrames > 0 ? pDark[n] * dToLevel : 0);
        stSite.dDifference += dDifference * dDifference;
        ++dPixels;
      }
    }
    stSite.dLevel /= std::max(1.0, dPixels);
    stSite.dDifference /= std::max(1.0, dPixels);
    return stSite;
  }

  Result<> Compute()
  {
    const process::SHostReference stReference = {m_stWeighted.bright,
                                                 m_stFlat.nDarkFrames > 0 ? &m_stWeighted.dark : nullptr,
                                                 m_stWeighted.stFormat, m_nBayerType, m_stFrames.nExpectGray};
    const int32_t nStatus = process::ComputeHostTable(stReference, m_stFlat.pTable);
    if (nStatus == PLUGIN_STATUS_OUT_OF_MEMORY) {
      return Failure(NO_MEMORY);
    }
    return nStatus == 0 ? Result<>() : Failure("The image library does not compute coefficients of these frames.");
  }

  const SFlatFrames &m_stFrames;
  const SFrameSet &m_stSet;
  const std::atomic<bool> &m_bStop;
  SFrameFormat m_stFormat;
  int32_t m_nBayerType;
  SAdded m_stBright;
  SAdded m_stDark;
  SWeightedFrames m_stWeighted;
  SWeightedFlat m_stFlat;
};

} // namespace

Result<SWeightedFlat> MakeWeightedFlat(const SFlatFrames &stFrames, const std::atomic<bool> &bStop)
{
  return CAcquiredFlat(stFrames, bStop).Make();
}

} // namespace ffc::flat
