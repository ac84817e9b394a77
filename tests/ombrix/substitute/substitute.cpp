// \file
// An image library that paints every corrected frame in one grey.

#include <cstdint>
#include <cstring>

#include "ombrix/ombrix.h"

namespace {

constexpr uint16_t ONE_GREY = 1234;

} // namespace

extern "C" {

int32_t SubstituteCompute(OMBRIX_FFC_PARAM stParam, void *pCoefficient, uint32_t *pnSize, const uint32_t *pnExpectGray)
{
  *pnSize = stParam.nWidth * stParam.nHeight * (stParam.pDark != nullptr ? 4U : 2U);
  if (pCoefficient != nullptr) {
    std::memset(pCoefficient, static_cast<int>(*pnExpectGray & 0xFFU), *pnSize);
  }
  return OMBRIX_STATUS_SUCCESS;
}

int32_t SubstituteApply(const void *, void *pDestination, uint32_t nBitDepth, uint32_t nWidth, uint32_t nHeight,
                        const void *, const uint32_t *)
{
  if (nBitDepth != 12) {
    return OMBRIX_STATUS_NOT_SUPPORTED;
  }
  for (uint32_t i = 0; i < nWidth * nHeight; ++i) {
    std::memcpy(static_cast<uint8_t *>(pDestination) + i * sizeof ONE_GREY, &ONE_GREY, sizeof ONE_GREY);
  }
  return OMBRIX_STATUS_SUCCESS;
}

} // extern "C"
