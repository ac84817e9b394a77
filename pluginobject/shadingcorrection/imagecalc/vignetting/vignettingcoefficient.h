/// \file
/// Vignetting gain tables in one call, by the calculator that belongs to a Bayer type.
///
/// Sides are those of a camera, which may name any number; one that is negative or beyond 32 bits is a bad
/// argument. None throws.
#pragma once

#include <cstdint>

/// The size of a gain table.
/// \param nBayerType one of BAYER_TYPE_*
/// \param pnSize out: bytes
/// \return -101 for a missing output; -105 for a Bayer type outside 0 to 4; -101 for an odd image side, a block
///         larger than the image, a block side below 2 or that is no power of two, or a size beyond 63 bits
[[nodiscard]] int32_t GetVignettingCoefficientSize(int32_t nBayerType, int64_t nWidth, int64_t nHeight,
                                                   int64_t nBlockWidth, int64_t nBlockHeight, int64_t *pnSize) noexcept;

/// Computes a gain table, in which a gain of 256 stands for 1 and none exceeds 7 times that.
/// \param pImage nWidth x nHeight pixels, tightly packed: bytes for 8 bits, aligned 16-bit words for 10 and 12
/// \param nExpectedSize bytes of the table, which must be what GetVignettingCoefficientSize gives
/// \param pBuffer nExpectedSize bytes, written on success only; see IVignettingCorrection for the layout
/// \return -101 for a missing buffer; -105 for a Bayer type outside 0 to 4; else as the calculator, and -101
///         for another expected size
[[nodiscard]] int32_t CalcVignettingCoefficient(const void *pImage, int32_t nBitDepth, int32_t nBayerType,
                                                int64_t nWidth, int64_t nHeight, int64_t nBlockWidth,
                                                int64_t nBlockHeight, int64_t nExpectedSize, void *pBuffer) noexcept;
