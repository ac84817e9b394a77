#include "pluginobject/shadingcorrection/imagecalc/vignetting/ivignettingcorrection.h"

using namespace ffc::imagecalc;

namespace {

constexpr uint32_t MAX_SCALE_BITS = 15;

bool IsPowerOfTwo(uint32_t nValue)
{
  return nValue != 0 && (nValue & (nValue - 1)) == 0;
}

} // namespace

IVignettingCorrection::IVignettingCorrection() noexcept = default;

IVignettingCorrection::~IVignettingCorrection() = default;

int32_t IVignettingCorrection::CalcCoefficient(const void *, uint32_t, uint32_t, int32_t, const uint16_t **, uint64_t *,
                                               uint64_t *) noexcept
{
  return IMAGECALC_STATUS_NOT_SUPPORTED;
}

int32_t IVignettingCorrection::Init(uint32_t nBlockWidth, uint32_t nBlockHeight, uint32_t nScaleBits,
                                    int32_t nMaxGain) noexcept
{
  m_bReady = SetScaleBits(nScaleBits) == IMAGECALC_STATUS_SUCCESS &&
             SetBlockSize(nBlockWidth, nBlockHeight) == IMAGECALC_STATUS_SUCCESS &&
             SetMaxGain(nMaxGain) == IMAGECALC_STATUS_SUCCESS;
  return m_bReady ? IMAGECALC_STATUS_SUCCESS : IMAGECALC_STATUS_INVALID_ARGUMENT;
}

int32_t IVignettingCorrection::CheckImage(const void *pImage, uint32_t nWidth, uint32_t nHeight) noexcept
{
  return m_bReady && pImage != nullptr && nWidth >= m_nBlockWidth && nHeight >= m_nBlockHeight
           ? IMAGECALC_STATUS_SUCCESS
           : IMAGECALC_STATUS_INVALID_ARGUMENT;
}

int32_t IVignettingCorrection::SetScaleBits(uint32_t nBits) noexcept
{
  if (nBits > MAX_SCALE_BITS) {
    return IMAGECALC_STATUS_INVALID_ARGUMENT;
  }
  m_nScale = static_cast<uint16_t>(1U << nBits);
  return IMAGECALC_STATUS_SUCCESS;
}

int32_t IVignettingCorrection::SetBlockSize(uint32_t nWidth, uint32_t nHeight) noexcept
{
  if (!IsPowerOfTwo(nWidth) || !IsPowerOfTwo(nHeight)) {
    return IMAGECALC_STATUS_INVALID_ARGUMENT;
  }
  m_nBlockWidth = nWidth;
  m_nBlockHeight = nHeight;
  return IMAGECALC_STATUS_SUCCESS;
}

int32_t IVignettingCorrection::SetMaxGain(int32_t nGain) noexcept
{
  if (nGain < 1) {
    return IMAGECALC_STATUS_INVALID_ARGUMENT;
  }
  m_nMaxGain = nGain;
  return IMAGECALC_STATUS_SUCCESS;
}
