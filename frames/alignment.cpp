#include "frames/alignment.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <string>

namespace ffc::frames {
namespace {

constexpr uint32_t SAMPLE_BITS = 16;
// Depths that cameras have, of samples in 16 bits.
constexpr uint32_t DEEP[] = {10, 12, 14, 16};

template <class TSample>
void AddSamples(const void *pFrame, const SLayout &stLayout, SEvidence &stEvidence)
{
  const auto *pSamples = static_cast<const TSample *>(pFrame);
  const std::size_t nSamples = stLayout.GetFrameSize() / sizeof(TSample);
  TSample nUsedBits = 0;
  TSample nLargest = 0;
  for (std::size_t n = 0; n < nSamples; ++n) {
    nUsedBits = static_cast<TSample>(nUsedBits | pSamples[n]);
    nLargest = pSamples[n] > nLargest ? pSamples[n] : nLargest;
  }
  stEvidence.Add(SEvidence{nUsedBits, nLargest});
}

SDepth MakeLeft(uint32_t nBitDepth, uint32_t nEmpty)
{
  return {nBitDepth, EAlignment::Left,
          QStringLiteral("The values are taken as %1 bits, left-aligned, because the lowest %2 bits of all samples are "
                         "empty.")
            .arg(nBitDepth)
            .arg(nEmpty)};
}

Failure DescribeTooLarge(const SEvidence &stEvidence, uint32_t nBitDepth)
{
  return Failure("holds the value " + std::to_string(stEvidence.nLargest) + ", but " + std::to_string(nBitDepth) +
                 " bits end at " + std::to_string((1U << nBitDepth) - 1) + ".");
}

// Of 16-bit samples whose depth nobody states.
Result<SDepth> GuessDepth(const SEvidence &stEvidence, const SStated &stStated)
{
  const uint32_t nEmpty = stEvidence.CountEmptyLowBits();
  if (stEvidence.nLargest == 0) {
    return Failure("holds nothing but zeros, so its bit depth cannot be guessed: state it.");
  }
  const bool bMayBeLeft = stStated.eAlignment.value_or(EAlignment::Left) == EAlignment::Left;
  for (const uint32_t nDepth : DEEP) {
    // A recording in which a low bit is never set has none there.
    if (bMayBeLeft && nDepth < SAMPLE_BITS && nEmpty >= SAMPLE_BITS - nDepth) {
      return MakeLeft(nDepth, nEmpty);
    }
  }
  if (stStated.eAlignment == EAlignment::Left) {
    return SDepth{SAMPLE_BITS, EAlignment::Left, QStringLiteral("The values are taken as 16 bits: all are in use.")};
  }
  const auto holdsLargest = [&stEvidence](uint32_t nDepth) { return stEvidence.nLargest < 1U << nDepth; };
  const uint32_t nDepth = *std::find_if(std::begin(DEEP), std::end(DEEP) - 1, holdsLargest);
  return SDepth{nDepth, EAlignment::Right,
                QStringLiteral("The values are taken as %1 bits, right-aligned, because the largest is %2 and the low "
                               "bits are in use.")
                  .arg(nDepth)
                  .arg(stEvidence.nLargest)};
}

} // namespace

void SEvidence::Add(const void *pFrame, const SLayout &stLayout)
{
  if (stLayout.nBytesPerSample == 1) {
    AddSamples<uint8_t>(pFrame, stLayout, *this);
  } else {
    AddSamples<uint16_t>(pFrame, stLayout, *this);
  }
}

void SEvidence::Add(const SEvidence &stOther)
{
  nUsedBits |= stOther.nUsedBits;
  nLargest = stOther.nLargest > nLargest ? stOther.nLargest : nLargest;
}

uint32_t SEvidence::CountEmptyLowBits() const
{
  uint32_t nEmpty = 0;
  while (nEmpty < SAMPLE_BITS && (nUsedBits >> nEmpty & 1U) == 0) {
    ++nEmpty;
  }
  return nEmpty;
}

Result<SDepth> DecideDepth(const SEvidence &stEvidence, const SLayout &stLayout, const SStated &stStated)
{
  const uint32_t nBitDepth = stStated.nBitDepth;
  if (nBitDepth != 0 && (nBitDepth > 8 ? 2U : 1U) != stLayout.nBytesPerSample) {
    return Failure("has " + std::to_string(8 * stLayout.nBytesPerSample) + " bits per pixel, which frames of " +
                   std::to_string(nBitDepth) + " bits do not have.");
  }
  if (stLayout.nBytesPerSample == 1) {
    return SDepth{};
  }
  if (nBitDepth == 0) {
    return GuessDepth(stEvidence, stStated);
  }
  const uint32_t nEmpty = stEvidence.CountEmptyLowBits();
  const bool bFitsRight = stEvidence.nLargest < 1U << nBitDepth;
  const bool bFitsLeft = nEmpty >= SAMPLE_BITS - nBitDepth;
  if (stStated.eAlignment == EAlignment::Left) {
    return bFitsLeft ? Result<SDepth>(SDepth{nBitDepth, EAlignment::Left, {}})
                     : Failure("is stated to be left-aligned, but uses its lowest " +
                               std::to_string(SAMPLE_BITS - nBitDepth) + " bits.");
  }
  if (bFitsRight) {
    return SDepth{nBitDepth, EAlignment::Right, {}};
  }
  const bool bIsLeft = bFitsLeft && !stStated.eAlignment;
  return bIsLeft ? Result<SDepth>(MakeLeft(nBitDepth, nEmpty)) : DescribeTooLarge(stEvidence, nBitDepth);
}

uint32_t FindUsedBits(const void *pFrame, const SLayout &stLayout)
{
  // Several words at once, none of which waits for the one before.
  constexpr std::size_t LANES = 16;
  uint64_t anUsed[LANES] = {};
  const auto *pBytes = static_cast<const uint8_t *>(pFrame);
  const std::size_t nBytes = stLayout.GetFrameSize();
  std::size_t n = 0;
  for (; n + sizeof anUsed <= nBytes; n += sizeof anUsed) {
    uint64_t anWords[LANES];
    std::memcpy(anWords, pBytes + n, sizeof anWords);
    for (std::size_t nLane = 0; nLane < LANES; ++nLane) {
      anUsed[nLane] |= anWords[nLane];
    }
  }
  uint64_t anRest[LANES] = {};
  std::memcpy(anRest, pBytes + n, nBytes - n);
  uint64_t nUsed = 0;
  for (std::size_t nLane = 0; nLane < LANES; ++nLane) {
    nUsed |= anUsed[nLane] | anRest[nLane];
  }
  for (uint32_t nBits = 32; nBits >= 8 * stLayout.nBytesPerSample; nBits /= 2) {
    nUsed |= nUsed >> nBits;
  }
  return static_cast<uint32_t>(nUsed & ((uint64_t{1} << 8 * stLayout.nBytesPerSample) - 1));
}

void ShiftRight(void *pFrame, const SLayout &stLayout, uint32_t nBits)
{
  auto *pSamples = static_cast<uint16_t *>(pFrame);
  for (std::size_t n = 0; n < stLayout.GetFrameSize() / sizeof(uint16_t); ++n) {
    pSamples[n] = static_cast<uint16_t>(pSamples[n] >> nBits);
  }
}

void ShiftLeft(void *pFrame, const SLayout &stLayout, uint32_t nBits)
{
  auto *pSamples = static_cast<uint16_t *>(pFrame);
  for (std::size_t n = 0; n < stLayout.GetFrameSize() / sizeof(uint16_t); ++n) {
    pSamples[n] = static_cast<uint16_t>(pSamples[n] << nBits);
  }
}

} // namespace ffc::frames
