/// \file
/// What the system needs to know of pixel formats, by PFNC code.
#pragma once

#include <cstdint>

/// Significant bits per sample: 8, 10, 12, 14 or 16; -1 for a format that is not known.
[[nodiscard]] int32_t GetPixelFormatBitDepth(uint32_t nPixelFormat);

/// Bytes of a frame whose packed samples the host delivers unpacked to 16 bits: width x height x 2.
/// \return 0 for every format that is not packed, and for a size that is negative or beyond 63 bits
[[nodiscard]] int64_t GetUnpackedPayloadSize(uint32_t nPixelFormat, int64_t nWidth, int64_t nHeight);
