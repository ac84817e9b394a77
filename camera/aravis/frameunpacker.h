/// \file
/// Frames as a host passes them on: tight lines, samples of more than 8 bits in 16.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

/// A pixel format whose samples lie across byte borders.
struct SPackedFormat {
  /// How two samples of 12 (10) bits share three bytes, or four of 10 bits five.
  enum class ELayout {
    Shared, ///< GigE Vision: high byte, then the low bits of both, then the other high byte
    Stream, ///< PFNC "p": one stream of bits, least significant first
  };

  uint32_t nCode = 0;         ///< PFNC code, packed
  uint32_t nUnpackedCode = 0; ///< of the format that the samples have in 16 bits each
  uint32_t nBits = 0;         ///< 10 or 12
  ELayout eLayout = ELayout::Shared;

  /// Bytes of nSamples samples.
  std::size_t GetPackedSize(std::size_t nSamples) const;
};

/// Mono and the four Bayer layouts, 10 and 12 bit, in both layouts; null for any other code.
const SPackedFormat *FindPackedFormat(uint32_t nCode);

/// \param pPacked stFormat.GetPackedSize(nSamples) bytes
/// \param pSamples nSamples samples, right-aligned, in the byte order of the machine
void UnpackSamples(const SPackedFormat &stFormat, const uint8_t *pPacked, std::size_t nSamples, uint16_t *pSamples);
