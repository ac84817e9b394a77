/// \file
/// Sums of a run of frames, in as few bytes as they need.
#pragma once

#include <cstdint>

namespace ffc::imagecalc {

/// One sum per pixel: of 16 bits as long as these hold it for certain, then of 32, which wrap round. How large a sum
/// can be is seen in the pixels, not in what a frame claims to be: 16 bits hold 16 frames of 12 bits, and 257 of 8.
/// Results and statuses are those of CImageCalc::AccumulateFrame and DivideFrame. Used by one thread at a time.
class CFrameSums {
public:
  /// \param pMemory nothing but zeros, 4 bytes for each pixel of the largest frame, kept by the caller as long as there
  ///   are sums in it. Its second half stays untouched while 16 bits are enough. Null: all operations fail
  explicit CFrameSums(void *pMemory = nullptr) : m_pMemory(pMemory) {}

  [[nodiscard]] int32_t Add(const void *pFrame, int32_t nBitDepth, int64_t nPixelCount);
  /// Writes the truncated averages. The sums may have 32 bits afterwards, but stay what they are.
  [[nodiscard]] int32_t Average(int32_t nFrameCount, int32_t nBitDepth, int64_t nPixelCount, void *pFrame);
  /// The sums, of 32 bits from now on. \return null without memory
  const uint32_t *GetWide() { return Widen(); }

private:
  bool AddNarrow(const void *pFrame, int32_t nBitDepth, int64_t nPixelCount);
  uint32_t *Widen();

  void *m_pMemory;
  bool m_bWide = false;
  int64_t m_nPixels = 0;        // of the largest frame that was added in 16 bits
  uint32_t m_nSumBound = 0;     // no sum is larger
  uint32_t m_nLatestPixels = 0; // all bits of the latest frame's
};

} // namespace ffc::imagecalc
