#include "pluginobject/shadingcorrection/imagecalc/smooth.h"

#include <cstring>

#include "pluginobject/shadingcorrection/imagecalc/kernels/imagekernels.h"

namespace ffc::imagecalc {

namespace {

// Distances in bytes.
struct SSizes {
  std::size_t nPixel;
  std::size_t nRow;
  std::size_t nBorder;
};

// The border at both ends of a row is copied.
void CopyEnds(const unsigned char *pFrom, unsigned char *pTo, const SSizes &stSizes)
{
  const std::size_t nEnd = stSizes.nRow - stSizes.nBorder;
  std::memcpy(pTo, pFrom, stSizes.nBorder);
  std::memcpy(pTo + nEnd, pFrom + nEnd, stSizes.nBorder);
}

// One or two rows.
void SmoothInner(const unsigned char *pFrom, unsigned char *pTo, const SSizes &stSizes, bool bTwoRows)
{
  const std::size_t nInner = (stSizes.nRow - 2 * stSizes.nBorder) / stSizes.nPixel;
  const unsigned char *const pNeighbour = pFrom - stSizes.nRow + stSizes.nBorder - stSizes.nPixel;
  CopyEnds(pFrom, pTo, stSizes);
  if (bTwoRows) {
    CopyEnds(pFrom + stSizes.nRow, pTo + stSizes.nRow, stSizes);
  }
  GetImageKernels().afnSmooth[stSizes.nPixel > 1]({pNeighbour, stSizes.nRow, nInner, bTwoRows, pTo + stSizes.nBorder});
}

} // namespace

void SmoothPixels(const SImageView &stSource, void *pDestination, int32_t nBorder)
{
  const std::size_t nPixel = stSource.GetPixelBytes();
  const SSizes stSizes = {nPixel, static_cast<std::size_t>(stSource.nWidth) * nPixel,
                          static_cast<std::size_t>(nBorder) * nPixel};
  const std::size_t nEdge = static_cast<std::size_t>(nBorder) * stSizes.nRow;
  const std::size_t nInnerEnd = static_cast<std::size_t>(stSource.nHeight) * stSizes.nRow - nEdge;
  const auto *const pFrom = static_cast<const unsigned char *>(stSource.pPixels);
  auto *const pTo = static_cast<unsigned char *>(pDestination);
  std::memcpy(pTo, pFrom, nEdge);
  for (std::size_t nStart = nEdge; nStart < nInnerEnd; nStart += 2 * stSizes.nRow) {
    SmoothInner(pFrom + nStart, pTo + nStart, stSizes, nStart + stSizes.nRow < nInnerEnd);
  }
  std::memcpy(pTo + nInnerEnd, pFrom + nInnerEnd, nEdge);
}

} // namespace ffc::imagecalc
