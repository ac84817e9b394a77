#include "quality/brightfield.h"

#include <algorithm>
#include <cmath>
#include <new>

#include <QCoreApplication>

namespace ffc::quality {

using genapi::EColorLayout;

namespace {

constexpr double STRUCTURE_PERCENT = 3.0; ///< of the mean
constexpr double STEEPEST_FALLOFF = 0.6;  ///< from the middle to the edge, as a parabola
constexpr uint32_t BLOCKS_ACROSS = 40;
constexpr uint32_t SMALLEST_BLOCK = 8;
constexpr uint32_t LARGEST_BLOCK = 64;

struct SLimits {
  double dWorse;
  double dUnusable;
};
constexpr SLimits CLIPPED = {0.01, 1.0};
constexpr SLimits STRUCTURE = {2.0, 15.0};
constexpr SLimits FLICKER = {1.0, 20.0};
constexpr SLimits DRIFT = {1.0, 10.0};

QString Translate(const char *pText)
{
  return QCoreApplication::translate("BrightField", pText);
}

double GetMean(const std::vector<double> &listValues)
{
  double dSum = 0;
  for (const double dValue : listValues) {
    dSum += dValue;
  }
  return listValues.empty() ? 0 : dSum / static_cast<double>(listValues.size());
}

/// Means of square blocks of a channel.
struct SBlocks {
  uint32_t nAcross = 0;
  uint32_t nDown = 0;
  std::vector<double> listMeans;

