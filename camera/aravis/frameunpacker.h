/// \file
/// Frames as a host passes them on: tight lines, samples of more than 8 bits in 16.
#pragma once

#include <cstddef>
#include <cstdint>

#include "genapi/pfnc.h"

namespace ffc::camera {

/// Mono and the four Bayer layouts, 10 and 12 bit, in both ways of packing; null for any other code.
const genapi::SPixelFormat *FindPackedFormat(uint32_t nCode);

/// Bytes of nSamples samples of a format that FindPackedFormat gives.
std::size_t GetPackedSize(const genapi::SPixelFormat &stFormat, std::size_t nSamples);

/// \param pPacked GetPackedSize(stFormat, nSamples) bytes
/// \param pSamples nSamples samples, right-aligned, in the byte order of the machine
void UnpackSamples(const genapi::SPixelFormat &stFormat, const uint8_t *pPacked, std::size_t nSamples,
                   uint16_t *pSamples);

} // namespace ffc::camera
