#include "ombrix/ombrix.h"

#include "ombrix/flatfield.h"
#include "ombrix/librarypool.h"

namespace {

constexpr uint32_t MIN_BIT_DEPTH = 8;
constexpr uint32_t MAX_BIT_DEPTH = 16;
constexpr uint32_t MAX_BAYER_TYPE = 4;
constexpr uint32_t BYTES_PER_GAIN = 2;
constexpr uint32_t BYTES_PER_GAIN_AND_LEVEL = 4;

bool IsBitDepthSupported(uint32_t nBitDepth)
{
  return nBitDepth >= MIN_BIT_DEPTH && nBitDepth <= MAX_BIT_DEPTH;
}

// 0 for an empty image and for a table of more bytes than 32 bits count.
uint32_t GetTableSize(uint32_t nWidth, uint32_t nHeight, uint32_t nBytesPerPixel)
{
  const uint64_t nPixels = uint64_t{nWidth} * nHeight;
  return nPixels <= UINT32_MAX / nBytesPerPixel ? static_cast<uint32_t>(nPixels) * nBytesPerPixel : 0;
}

// On success the table's size is written, on failure nothing.
int32_t CheckParam(const OMBRIX_FFC_PARAM &stParam, uint32_t *pnTableSize)
{
  if (stParam.pBright == nullptr) {
    return OMBRIX_STATUS_MISSING_POINTER;
  }
  if (!IsBitDepthSupported(stParam.nBitDepth) || stParam.nBayerType > MAX_BAYER_TYPE) {
    return OMBRIX_STATUS_NOT_SUPPORTED;
  }
  const uint32_t nBytesPerPixel = stParam.pDark != nullptr ? BYTES_PER_GAIN_AND_LEVEL : BYTES_PER_GAIN;
  const uint32_t nTableSize = GetTableSize(stParam.nWidth, stParam.nHeight, nBytesPerPixel);
  if (nTableSize == 0) {
    return OMBRIX_STATUS_OUT_OF_RANGE;
  }
  *pnTableSize = nTableSize;
  return OMBRIX_STATUS_SUCCESS;
}

int32_t QueryTableSize(const OMBRIX_FFC_PARAM &stParam, uint32_t *pnSize)
{
  *pnSize = 0;
  return CheckParam(stParam, pnSize);
}

} // namespace

int32_t OmbrixComputeFlatField(OMBRIX_FFC_PARAM stParam, void *pCoefficient, uint32_t *pnSize,
                               const uint32_t *pnExpectGray)
{
  if (pnSize == nullptr) {
    return OMBRIX_STATUS_MISSING_POINTER;
  }
  if (pCoefficient == nullptr) {
    return QueryTableSize(stParam, pnSize);
  }
  if (pnExpectGray == nullptr) {
    return OMBRIX_STATUS_MISSING_POINTER;
  }
  uint32_t nTableSize = 0;
  const int32_t nStatus = CheckParam(stParam, &nTableSize);
  if (nStatus != OMBRIX_STATUS_SUCCESS) {
    return nStatus;
  }
  if (*pnExpectGray > ffc::ombrix::GetMaxPixelValue(stParam.nBitDepth)) {
    return OMBRIX_STATUS_OUT_OF_RANGE;
  }
  if (*pnSize < nTableSize) {
    return OMBRIX_STATUS_BUFFER_SIZE;
  }
  const std::size_t nPixels = std::size_t{stParam.nWidth} * stParam.nHeight;
  ffc::ombrix::ComputeTable({stParam.pBright, stParam.pDark, nPixels, stParam.nBitDepth}, *pnExpectGray, pCoefficient,
                            ffc::ombrix::GetLibraryPool());
  *pnSize = nTableSize;
  return OMBRIX_STATUS_SUCCESS;
}

int32_t OmbrixApplyFlatField(const void *pSource, void *pDestination, uint32_t nBitDepth, uint32_t nWidth,
                             uint32_t nHeight, const void *pCoefficient, const uint32_t *pnSize)
{
  if (pSource == nullptr || pDestination == nullptr || pCoefficient == nullptr || pnSize == nullptr) {
    return OMBRIX_STATUS_MISSING_POINTER;
  }
  if (!IsBitDepthSupported(nBitDepth)) {
    return OMBRIX_STATUS_NOT_SUPPORTED;
  }
  const uint32_t nGainSize = GetTableSize(nWidth, nHeight, BYTES_PER_GAIN);
  if (nGainSize == 0) {
    return OMBRIX_STATUS_OUT_OF_RANGE;
  }
  const bool bDark = *pnSize == uint64_t{nGainSize} * 2;
  if (!bDark && *pnSize != nGainSize) {
    return OMBRIX_STATUS_BUFFER_SIZE;
  }
  ffc::ombrix::ApplyTable({pSource, pDestination, std::size_t{nWidth} * nHeight, nBitDepth}, {pCoefficient, bDark},
                          ffc::ombrix::GetLibraryPool());
  return OMBRIX_STATUS_SUCCESS;
}
