#include "tools/ffc/gains.h"

#include <algorithm>

namespace ffc::tool {

using process::CFrameBuffer;

namespace {

constexpr uint16_t LIMIT = 65535;
constexpr double ONE = 4096.0;

const uint16_t *GetGains(const CFrameBuffer &table)
{
  return reinterpret_cast<const uint16_t *>(table.GetData());
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

QImage PaintGains(const CFrameBuffer &table, uint32_t nWidth, uint32_t nHeight)
{
  const uint16_t *pGains = GetGains(table);
  const uint64_t nPixels = uint64_t{nWidth} * nHeight;
  uint16_t nSmallest = LIMIT;
  uint16_t nLargest = 0;
  for (uint64_t n = 0; n < nPixels; ++n) {
    if (pGains[n] != LIMIT) {
      nSmallest = std::min(nSmallest, pGains[n]);
      nLargest = std::max(nLargest, pGains[n]);
    }
  }
  const int nRange = std::max(1, nLargest - nSmallest);
  QImage image(static_cast<int>(nWidth), static_cast<int>(nHeight), QImage::Format_Grayscale8);
  for (int nY = 0; nY < image.height(); ++nY) {
    uchar *pLine = image.scanLine(nY);
    for (int nX = 0; nX < image.width(); ++nX, ++pGains) {
      pLine[nX] = static_cast<uchar>(std::clamp((*pGains - nSmallest) * 255 / nRange, 0, 255));
    }
  }
  return image;
}

} // namespace ffc::tool
