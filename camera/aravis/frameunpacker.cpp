#include "camera/aravis/frameunpacker.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr auto SHARED = SPackedFormat::ELayout::Shared;
constexpr auto STREAM = SPackedFormat::ELayout::Stream;

constexpr SPackedFormat PACKED_FORMATS[] = {
  {0x010C0004, 0x01100003, 10, SHARED}, // Mono10Packed
  {0x010C0006, 0x01100005, 12, SHARED}, // Mono12Packed
  {0x010C0026, 0x0110000C, 10, SHARED}, // BayerGR10Packed
  {0x010C0027, 0x0110000D, 10, SHARED}, // BayerRG10Packed
  {0x010C0028, 0x0110000E, 10, SHARED}, // BayerGB10Packed
  {0x010C0029, 0x0110000F, 10, SHARED}, // BayerBG10Packed
  {0x010C002A, 0x01100010, 12, SHARED}, // BayerGR12Packed
  {0x010C002B, 0x01100011, 12, SHARED}, // BayerRG12Packed
  {0x010C002C, 0x01100012, 12, SHARED}, // BayerGB12Packed
  {0x010C002D, 0x01100013, 12, SHARED}, // BayerBG12Packed
  {0x010A0046, 0x01100003, 10, STREAM}, // Mono10p
  {0x010C0047, 0x01100005, 12, STREAM}, // Mono12p
  {0x010A0056, 0x0110000C, 10, STREAM}, // BayerGR10p
  {0x010A0058, 0x0110000D, 10, STREAM}, // BayerRG10p
  {0x010A0054, 0x0110000E, 10, STREAM}, // BayerGB10p
  {0x010A0052, 0x0110000F, 10, STREAM}, // BayerBG10p
  {0x010C0057, 0x01100010, 12, STREAM}, // BayerGR12p
  {0x010C0059, 0x01100011, 12, STREAM}, // BayerRG12p
  {0x010C0055, 0x01100012, 12, STREAM}, // BayerGB12p
  {0x010C0053, 0x01100013, 12, STREAM}, // BayerBG12p
};

/// Three bytes hold two samples; their low bits stand in the middle one, the first sample's low, the second's from
/// bit 4 on.
void UnpackShared(uint32_t nBits, const uint8_t *pPacked, std::size_t nSamples, uint16_t *pSamples)
{
  const uint32_t nLowBits = nBits - 8;
  const uint32_t nMask = (1U << nLowBits) - 1;
  for (std::size_t i = 0; i < nSamples; ++i) {
    const uint8_t *pGroup = pPacked + i / 2 * 3;
    const uint32_t nHigh = pGroup[i % 2 * 2];
    const uint32_t nLow = (uint32_t{pGroup[1]} >> (i % 2 * 4)) & nMask;
    pSamples[i] = static_cast<uint16_t>(nHigh << nLowBits | nLow);
  }
}

void UnpackStream(uint32_t nBits, const uint8_t *pPacked, std::size_t nSamples, uint16_t *pSamples)
{
  const uint32_t nMask = (1U << nBits) - 1;
  for (std::size_t i = 0; i < nSamples; ++i) {
    const std::size_t nBit = i * nBits;
    // 10 or 12 bits that start at an even bit never reach into a third byte.
    const uint8_t *pPair = pPacked + nBit / 8;
    const uint32_t nPair = pPair[0] | uint32_t{pPair[1]} << 8U;
    pSamples[i] = static_cast<uint16_t>(nPair >> (nBit % 8) & nMask);
  }
}

} // namespace

std::size_t SPackedFormat::GetPackedSize(std::size_t nSamples) const
{
  return eLayout == ELayout::Shared ? (nSamples * 3 + 1) / 2 : (nSamples * nBits + 7) / 8;
}

const SPackedFormat *FindPackedFormat(uint32_t nCode)
{
  const auto *const pFound = std::find_if(std::begin(PACKED_FORMATS), std::end(PACKED_FORMATS),
                                          [nCode](const SPackedFormat &stFormat) { return stFormat.nCode == nCode; });
  return pFound == std::end(PACKED_FORMATS) ? nullptr : pFound;
}

void UnpackSamples(const SPackedFormat &stFormat, const uint8_t *pPacked, std::size_t nSamples, uint16_t *pSamples)
{
  if (stFormat.eLayout == SPackedFormat::ELayout::Shared) {
    UnpackShared(stFormat.nBits, pPacked, nSamples, pSamples);
  } else {
    UnpackStream(stFormat.nBits, pPacked, nSamples, pSamples);
  }
}
