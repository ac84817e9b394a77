/// \file
/// Frames as a host passes them on: tight lines, samples of more than 8 bits in 16.
#pragma once

#include <cstddef>
#include <cstdint>

#include "genapi/pfnc.h"

namespace ffc::camera {

/// Every mono and Bayer format whose samples are not in whole bytes; null for any other code.
const genapi::SPixelFormat *FindPackedFormat(uint32_t nCode);

/// Bytes of nSamples samples of a format that FindPackedFormat gives.
std::size_t GetPackedSize(const genapi::SPixelFormat &stFormat, std::size_t nSamples);

/// Bytes of the same samples unpacked: 16 bits each, or 8 for those of less than 8.
std::size_t GetUnpackedSize(const genapi::SPixelFormat &stFormat, std::size_t nSamples);

/// \param pPacked GetPackedSize(stFormat, nSamples) bytes
/// \param pSamples GetUnpackedSize(stFormat, nSamples) bytes, aligned for 16 bits: right-aligned in the byte order of
/// the machine, but samples of less than 8 bits spread over 0 to 255
void UnpackSamples(const genapi::SPixelFormat &stFormat, const uint8_t *pPacked, std::size_t nSamples, void *pSamples);

} // namespace ffc::camera
