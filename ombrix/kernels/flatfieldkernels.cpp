// Compiled once per instruction level: everything here is internal but the table (see cmake/FfcKernels.cmake).
#include "ombrix/kernels/flatfieldkernels.h"

#include <cstring>

#include "platform/builtlevel.h"
#include "platform/cacheline.h"
#include "platform/prefetch.h"

#if defined(__AVX512BW__)
#include <immintrin.h> // whose functions are part of those that call them, at every optimisation
#endif

namespace ffc::ombrix {

extern const SFlatFieldKernels FFC_KERNEL_TABLE;

namespace {

constexpr int32_t GAIN_ONE = 4096;
constexpr int32_t GAIN_LIMIT = 65535;
constexpr uint32_t GAIN_BITS = 12;
constexpr uint32_t LEVEL_BITS = 16;
constexpr std::size_t WORD_BYTES = 2;
// Many streams at once are more than a processor's own prefetching follows: pixels are worked on in steps, each of
// which asks for the cache lines of a later one.
constexpr std::size_t STEP_PIXELS = 64;
constexpr std::size_t BYTES_AHEAD = 6144;
constexpr uint32_t EXACT_FLOAT_DEPTH = 12;
constexpr float JUST_BELOW_HALF = 0.49999997F;

template <uint32_t DEPTH>
struct SDepth {
  using TPixel = uint16_t;
};

template <>
struct SDepth<8> {
  using TPixel = uint8_t;
};

template <class TPixel>
inline TPixel Load(const unsigned char *pData, std::size_t nIndex)
{
  TPixel nValue;
  std::memcpy(&nValue, pData + nIndex * sizeof nValue, sizeof nValue);
  return nValue;
}

template <class TPixel>
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

// All in 16 bits: from a wider difference compilers make a branch, and no vectors.
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
    // A product of its own: as the lower half of the other one it would be multiplied in 32 bits.
    const auto nLow = static_cast<uint16_t>(uint32_t{nSignal} * nGain);
    const auto nValue = static_cast<uint16_t>(nHigh + (nLow >> 15));
    return nValue < MAX ? nValue : MAX;
  } else {
    // Below 2^32: a signal is at most 2^16 - 2^(16 - b), as the source was limited first.
    const uint32_t nValue = (nProduct + (uint32_t{1} << (SHIFT - 1))) >> SHIFT;
    return static_cast<uint16_t>(nValue < MAX ? nValue : MAX);
  }
}

inline void AskToRead(const unsigned char *pData, std::size_t nBytes)
{
  for (std::size_t n = 0; n < nBytes; n += FFC_LINE_BYTES) {
    FFC_PREFETCH_TO_READ(pData + BYTES_AHEAD + n);
  }
}

inline void AskToWrite(const unsigned char *pData, std::size_t nBytes)
{
  for (std::size_t n = 0; n < nBytes; n += FFC_LINE_BYTES) {
    FFC_PREFETCH_TO_WRITE(pData + BYTES_AHEAD + n);
  }
}

// How many pixels lie before the first whole cache line.
inline std::size_t CountBeforeLine(const unsigned char *pData, std::size_t nPixelBytes, std::size_t nPixels)
{
  const std::size_t nBefore = FFC_COUNT_BEFORE_LINE(pData, nPixelBytes);
  return nBefore < nPixels ? nBefore : nPixels;
}

// In place, all accesses go through one pointer: a compiler that must expect two of them to overlap would step
// pixel by pixel.
template <uint32_t DEPTH, bool HAS_DARK, bool IN_PLACE>
inline void ApplyStep(const unsigned char *pSource, unsigned char *__restrict pTo, std::size_t nPixels,
                      const unsigned char *__restrict pGains, const unsigned char *__restrict pLevels)
{
  using TPixel = typename SDepth<DEPTH>::TPixel;
  const unsigned char *const pFrom = IN_PLACE ? pTo : pSource;
  for (std::size_t i = 0; i < nPixels; ++i) {
    uint16_t nSignal = Justify<DEPTH>(Load<TPixel>(pFrom, i));
    if constexpr (HAS_DARK) {
      nSignal = SubtractSaturating(nSignal, Load<uint16_t>(pLevels, i));
    }
    Store<TPixel>(pTo, i, static_cast<TPixel>(Scale<DEPTH>(nSignal, Load<uint16_t>(pGains, i))));
  }
}

