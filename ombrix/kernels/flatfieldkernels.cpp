// Compiled once per instruction level: everything here is internal but the table (see cmake/FfcKernels.cmake).
#include "ombrix/kernels/flatfieldkernels.h"

#include <cstring>

#include "platform/builtlevel.h"

extern const SFlatFieldKernels FFC_KERNEL_TABLE;

namespace {

constexpr int32_t GAIN_ONE = 4096;
constexpr int32_t GAIN_LIMIT = 65535;
constexpr uint32_t GAIN_BITS = 12;
constexpr uint32_t LEVEL_BITS = 16;
constexpr std::size_t WORD_BYTES = 2;

template <uint32_t DEPTH>
struct SDepth {
  using TPixel = uint16_t;
};

template <>
struct SDepth<8> {
  using TPixel = uint8_t;
};

template <typename TPixel>
inline TPixel Load(const unsigned char *pData, std::size_t nIndex)
{
  TPixel nValue;
  std::memcpy(&nValue, pData + nIndex * sizeof nValue, sizeof nValue);
  return nValue;
}

template <typename TPixel>
inline void Store(unsigned char *pData, std::size_t nIndex, TPixel nValue)
{
  std::memcpy(pData + nIndex * sizeof nValue, &nValue, sizeof nValue);
}

// A value above the depth's maximum counts as that.
template <uint32_t DEPTH>
inline uint16_t Limit(uint16_t nValue)
{
  constexpr uint16_t MAX = (uint32_t{1} << DEPTH) - 1;
  return nValue < MAX ? nValue : MAX;
}

// Shifted left to 16 bits.
template <uint32_t DEPTH>
inline uint16_t Justify(uint16_t nValue)
{
  return static_cast<uint16_t>(Limit<DEPTH>(nValue) << (LEVEL_BITS - DEPTH));
}

inline uint16_t SubtractSaturating(uint16_t nFrom, uint16_t nValue)
{
  return static_cast<uint16_t>((nFrom > nValue ? nFrom : nValue) - nValue);
}

// min(max, (t x gain + 2^(27 - b)) >> (28 - b)). To 12 bits the shift is at least 16, so that the upper half of the
// product is enough, with the top bit of the lower half where that is the one that rounds; all fits 16 bits.
template <uint32_t DEPTH>
inline uint16_t Scale(uint16_t nSignal, uint16_t nGain)
{
  constexpr uint32_t MAX = (uint32_t{1} << DEPTH) - 1;
  constexpr uint32_t SHIFT = LEVEL_BITS - DEPTH + GAIN_BITS;
  const uint32_t nProduct = uint32_t{nSignal} * nGain;
  if constexpr (SHIFT > 16) {
    constexpr uint16_t HALF = uint32_t{1} << (SHIFT - 17);
    const auto nHigh = static_cast<uint16_t>(nProduct >> 16);
    const auto nValue = static_cast<uint16_t>(static_cast<uint16_t>(nHigh + HALF) >> (SHIFT - 16));
    return nValue < MAX ? nValue : MAX;
  } else if constexpr (SHIFT == 16) {
    const auto nHigh = static_cast<uint16_t>(nProduct >> 16);
    const auto nLow = static_cast<uint16_t>(nProduct);
    const auto nValue = static_cast<uint16_t>(nHigh + (nLow >> 15));
    return nValue < MAX ? nValue : MAX;
  } else {
    // Below 2^32: a signal is at most 2^16 - 2^(16 - b), as the source was limited first.
    const uint32_t nValue = (nProduct + (uint32_t{1} << (SHIFT - 1))) >> SHIFT;
    return static_cast<uint16_t>(nValue < MAX ? nValue : MAX);
  }
}

// In place, all accesses go through one pointer: a compiler that must expect two of them to overlap would step
// pixel by pixel.
template <uint32_t DEPTH, bool HAS_DARK, bool IN_PLACE>
void Apply(const void *pSource, void *__restrict pDestination, std::size_t nPixels, const void *__restrict pTable)
{
  using TPixel = typename SDepth<DEPTH>::TPixel;
  auto *const pTo = static_cast<unsigned char *>(pDestination);
  const auto *const pFrom = IN_PLACE ? pTo : static_cast<const unsigned char *>(pSource);
  const auto *const pGains = static_cast<const unsigned char *>(pTable);
  const auto *const pLevels = pGains + nPixels * WORD_BYTES;
  for (std::size_t i = 0; i < nPixels; ++i) {
    uint16_t nSignal = Justify<DEPTH>(Load<TPixel>(pFrom, i));
    if constexpr (HAS_DARK) {
      nSignal = SubtractSaturating(nSignal, Load<uint16_t>(pLevels, i));
    }
    Store<TPixel>(pTo, i, static_cast<TPixel>(Scale<DEPTH>(nSignal, Load<uint16_t>(pGains, i))));
  }
}

// (target x 4096 + signal / 2) / signal, which has no vector form in integers. The quotient of two doubles is exact
// enough: one that is no integer lies at least 1 / 65535 below the next. Where there is no signal is
// computed too: from a comparison, compilers make a branch, in which a division does not become a vector's.
inline uint16_t GetGain(int32_t nSignal, int32_t nTarget)
{
  const auto nNoSignal = static_cast<int32_t>(static_cast<uint32_t>(nSignal - 1) >> 31);
  const int32_t nDividend = nTarget * GAIN_ONE + nSignal / 2;
  const double dQuotient = static_cast<double>(nDividend) / (nSignal + nNoSignal);
  const auto nQuotient = static_cast<int32_t>(dQuotient);
  const int32_t nGain = nQuotient < GAIN_LIMIT ? nQuotient : GAIN_LIMIT;
  return static_cast<uint16_t>(nGain | nNoSignal * GAIN_LIMIT);
}

template <uint32_t DEPTH, bool HAS_DARK>
void Compute(const void *pBright, const void *pDark, std::size_t nPixels, uint32_t nTarget, void *__restrict pTable)
{
  using TPixel = typename SDepth<DEPTH>::TPixel;
  const auto *const pBrightPixels = static_cast<const unsigned char *>(pBright);
  const auto *const pDarkPixels = static_cast<const unsigned char *>(pDark);
  auto *const pGains = static_cast<unsigned char *>(pTable);
  for (std::size_t i = 0; i < nPixels; ++i) {
    int32_t nSignal = Limit<DEPTH>(Load<TPixel>(pBrightPixels, i));
    if constexpr (HAS_DARK) {
      const int32_t nDark = Limit<DEPTH>(Load<TPixel>(pDarkPixels, i));
      nSignal = (nSignal > nDark ? nSignal : nDark) - nDark;
    }
    Store<uint16_t>(pGains, i, GetGain(nSignal, static_cast<int32_t>(nTarget)));
  }
  if constexpr (HAS_DARK) {
    auto *const pLevels = pGains + nPixels * WORD_BYTES;
    for (std::size_t i = 0; i < nPixels; ++i) {
      Store<uint16_t>(pLevels, i, Justify<DEPTH>(Load<TPixel>(pDarkPixels, i)));
    }
  }
}

} // namespace

#define FFC_COMPUTE(DEPTH)                                                                                             \
  {                                                                                                                    \
    Compute<DEPTH, false>, Compute<DEPTH, true>                                                                        \
  }
#define FFC_APPLY(DEPTH)                                                                                               \
  {                                                                                                                    \
    {Apply<DEPTH, false, false>, Apply<DEPTH, false, true>},                                                           \
    {                                                                                                                  \
      Apply<DEPTH, true, false>, Apply<DEPTH, true, true>                                                              \
    }                                                                                                                  \
  }

const SFlatFieldKernels FFC_KERNEL_TABLE = {
  FFC_BUILT_LEVEL,
  {FFC_COMPUTE(8), FFC_COMPUTE(9), FFC_COMPUTE(10), FFC_COMPUTE(11), FFC_COMPUTE(12), FFC_COMPUTE(13), FFC_COMPUTE(14),
   FFC_COMPUTE(15), FFC_COMPUTE(16)},
  {FFC_APPLY(8), FFC_APPLY(9), FFC_APPLY(10), FFC_APPLY(11), FFC_APPLY(12), FFC_APPLY(13), FFC_APPLY(14), FFC_APPLY(15),
   FFC_APPLY(16)},
};