  double At(uint32_t nX, uint32_t nY) const { return listMeans[std::size_t{nY} * nAcross + nX]; }
};

SBlocks MakeBlocks(uint32_t nColumns, uint32_t nLines, uint32_t nSide,
                   const std::function<double(uint32_t, uint32_t)> &fnValue)
{
  SBlocks stBlocks{nColumns / nSide, nLines / nSide, {}};
  stBlocks.listMeans.assign(std::size_t{stBlocks.nAcross} * stBlocks.nDown, 0.0);
  for (uint32_t nLine = 0; nLine < stBlocks.nDown * nSide; ++nLine) {
    for (uint32_t nColumn = 0; nColumn < stBlocks.nAcross * nSide; ++nColumn) {
      stBlocks.listMeans[std::size_t{nLine / nSide} * stBlocks.nAcross + nColumn / nSide] += fnValue(nColumn, nLine);
    }
  }
  for (double &dMean : stBlocks.listMeans) {
    dMean /= static_cast<double>(nSide) * nSide;
  }
  return stBlocks;
}

double GetBend(double dBefore, double dAt, double dAfter)
{
  return std::abs(dAt - (dBefore + dAfter) / 2);
}

void Judge(std::vector<SBrightRemark> &listRemarks, double dValue, const SLimits &stLimits, const QString &strText)
{
  if (dValue > stLimits.dWorse) {
    listRemarks.push_back({dValue > stLimits.dUnusable, strText});
  }
}

} // namespace

void CLightWatch::Add(const void *pFrame, uint32_t nWidth, uint32_t nHeight, uint32_t nBytesPerSample)
{
  if (nWidth < CELLS || nHeight < CELLS) {
    return;
  }
  try {
    if (nBytesPerSample == 1) {
      AddSamples(static_cast<const uint8_t *>(pFrame), nWidth, nHeight);
    } else {
      AddSamples(static_cast<const uint16_t *>(pFrame), nWidth, nHeight);
    }
  } catch (const std::bad_alloc &) {
    // Nothing depends on a frame that is not watched.
    return;
  }
}

template <class TSample>
void CLightWatch::AddSamples(const TSample *pSamples, uint32_t nWidth, uint32_t nHeight)
{
  const uint32_t nCellWidth = nWidth / CELLS;
  const uint32_t nCellHeight = nHeight / CELLS;
  std::vector<double> listCells(std::size_t{CELLS} * CELLS, 0.0);
  for (uint32_t nLine = 0; nLine < nHeight; ++nLine, pSamples += nWidth) {
    const TSample nLineLargest = *std::max_element(pSamples, pSamples + nWidth);
    if (nLineLargest > m_nLargest) {
      m_nLargest = nLineLargest;
      m_nAtLargest = 0;
    }
    m_nAtLargest += static_cast<uint64_t>(
      nLineLargest == m_nLargest ? std::count(pSamples, pSamples + nWidth, static_cast<TSample>(m_nLargest)) : 0);
    if (nLine / nCellHeight < CELLS) {
      for (uint32_t nCell = 0; nCell < CELLS; ++nCell) {
        uint64_t nSum = 0;
        for (uint32_t nColumn = nCell * nCellWidth; nColumn < (nCell + 1) * nCellWidth; ++nColumn) {
          nSum += pSamples[nColumn];
        }
        listCells[std::size_t{nLine / nCellHeight} * CELLS + nCell] += static_cast<double>(nSum);
      }
    }
  }
  m_nSamples += uint64_t{nWidth} * nHeight;
  m_listFrames.push_back(std::move(listCells));
}

double CLightWatch::GetFlickerPercent() const
{
  std::vector<double> listMeans;
  for (const std::vector<double> &listCells : m_listFrames) {
    listMeans.push_back(GetMean(listCells));
  }
  const double dMean = GetMean(listMeans);
  if (listMeans.size() < 2 || !(dMean > 0)) {
    return 0;
  }
  const auto [itMin, itMax] = std::minmax_element(listMeans.begin(), listMeans.end());
  return 100.0 * (*itMax - *itMin) / dMean;
}

double CLightWatch::GetDriftPercent() const
{
  const std::size_t nHalf = m_listFrames.size() / 2;
  if (nHalf < 2) {
    return 0;
  }
  std::vector<double> listFirst(std::size_t{CELLS} * CELLS, 0.0);
  std::vector<double> listSecond = listFirst;
  for (std::size_t nFrame = 0; nFrame < 2 * nHalf; ++nFrame) {
    std::vector<double> &listHalf = nFrame < nHalf ? listFirst : listSecond;
    std::transform(listHalf.begin(), listHalf.end(), m_listFrames[nFrame].begin(), listHalf.begin(), std::plus<>());
  }
  const double dFirst = GetMean(listFirst);
  const double dSecond = GetMean(listSecond);
  double dSmallest = HUGE_VAL;
  double dLargest = 0;
  for (std::size_t nCell = 0; nCell < listFirst.size() && dFirst > 0 && dSecond > 0; ++nCell) {
    const double dChange = listFirst[nCell] > 0 ? (listSecond[nCell] / dSecond) / (listFirst[nCell] / dFirst) : 1.0;
    dSmallest = std::min(dSmallest, dChange);
    dLargest = std::max(dLargest, dChange);
  }
  return dLargest > 0 ? 100.0 * (dLargest - dSmallest) : 0;
}

double MeasureStructure(uint32_t nColumns, uint32_t nLines,
                        const std::function<double(uint32_t nColumn, uint32_t nLine)> &fnValue)
{
  const uint32_t nSide = std::clamp(nColumns / BLOCKS_ACROSS, SMALLEST_BLOCK, LARGEST_BLOCK);
  const SBlocks stBlocks = MakeBlocks(nColumns, nLines, nSide, fnValue);
  const double dMean = GetMean(stBlocks.listMeans);
  if (stBlocks.nAcross < 3 || stBlocks.nDown < 3 || !(dMean > 0)) {
    return 0;
  }
  const double dStep = 2.0 * nSide / std::min(nColumns, nLines);
  const double dLimit = dMean * (STRUCTURE_PERCENT / 100.0 + STEEPEST_FALLOFF * dStep * dStep);
  uint64_t nBent = 0;
  for (uint32_t nY = 1; nY + 1 < stBlocks.nDown; ++nY) {
    for (uint32_t nX = 1; nX + 1 < stBlocks.nAcross; ++nX) {
      const double dAt = stBlocks.At(nX, nY);
      const double dBend = std::max(GetBend(stBlocks.At(nX - 1, nY), dAt, stBlocks.At(nX + 1, nY)),
                                    GetBend(stBlocks.At(nX, nY - 1), dAt, stBlocks.At(nX, nY + 1)));
      nBent += dBend > dLimit ? 1U : 0U;
    }
  }
  return 100.0 * static_cast<double>(nBent) / (static_cast<double>(stBlocks.nAcross - 2) * (stBlocks.nDown - 2));
}

SBrightField MeasureBrightField(const CFrameStack &stBright, const CLightWatch *pWatch, EColorLayout eLayout)
{
  SBrightField stField;
  if (stBright.GetFrameCount() == 0) {
    return stField;
  }
  const std::vector<SChannel> listChannels = GetChannels(eLayout);
  const SChannel &stChannel = listChannels.size() > 1 ? listChannels[1] : listChannels[0];
  const double dSamples = static_cast<double>(stBright.GetWidth()) * stBright.GetHeight() * stBright.GetFrameCount();
  stField.dClippedPercent = 100.0 * static_cast<double>(stBright.GetClippedCount(GetWholeImagePlane())) / dSamples;
  stField.dStructurePercent =
    MeasureStructure(stChannel.GetColumns(stBright.GetWidth()), stChannel.GetLines(stBright.GetHeight()),
                     [&](uint32_t nColumn, uint32_t nLine) {
                       return stBright.GetMean(stChannel.nFirstColumn + nColumn * stChannel.nStep,
                                               stChannel.nFirstLine + nLine * stChannel.nStep);
                     });
  if (pWatch != nullptr) {
    stField.dFlickerPercent = pWatch->GetFlickerPercent();
    stField.dDriftPercent = pWatch->GetDriftPercent();
  }
  return stField;
}

std::vector<SBrightRemark> JudgeBrightField(const SBrightField &stField)
{
  std::vector<SBrightRemark> listRemarks;
  Judge(listRemarks, stField.dClippedPercent, CLIPPED,
        Translate("%1 % of the bright field's samples are clipped: expose for less.")
          .arg(stField.dClippedPercent, 0, 'g', 3));
  Judge(
    listRemarks, stField.dStructurePercent, STRUCTURE,
    Translate("The bright field has structure (in %1 % of its blocks): a chart, an object in focus or the edge of a "
              "shadow. Show an even surface out of focus.")
      .arg(stField.dStructurePercent, 0, 'f', 0));
  Judge(
    listRemarks, stField.dFlickerPercent, FLICKER,
    Translate("The light is unsteady: the bright frames' means differ by %1 %. Use steady light, or expose for whole "
              "periods of it.")
      .arg(stField.dFlickerPercent, 0, 'f', 1));
  Judge(listRemarks, stField.dDriftPercent, DRIFT,
        Translate("The light moves: between the first and the second half of the bright frames places change by up to "
                  "%1 % against each other.")
          .arg(stField.dDriftPercent, 0, 'f', 1));
  return listRemarks;
}

} // namespace ffc::quality