template <uint32_t DEPTH, bool HAS_DARK, bool IN_PLACE>
void Apply(const SFrameRun &stRun)
{
  constexpr std::size_t PIXEL_BYTES = sizeof(typename SDepth<DEPTH>::TPixel);
  const auto *pSource = static_cast<const unsigned char *>(stRun.pSource);
  auto *pTo = static_cast<unsigned char *>(stRun.pDestination);
  const auto *pGains = static_cast<const unsigned char *>(stRun.pGains);
  const auto *pLevels = static_cast<const unsigned char *>(stRun.pLevels);
  const auto applyStep = [&](std::size_t nPixels) {
    ApplyStep<DEPTH, HAS_DARK, IN_PLACE>(pSource, pTo, nPixels, pGains, pLevels);
    pSource += nPixels * PIXEL_BYTES;
    pTo += nPixels * PIXEL_BYTES;
    pGains += nPixels * WORD_BYTES;
    if constexpr (HAS_DARK) {
      pLevels += nPixels * WORD_BYTES;
    }
  };
  const std::size_t nBeforeLine = CountBeforeLine(pTo, PIXEL_BYTES, stRun.nPixels);
  applyStep(nBeforeLine);
  // Two streams of whole lines a processor follows best by itself.
  const bool bAsk = !IN_PLACE || HAS_DARK || FFC_OFFSET_IN_LINE(pGains) != 0;
  std::size_t nLeft = stRun.nPixels - nBeforeLine;
  for (; nLeft >= STEP_PIXELS; nLeft -= STEP_PIXELS) {
    if (bAsk) {
      AskToWrite(pTo, STEP_PIXELS * PIXEL_BYTES);
      AskToRead(pGains, STEP_PIXELS * WORD_BYTES);
    }
    if constexpr (!IN_PLACE) {
      AskToRead(pSource, STEP_PIXELS * PIXEL_BYTES);
    }
    if constexpr (HAS_DARK) {
      AskToRead(pLevels, STEP_PIXELS * WORD_BYTES);
    }
    applyStep(STEP_PIXELS);
  }
  applyStep(nLeft);
}

// 1 for 0, else 0. Computed: from a comparison, compilers make a branch, in which a division does not become a
// vector's.
inline int32_t IsZero(int32_t nValue)
{
  return static_cast<int32_t>(static_cast<uint32_t>(nValue - 1) >> 31);
}

inline int32_t IsNegative(int32_t nValue)
{
  return static_cast<int32_t>(static_cast<uint32_t>(nValue) >> 31);
}

// dividend / divisor cut to an integer, which has no vector form in integers, by a quotient of floats. It may be one
// off where it is no more than twice the limit; the remainder tells.
inline int32_t Divide(int32_t nDividend, int32_t nDivisor)
{
  const auto nQuotient = static_cast<int32_t>(static_cast<float>(nDividend) / static_cast<float>(nDivisor));
  const int32_t nRemainder = nDividend - nQuotient * nDivisor;
  return nQuotient + 1 - IsNegative(nRemainder) - IsNegative(nRemainder - nDivisor);
}

