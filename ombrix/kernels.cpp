#include "ombrix/kernels.h"

#include <cstring>

namespace {

constexpr uint32_t GAIN_ONE = 4096;
constexpr uint32_t GAIN_LIMIT = 65535;
constexpr uint32_t GAIN_BITS = 12;
constexpr uint32_t LEVEL_BITS = 16;

// Pixels go through bytes because frames and tables need not be aligned.
template <typename TPixel>
inline uint32_t Load(const unsigned char *pData, std::size_t nIndex)
{
  TPixel nValue;
  std::memcpy(&nValue, pData + nIndex * sizeof nValue, sizeof nValue);
  return nValue;
}

template <typename TPixel>
inline void Store(unsigned char *pData, std::size_t nIndex, uint32_t nValue)
{
  const TPixel nPixel = static_cast<TPixel>(nValue);
  std::memcpy(pData + nIndex * sizeof nPixel, &nPixel, sizeof nPixel);
}

inline uint32_t Min(uint32_t nFirst, uint32_t nSecond)
{
  return nFirst < nSecond ? nFirst : nSecond;
}

inline uint32_t SubtractSaturating(uint32_t nFrom, uint32_t nValue)
{
  return nFrom > nValue ? nFrom - nValue : 0;
}

inline uint32_t GetGain(uint32_t nSignal, uint32_t nTarget)
{
  return nSignal == 0 ? GAIN_LIMIT : Min(GAIN_LIMIT, (nTarget * GAIN_ONE + nSignal / 2) / nSignal);
}

template <typename TPixel, bool HAS_DARK>
void ComputePixels(const unsigned char *pBright, const unsigned char *pDark, uint32_t nBitDepth, std::size_t nPixels,
                   uint32_t nTarget, unsigned char *pTable)
{
  const uint32_t nMax = GetMaxPixelValue(nBitDepth);
  unsigned char *const pLevels = pTable + nPixels * sizeof(uint16_t);
  for (std::size_t i = 0; i < nPixels; ++i) {
    uint32_t nDark = 0;
    if constexpr (HAS_DARK) {
      nDark = Min(Load<TPixel>(pDark, i), nMax);
      Store<uint16_t>(pLevels, i, nDark << (LEVEL_BITS - nBitDepth));
    }
    const uint32_t nBright = Min(Load<TPixel>(pBright, i), nMax);
    Store<uint16_t>(pTable, i, GetGain(SubtractSaturating(nBright, nDark), nTarget));
  }
}

// The sum under the shift stays below 2^32: a signal is at most 2^16 - 2^(16 - b) because the source was
// limited first, so its product with a gain is at most 2^32 - 2^16 - (2^16 - 1) x 2^(16 - b), and half is
// only 2^(27 - b).
template <typename TPixel, bool HAS_DARK>
void ApplyPixels(const unsigned char *pSource, unsigned char *pDestination, uint32_t nBitDepth, std::size_t nPixels,
                 const unsigned char *pTable)
{
  const uint32_t nMax = GetMaxPixelValue(nBitDepth);
  const uint32_t nLevelShift = LEVEL_BITS - nBitDepth;
  const uint32_t nShift = nLevelShift + GAIN_BITS;
  const uint32_t nHalf = uint32_t{1} << (nShift - 1);
  const unsigned char *const pLevels = pTable + nPixels * sizeof(uint16_t);
  for (std::size_t i = 0; i < nPixels; ++i) {
    uint32_t nSignal = Min(Load<TPixel>(pSource, i), nMax) << nLevelShift;
    if constexpr (HAS_DARK) {
      nSignal = SubtractSaturating(nSignal, Load<uint16_t>(pLevels, i));
    }
    const uint32_t nValue = (nSignal * Load<uint16_t>(pTable, i) + nHalf) >> nShift;
    Store<TPixel>(pDestination, i, Min(nValue, nMax));
  }
}

} // namespace

void ComputeTable(const void *pBright, const void *pDark, uint32_t nBitDepth, std::size_t nPixels, uint32_t nTarget,
                  void *pTable)
{
  const bool bBytes = nBitDepth == 8;
  const auto fnCompute = pDark != nullptr ? (bBytes ? ComputePixels<uint8_t, true> : ComputePixels<uint16_t, true>)
                                          : (bBytes ? ComputePixels<uint8_t, false> : ComputePixels<uint16_t, false>);
  fnCompute(static_cast<const unsigned char *>(pBright), static_cast<const unsigned char *>(pDark), nBitDepth, nPixels,
            nTarget, static_cast<unsigned char *>(pTable));
}

void ApplyTable(const void *pSource, void *pDestination, uint32_t nBitDepth, std::size_t nPixels, const void *pTable,
                bool bDark)
{
  const bool bBytes = nBitDepth == 8;
  const auto fnApply = bDark ? (bBytes ? ApplyPixels<uint8_t, true> : ApplyPixels<uint16_t, true>)
                             : (bBytes ? ApplyPixels<uint8_t, false> : ApplyPixels<uint16_t, false>);
  fnApply(static_cast<const unsigned char *>(pSource), static_cast<unsigned char *>(pDestination), nBitDepth, nPixels,
          static_cast<const unsigned char *>(pTable));
}
