/// \file
/// The buffers that all benchmarks of kernels work in.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

/// A frame size by its megapixels.
struct SFrameSize {
  const char *pName;
  int32_t nWidth;
  int32_t nHeight;

  std::size_t CountPixels() const { return static_cast<std::size_t>(nWidth) * static_cast<std::size_t>(nHeight); }
};

constexpr SFrameSize FRAME_SIZES[] = {{"0.3", 640, 480}, {"5", 2592, 1944}, {"26", 6240, 4160}, {"100", 11648, 8736}};
constexpr std::size_t LARGEST_PIXELS = std::size_t{11648} * 8736;

/// Buffers for frames of one bit depth, as large as the largest frame; smaller frames take their starts. All of it has
/// been written to once.
class CArena {
public:
  /// \param nBitDepth 8 to 16
  static CArena &ForDepth(int32_t nBitDepth);

  int32_t GetBitDepth() const { return m_nBitDepth; }
  std::size_t GetBytesPerPixel() const { return m_nBitDepth == 8 ? 1 : 2; }

  /// Grey values as of an evenly lit frame: a slope and noise, all within the depth.
  const void *Source() const { return m_listSource.data(); }
  /// Small grey values.
  const void *Dark() const { return m_listDark.data(); }
  void *Destination() { return m_listDestination.data(); }
  /// Gains around 1 and, LARGEST_PIXELS words later, small dark levels.
  const void *Table() const { return m_listTable.data(); }
  /// The sums of 16 frames.
  uint32_t *Sums() { return m_listSums.data(); }

private:
  explicit CArena(int32_t nBitDepth);

  int32_t m_nBitDepth;
  std::vector<uint8_t> m_listSource;
  std::vector<uint8_t> m_listDark;
  std::vector<uint8_t> m_listDestination;
  std::vector<uint16_t> m_listTable;
  std::vector<uint32_t> m_listSums;
};