// min(65535, (target x 4096 + signal / 2) / signal), 65535 without a signal. To 12 bits in floats, which are exact: the
// half of an odd signal need not be cut, for (2t + s) / 2s is no integer then, but where the sum is rounded to one it
// has to be rounded down. The sum is at most 2^24, and a quotient that is no integer lies further below the next one
// than the half unit in the last place that it is rounded by. Without a signal it is infinite, or with a target of 0 no
// number; neither is below the limit.
template <uint32_t DEPTH>
inline uint32_t GetGain(int32_t nSignal, int32_t nScaledTarget)
{
  if constexpr (DEPTH <= EXACT_FLOAT_DEPTH) {
    constexpr float LIMIT = GAIN_LIMIT;
    const auto fSignal = static_cast<float>(nSignal);
    const float fQuotient = (fSignal * JUST_BELOW_HALF + static_cast<float>(nScaledTarget)) / fSignal;
    return static_cast<uint32_t>(static_cast<int32_t>(fQuotient < LIMIT ? fQuotient : LIMIT));
  } else {
    const int32_t nNoSignal = IsZero(nSignal);
    const int32_t nQuotient = Divide(nScaledTarget + nSignal / 2, nSignal + nNoSignal);
    const int32_t nGain = nQuotient < GAIN_LIMIT ? nQuotient : GAIN_LIMIT;
    return static_cast<uint32_t>(nGain | nNoSignal * GAIN_LIMIT);
  }
}

template <uint32_t DEPTH, bool HAS_DARK>
inline uint16_t LoadSignal(const unsigned char *pBright, const unsigned char *pDark, std::size_t nIndex)
{
  using TPixel = typename SDepth<DEPTH>::TPixel;
  const uint16_t nSignal = Limit<DEPTH>(Load<TPixel>(pBright, nIndex));
  if constexpr (HAS_DARK) {
    return SubtractSaturating(nSignal, Limit<DEPTH>(Load<TPixel>(pDark, nIndex)));
  } else {
    return nSignal;
  }
}

// Divides for each pixel. Two at a time: the halves of a word of 32 bits become floats, and these a word again, where
// they are; words of 16 bits would have to be moved to where there is room for floats.
template <uint32_t DEPTH>
class CGains {
public:
  explicit CGains(int32_t nScaledTarget) : m_nScaledTarget(nScaledTarget) {}

  // No more than STEP_PIXELS.
  template <bool HAS_DARK>
  void Compute(const unsigned char *pBright, const unsigned char *pDark, std::size_t nPixels,
               unsigned char *__restrict pGains) const
  {
    uint16_t anSignals[STEP_PIXELS];
    const unsigned char *pSignals = pBright;
    if constexpr (HAS_DARK || DEPTH < LEVEL_BITS) {
      for (std::size_t i = 0; i < nPixels; ++i) {
        anSignals[i] = LoadSignal<DEPTH, HAS_DARK>(pBright, pDark, i);
      }
      pSignals = reinterpret_cast<const unsigned char *>(anSignals);
    }
    for (std::size_t i = 0; i < nPixels / 2; ++i) {
      const auto nPair = Load<uint32_t>(pSignals, i);
      Store<uint32_t>(pGains, i, GetOne(nPair & 0xFFFF) | GetOne(nPair >> 16) << 16);
    }
    if (nPixels % 2 != 0) {
      const std::size_t nLast = nPixels - 1;
      Store<uint16_t>(pGains, nLast, static_cast<uint16_t>(GetOne(Load<uint16_t>(pSignals, nLast))));
    }
  }

private:
  uint32_t GetOne(uint32_t nSignal) const { return GetGain<DEPTH>(static_cast<int32_t>(nSignal), m_nScaledTarget); }

  int32_t m_nScaledTarget;
};

#if defined(__AVX512BW__)
// Bytes have 256 gains, which fit eight registers, and one instruction looks 32 of them up in two. No loop becomes
// that.
template <>
class CGains<8> {
public:
  explicit CGains(int32_t nScaledTarget)
  {
    for (int32_t nSignal = 0; nSignal < 256; ++nSignal) {
      m_anGains[nSignal] = static_cast<uint16_t>(GetGain<8>(nSignal, nScaledTarget));
    }
  }

  template <bool HAS_DARK>
  void Compute(const unsigned char *pBright, const unsigned char *pDark, std::size_t nPixels,
               unsigned char *__restrict pGains) const
  {
    std::size_t i = 0;
    for (; i + VECTOR_WORDS <= nPixels; i += VECTOR_WORDS) {
      __m256i bytes = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(pBright + i));
      if constexpr (HAS_DARK) {
        bytes = _mm256_subs_epu8(bytes, _mm256_loadu_si256(reinterpret_cast<const __m256i *>(pDark + i)));
      }
      _mm512_storeu_si512(pGains + i * WORD_BYTES, LookUp(_mm512_cvtepu8_epi16(bytes)));
    }
    for (; i < nPixels; ++i) {
      Store<uint16_t>(pGains, i, m_anGains[LoadSignal<8, HAS_DARK>(pBright, pDark, i)]);
    }
  }

