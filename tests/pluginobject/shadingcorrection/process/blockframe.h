/// \file
/// Frames whose block means are known.
#pragma once

#include <cstdint>
#include <vector>

namespace ffc::test {

/// An 8-bit frame of 64 x 64 pixels, 2 x 2 blocks of 32 x 32: the first block has the mean
/// nGray + nHigher / 1024, the others nGray.
inline std::vector<uint8_t> MakeUnevenFrame(uint8_t nGray, int nHigher)
{
  std::vector<uint8_t> listFrame(64 * 64, nGray);
  for (std::size_t y = 0; y < 32; ++y) {
    for (std::size_t x = 0; x < 32; ++x) {
      const int nPixel = static_cast<int>(y * 32 + x);
      const int nMore = nHigher / 1024 + (nPixel < nHigher % 1024 ? 1 : 0);
      listFrame[y * 64 + x] = static_cast<uint8_t>(nGray + nMore);
    }
  }
  return listFrame;
}

/// The same with every block alike.
inline std::vector<uint8_t> MakeEvenFrame(uint8_t nGray, int nHigher)
{
  std::vector<uint8_t> listFrame = MakeUnevenFrame(nGray, nHigher);
  for (std::size_t y = 0; y < 64; ++y) {
    for (std::size_t x = 0; x < 64; ++x) {
      listFrame[y * 64 + x] = listFrame[y % 32 * 64 + x % 32];
    }
  }
  return listFrame;
}

} // namespace ffc::test
