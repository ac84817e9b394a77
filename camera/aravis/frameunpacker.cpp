#include "camera/aravis/frameunpacker.h"

#include <algorithm>

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

/// \param nReach bytes that a sample may stand in, which the last ones have not all behind them
uint32_t GatherStream(const uint8_t *pPacked, std::size_t nBit, std::size_t nReach, std::size_t nSize)
{
  uint32_t nWord = 0;
  for (std::size_t nByte = 0; nByte < nReach && nBit / 8 + nByte < nSize; ++nByte) {
    nWord |= uint32_t{pPacked[nBit / 8 + nByte]} << (8 * nByte);
  }
  return nWord >> (nBit % 8);
}

void UnpackStream(uint32_t nBits, const uint8_t *pPacked, std::size_t nSamples, uint16_t *pSamples)
{
  const uint32_t nMask = (1U << nBits) - 1;
  const std::size_t nSize = (nSamples * nBits + 7) / 8;
  // 10 or 12 bits that start at an even bit never reach into a third byte.
  const std::size_t nReach = nBits <= 12 ? 2 : 3;
  const std::size_t nWhole = nSize < nReach ? 0 : std::min(nSamples, ((nSize - nReach) * 8) / nBits + 1);
  for (std::size_t i = 0; i < nWhole; ++i) {
    const std::size_t nBit = i * nBits;
    const uint8_t *pGroup = pPacked + nBit / 8;
    const uint32_t nThird = nReach == 3 ? uint32_t{pGroup[2]} << 16U : 0;
    pSamples[i] = static_cast<uint16_t>((pGroup[0] | uint32_t{pGroup[1]} << 8U | nThird) >> (nBit % 8) & nMask);
  }
  for (std::size_t i = nWhole; i < nSamples; ++i) {
    pSamples[i] = static_cast<uint16_t>(GatherStream(pPacked, i * nBits, nReach, nSize) & nMask);
  }
}

/// None of them crosses a byte.
void UnpackNarrow(uint32_t nBits, const uint8_t *pPacked, std::size_t nSamples, uint8_t *pSamples)
{
  const uint32_t nMask = (1U << nBits) - 1;
  const uint32_t nScale = 255 / nMask;
  for (std::size_t i = 0; i < nSamples; ++i) {
    const std::size_t nBit = i * nBits;
    pSamples[i] = static_cast<uint8_t>((uint32_t{pPacked[nBit / 8]} >> (nBit % 8) & nMask) * nScale);
  }
}

} // namespace

const genapi::SPixelFormat *FindPackedFormat(uint32_t nCode)
{
  const genapi::SPixelFormat *pFormat = genapi::FindReceivedFormat(nCode);
  return pFormat != nullptr && pFormat->ePacking != genapi::EPacking::None ? pFormat : nullptr;
}

std::size_t GetPackedSize(const genapi::SPixelFormat &stFormat, std::size_t nSamples)
{
  return stFormat.ePacking == genapi::EPacking::Shared ? (nSamples * 3 + 1) / 2
                                                       : (nSamples * stFormat.nBitDepth + 7) / 8;
}

std::size_t GetUnpackedSize(const genapi::SPixelFormat &stFormat, std::size_t nSamples)
{
  return nSamples * (stFormat.nBitDepth < 8 ? 1 : 2);
}

void UnpackSamples(const genapi::SPixelFormat &stFormat, const uint8_t *pPacked, std::size_t nSamples, void *pSamples)
{
  if (stFormat.nBitDepth < 8) {
    UnpackNarrow(stFormat.nBitDepth, pPacked, nSamples, static_cast<uint8_t *>(pSamples));
  } else if (stFormat.ePacking == EPacking::Shared) {
    UnpackShared(stFormat.nBitDepth, pPacked, nSamples, static_cast<uint16_t *>(pSamples));
  } else {
    UnpackStream(stFormat.nBitDepth, pPacked, nSamples, static_cast<uint16_t *>(pSamples));
  }
}

} // namespace ffc::camera
