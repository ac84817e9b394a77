#include "pluginobject/pixelformat.h"

#include <limits>

#include "genapi/pfnc.h"

using ffc::genapi::EPacking;
using ffc::genapi::FindPixelFormat;
using ffc::genapi::SPixelFormat;

namespace {

// Unpacked by the host as the other packed formats are, but its depth is taken for unknown.
constexpr uint32_t MONO_14_PACKED = ffc::genapi::GetPixelFormatCode("Mono14p");

} // namespace

int32_t GetPixelFormatBitDepth(uint32_t nPixelFormat)
{
  const SPixelFormat *pFormat = FindPixelFormat(nPixelFormat);
  return pFormat == nullptr || nPixelFormat == MONO_14_PACKED ? -1 : static_cast<int32_t>(pFormat->nBitDepth);
}

int64_t GetUnpackedPayloadSize(uint32_t nPixelFormat, int64_t nWidth, int64_t nHeight)
{
  constexpr int64_t LARGEST = std::numeric_limits<int64_t>::max();
  constexpr int64_t BYTES_PER_SAMPLE = 2;
  const SPixelFormat *pFormat = FindPixelFormat(nPixelFormat);
  if (pFormat == nullptr || pFormat->ePacking == EPacking::None || nWidth <= 0 || nHeight <= 0 ||
      nWidth > LARGEST / BYTES_PER_SAMPLE / nHeight) {
    return 0;
  }
  return nWidth * nHeight * BYTES_PER_SAMPLE;
}
