#include "pluginobject/shadingcorrection/imagecalc/smooth.h"

#include <cstring>

#include "pluginobject/shadingcorrection/imagecalc/kernels/imagekernels.h"

namespace {

constexpr int32_t BYTE_BIT_DEPTH = 8;

// Distances in bytes.
struct SSizes {
  std::size_t nPixel;
  std::size_t nRow;
  std::size_t nBorder;
};

// The border at both ends is copied. nInner pixels lie between.
void SmoothRow(const unsigned char *pFrom, unsigned char *pTo, const SSizes &stSizes, std::size_t nInner,
               FnSmoothPixels fnSmooth)
{
  std::memcpy(pTo, pFrom, stSizes.nBorder);
  const unsigned char *const pCentre = pFrom + stSizes.nBorder - stSizes.nPixel;
  fnSmooth(pCentre - stSizes.nRow, pCentre, pCentre + stSizes.nRow, nInner, pTo + stSizes.nBorder);
  const std::size_t nEnd = stSizes.nRow - stSizes.nBorder;
  std::memcpy(pTo + nEnd, pFrom + nEnd, stSizes.nBorder);
}

} // namespace

void SmoothPixels(const void *pSource, void *pDestination, int32_t nBitDepth, int32_t nWidth, int32_t nHeight,
                  int32_t nBorder)
{
  const bool bWords = nBitDepth != BYTE_BIT_DEPTH;
  const std::size_t nPixel = bWords ? 2 : 1;
  const SSizes stSizes = {nPixel, static_cast<std::size_t>(nWidth) * nPixel,
                          static_cast<std::size_t>(nBorder) * nPixel};
  const FnSmoothPixels fnSmooth = GetImageKernels().afnSmooth[bWords];
  const auto *pFrom = static_cast<const unsigned char *>(pSource);
  auto *pTo = static_cast<unsigned char *>(pDestination);
  for (int32_t y = 0; y < nHeight; ++y, pFrom += stSizes.nRow, pTo += stSizes.nRow) {
    if (y < nBorder || y >= nHeight - nBorder) {
      std::memcpy(pTo, pFrom, stSizes.nRow);
    } else {
      SmoothRow(pFrom, pTo, stSizes, static_cast<std::size_t>(nWidth - 2 * nBorder), fnSmooth);
    }
  }
}
