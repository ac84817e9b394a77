#include "pluginobject/pixelformat.h"

#include <cstddef>
#include <limits>

namespace {

// A run of consecutive codes.
struct SCodeRange {
  uint32_t nFirst;
  uint32_t nLast;
  int32_t nBitDepth;
};

constexpr SCodeRange MONO_AND_COLOUR_DEPTHS[] = {
  {0x01080001, 0x01080002, 8},  {0x010800C9, 0x010800C9, 8},  {0x010800CD, 0x010800CD, 8},
  {0x010800D1, 0x010800D1, 8},  {0x02180014, 0x02180015, 8},  {0x010A0046, 0x010A0046, 10},
  {0x010C0004, 0x010C0004, 10}, {0x01100003, 0x01100003, 10}, {0x010C0006, 0x010C0006, 12},
  {0x010C0047, 0x010C0047, 12}, {0x01100005, 0x01100005, 12}, {0x01100025, 0x01100025, 14},
  {0x01100007, 0x01100007, 16},
};

constexpr SCodeRange BAYER_DEPTHS[] = {
  {0x01080008, 0x0108000B, 8},  {0x010A0052, 0x010A0052, 10}, {0x010A0054, 0x010A0054, 10},
  {0x010A0056, 0x010A0056, 10}, {0x010A0058, 0x010A0058, 10}, {0x010C0026, 0x010C0029, 10},
  {0x0110000C, 0x0110000F, 10}, {0x010C002A, 0x010C002D, 12}, {0x010C0053, 0x010C0053, 12},
  {0x010C0055, 0x010C0055, 12}, {0x010C0057, 0x010C0057, 12}, {0x010C0059, 0x010C0059, 12},
  {0x01100010, 0x01100013, 12}, {0x010E0105, 0x010E0108, 14}, {0x01100109, 0x0110010C, 14},
  {0x0110002E, 0x01100031, 16},
};

// Packed formats. 0x010E0104 is packed although no bit depth is known for it.
constexpr SCodeRange PACKED[] = {
  {0x010A0046, 0x010A0046, 0}, {0x010A0052, 0x010A0052, 0}, {0x010A0054, 0x010A0054, 0}, {0x010A0056, 0x010A0056, 0},
  {0x010A0058, 0x010A0058, 0}, {0x010C0004, 0x010C0004, 0}, {0x010C0006, 0x010C0006, 0}, {0x010C0026, 0x010C002D, 0},
  {0x010C0047, 0x010C0047, 0}, {0x010C0053, 0x010C0053, 0}, {0x010C0055, 0x010C0055, 0}, {0x010C0057, 0x010C0057, 0},
  {0x010C0059, 0x010C0059, 0}, {0x010E0104, 0x010E0108, 0},
};

template <std::size_t N>
const SCodeRange *FindRange(const SCodeRange (&listRanges)[N], uint32_t nPixelFormat)
{
  for (const SCodeRange &stRange : listRanges) {
    if (nPixelFormat >= stRange.nFirst && nPixelFormat <= stRange.nLast) {
      return &stRange;
    }
  }
  return nullptr;
}

} // namespace

int32_t GetPixelFormatBitDepth(uint32_t nPixelFormat)
{
  if (const SCodeRange *pRange = FindRange(MONO_AND_COLOUR_DEPTHS, nPixelFormat)) {
    return pRange->nBitDepth;
  }
  const SCodeRange *pRange = FindRange(BAYER_DEPTHS, nPixelFormat);
  return pRange == nullptr ? -1 : pRange->nBitDepth;
}

int64_t GetUnpackedPayloadSize(uint32_t nPixelFormat, int64_t nWidth, int64_t nHeight)
{
  constexpr int64_t LARGEST = std::numeric_limits<int64_t>::max();
  constexpr int64_t BYTES_PER_SAMPLE = 2;
  if (FindRange(PACKED, nPixelFormat) == nullptr || nWidth <= 0 || nHeight <= 0 ||
      nWidth > LARGEST / BYTES_PER_SAMPLE / nHeight) {
    return 0;
  }
  return nWidth * nHeight * BYTES_PER_SAMPLE;
}

bool IsBayerPixelFormat(uint32_t nPixelFormat)
{
  return FindRange(BAYER_DEPTHS, nPixelFormat) != nullptr;
}