private:
  static constexpr std::size_t VECTOR_WORDS = 32;

  // Each instruction takes the lower six bits; the upper two choose among the results of the four.
  __m512i LookUp(__m512i signals) const
  {
    const __mmask32 nOdd = _mm512_test_epi16_mask(signals, _mm512_set1_epi16(64));
    const __mmask32 nUpper = _mm512_test_epi16_mask(signals, _mm512_set1_epi16(128));
    return _mm512_mask_blend_epi16(nUpper,
                                   _mm512_mask_blend_epi16(nOdd, LookUpQuarter(signals, 0), LookUpQuarter(signals, 1)),
                                   _mm512_mask_blend_epi16(nOdd, LookUpQuarter(signals, 2), LookUpQuarter(signals, 3)));
  }
  __m512i LookUpQuarter(__m512i signals, std::size_t nQuarter) const
  {
    const uint16_t *const pQuarter = m_anGains + nQuarter * 2 * VECTOR_WORDS;
    return _mm512_permutex2var_epi16(_mm512_loadu_si512(pQuarter), signals,
                                     _mm512_loadu_si512(pQuarter + VECTOR_WORDS));
  }

  uint16_t m_anGains[256];
};
#endif

template <uint32_t DEPTH>
inline void CopyLevels(const unsigned char *pDark, std::size_t nPixels, unsigned char *__restrict pLevels)
{
  using TPixel = typename SDepth<DEPTH>::TPixel;
  for (std::size_t i = 0; i < nPixels; ++i) {
    Store<uint16_t>(pLevels, i, Justify<DEPTH>(Load<TPixel>(pDark, i)));
  }
}

template <uint32_t DEPTH, bool HAS_DARK>
void Compute(const STableRun &stRun)
{
  constexpr std::size_t PIXEL_BYTES = sizeof(typename SDepth<DEPTH>::TPixel);
  const auto *pBright = static_cast<const unsigned char *>(stRun.pBright);
  const auto *pDark = static_cast<const unsigned char *>(stRun.pDark);
  auto *pGains = static_cast<unsigned char *>(stRun.pGains);
  auto *pLevels = static_cast<unsigned char *>(stRun.pLevels);
  const CGains<DEPTH> gains(static_cast<int32_t>(stRun.nTarget) * GAIN_ONE);
  const auto computeStep = [&](std::size_t nPixels) {
    gains.template Compute<HAS_DARK>(pBright, pDark, nPixels, pGains);
    pBright += nPixels * PIXEL_BYTES;
    pGains += nPixels * WORD_BYTES;
    if constexpr (HAS_DARK) {
      CopyLevels<DEPTH>(pDark, nPixels, pLevels);
      pDark += nPixels * PIXEL_BYTES;
      pLevels += nPixels * WORD_BYTES;
    }
  };
  const std::size_t nBeforeLine = CountBeforeLine(pGains, WORD_BYTES, stRun.nPixels);
  computeStep(nBeforeLine);
  std::size_t nLeft = stRun.nPixels - nBeforeLine;
  for (; nLeft >= STEP_PIXELS; nLeft -= STEP_PIXELS) {
    AskToRead(pBright, STEP_PIXELS * PIXEL_BYTES);
    AskToWrite(pGains, STEP_PIXELS * WORD_BYTES);
    if constexpr (HAS_DARK) {
      AskToRead(pDark, STEP_PIXELS * PIXEL_BYTES);
      AskToWrite(pLevels, STEP_PIXELS * WORD_BYTES);
    }
    computeStep(STEP_PIXELS);
  }
  computeStep(nLeft);
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

} // namespace ffc::ombrix
