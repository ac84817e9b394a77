#include "pluginobject/shadingcorrection/imagecalc/smooth.h"

#include <algorithm>

#include "pluginobject/shadingcorrection/imagecalc/pixeltype.h"

namespace {

// A rounded division by 9 in fixed point. 455/4096 falls short of 1/9 by 1 in 4096, which shows above about
// 1800 grey levels; results stay comparable only if that is kept.
constexpr uint32_t NINTH_ROUNDING = 4;
constexpr uint32_t NINTH_FACTOR = 455;
constexpr uint32_t NINTH_SHIFT = 12;

template <typename TPixel>
TPixel SmoothPixel(const TPixel *pCentre, int64_t nStride)
{
  uint32_t nSum = 0;
  for (const TPixel *pRow : {pCentre - nStride, pCentre, pCentre + nStride}) {
    nSum += uint32_t{pRow[-1]} + pRow[0] + pRow[1];
  }
  return static_cast<TPixel>(((nSum + NINTH_ROUNDING) * NINTH_FACTOR) >> NINTH_SHIFT);
}

template <typename TPixel>
void SmoothRow(const TPixel *pSource, TPixel *pDestination, int32_t nWidth, int32_t nBorder)
{
  std::copy_n(pSource, nBorder, pDestination);
  for (int32_t x = nBorder; x < nWidth - nBorder; ++x) {
    pDestination[x] = SmoothPixel(pSource + x, nWidth);
  }
  std::copy_n(pSource + nWidth - nBorder, nBorder, pDestination + nWidth - nBorder);
}

template <typename TPixel>
void SmoothRows(const TPixel *pSource, TPixel *pDestination, int32_t nWidth, int32_t nHeight, int32_t nBorder)
{
  for (int32_t y = 0; y < nHeight; ++y) {
    const int64_t nStart = static_cast<int64_t>(y) * nWidth;
    if (y < nBorder || y >= nHeight - nBorder) {
      std::copy_n(pSource + nStart, nWidth, pDestination + nStart);
    } else {
      SmoothRow(pSource + nStart, pDestination + nStart, nWidth, nBorder);
    }
  }
}

} // namespace

void SmoothPixels(const void *pSource, void *pDestination, int32_t nBitDepth, int32_t nWidth, int32_t nHeight,
                  int32_t nBorder)
{
  WithPixelType(nBitDepth, [=](auto pixel) {
    using TPixel = decltype(pixel);
    SmoothRows(static_cast<const TPixel *>(pSource), static_cast<TPixel *>(pDestination), nWidth, nHeight, nBorder);
  });
}
