#include "camera/aravis/frameunpacker.h"

namespace ffc::camera {

using genapi::EPacking;
using genapi::SPixelFormat;

namespace {

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

const genapi::SPixelFormat *FindPackedFormat(uint32_t nCode)
{
  const genapi::SPixelFormat *pFormat = genapi::FindPixelFormat(nCode);
  const bool bPacked = pFormat != nullptr && pFormat->ePacking != genapi::EPacking::None && pFormat->nBitDepth <= 12;
  return bPacked ? pFormat : nullptr;
}

std::size_t GetPackedSize(const genapi::SPixelFormat &stFormat, std::size_t nSamples)
{
  return stFormat.ePacking == genapi::EPacking::Shared ? (nSamples * 3 + 1) / 2
                                                       : (nSamples * stFormat.nBitDepth + 7) / 8;
}

void UnpackSamples(const genapi::SPixelFormat &stFormat, const uint8_t *pPacked, std::size_t nSamples,
                   uint16_t *pSamples)
{
  if (stFormat.ePacking == genapi::EPacking::Shared) {
    UnpackShared(stFormat.nBitDepth, pPacked, nSamples, pSamples);
  } else {
    UnpackStream(stFormat.nBitDepth, pPacked, nSamples, pSamples);
  }
}

} // namespace ffc::camera
