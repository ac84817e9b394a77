#include "tools/ffc/gains.h"

#include <algorithm>

namespace ffc::tool {

using process::CFrameBuffer;

namespace {

constexpr uint16_t LIMIT = 65535;
constexpr double ONE = 4096.0;

constexpr uint32_t LARGEST_SIDE = 1024; ///< of the picture of the gains
constexpr int HISTOGRAM_BINS = 256;
constexpr int HISTOGRAM_HEIGHT = 200;
constexpr int MARGIN = 10;

const uint16_t *GetGains(const CFrameBuffer &table)
{
  return reinterpret_cast<const uint16_t *>(table.GetData());
}

/// Of the gains that are not at the limit; both 0 when all are.
struct SRange {
  uint16_t nSmallest = 0;
  uint16_t nLargest = 0;
};

SRange FindRange(const CFrameBuffer &table, uint64_t nPixels)
{
  const uint16_t *pGains = GetGains(table);
  SRange stRange{LIMIT, 0};
  for (uint64_t n = 0; n < nPixels; ++n) {
    if (pGains[n] != LIMIT) {
      stRange.nSmallest = std::min(stRange.nSmallest, pGains[n]);
      stRange.nLargest = std::max(stRange.nLargest, pGains[n]);
    }
  }
  return stRange.nSmallest == LIMIT ? SRange{} : stRange;
}

void PaintMap(const CFrameBuffer &table, uint32_t nWidth, uint32_t nHeight, uint32_t nStep, QImage *pPlot)
{
  const SRange stRange = FindRange(table, uint64_t{nWidth} * nHeight);
  const int nRange = std::max(1, stRange.nLargest - stRange.nSmallest);
  for (uint32_t nY = 0; nY < nHeight; nY += nStep) {
    const uint16_t *pGains = GetGains(table) + uint64_t{nY} * nWidth;
    auto *pLine = reinterpret_cast<QRgb *>(pPlot->scanLine(MARGIN + static_cast<int>(nY / nStep))) + MARGIN;
    for (uint32_t nX = 0; nX < nWidth; nX += nStep, ++pLine) {
      const int nGray = (pGains[nX] - stRange.nSmallest) * 255 / nRange;
      *pLine = pGains[nX] == LIMIT ? qRgb(255, 0, 0) : qRgb(nGray, nGray, nGray);
    }
  }
}

void PaintHistogram(const SGainHistogram &stHistogram, int nLeft, QImage *pPlot)
{
  const auto &listCounts = stHistogram.listCounts;
  const uint64_t nMost = std::max<uint64_t>(1, *std::max_element(listCounts.begin(), listCounts.end()));
  for (int nBin = 0; nBin < HISTOGRAM_BINS; ++nBin) {
    const uint64_t nCount = listCounts[static_cast<std::size_t>(nBin)];
    const int nHeight = nCount == 0 ? 0 : std::max(1, static_cast<int>(nCount * HISTOGRAM_HEIGHT / nMost));
    for (int nY = 0; nY < HISTOGRAM_HEIGHT; ++nY) {
      const bool bBar = nY >= HISTOGRAM_HEIGHT - nHeight;
      pPlot->setPixel(nLeft + nBin, MARGIN + nY, bBar ? qRgb(40, 80, 160) : qRgb(235, 235, 235));
    }
  }
}

} // namespace

SGains MeasureGains(const CFrameBuffer &table, uint64_t nPixels)
{
  const uint16_t *pGains = GetGains(table);
  uint16_t nSmallest = LIMIT;
  uint16_t nLargest = 0;
  uint64_t nSum = 0;
  uint64_t nAtLimit = 0;
  for (uint64_t n = 0; n < nPixels; ++n) {
    nSmallest = std::min(nSmallest, pGains[n]);
    nLargest = std::max(nLargest, pGains[n]);
    nSum += pGains[n];
    nAtLimit += pGains[n] == LIMIT ? 1 : 0;
  }
  return {nSmallest / ONE, nLargest / ONE, static_cast<double>(nSum) / static_cast<double>(nPixels) / ONE, nAtLimit};
}

SGainHistogram MeasureGainHistogram(const CFrameBuffer &table, uint64_t nPixels, uint32_t nBins)
{
  const SRange stRange = FindRange(table, nPixels);
  SGainHistogram stHistogram = {stRange.nSmallest / ONE, stRange.nLargest / ONE, std::vector<uint64_t>(nBins)};
  const uint32_t nWidth = stRange.nLargest - uint32_t{stRange.nSmallest} + 1;
  const uint16_t *pGains = GetGains(table);
  for (uint64_t n = 0; n < nPixels; ++n) {
    if (pGains[n] != LIMIT) {
      ++stHistogram.listCounts[uint64_t{nBins} * (pGains[n] - uint32_t{stRange.nSmallest}) / nWidth];
    }
  }
  return stHistogram;
}

QImage PlotGains(const CFrameBuffer &table, uint32_t nWidth, uint32_t nHeight)
{
  const uint32_t nStep = (std::max(nWidth, nHeight) + LARGEST_SIDE - 1) / LARGEST_SIDE;
  const int nMapWidth = static_cast<int>((nWidth + nStep - 1) / nStep);
  const int nMapHeight = static_cast<int>((nHeight + nStep - 1) / nStep);
  QImage plot(nMapWidth + 3 * MARGIN + HISTOGRAM_BINS, std::max(nMapHeight, HISTOGRAM_HEIGHT) + 2 * MARGIN,
              QImage::Format_RGB32);
  if (plot.isNull()) {
    return plot;
  }
  plot.fill(Qt::white);
  PaintMap(table, nWidth, nHeight, nStep, &plot);
  const uint64_t nPixels = uint64_t{nWidth} * nHeight;
  PaintHistogram(MeasureGainHistogram(table, nPixels, HISTOGRAM_BINS), 2 * MARGIN + nMapWidth, &plot);
  return plot;
}

} // namespace ffc::tool
