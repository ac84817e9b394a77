/// \file
/// Sums over a stack of frames of one scene, without keeping the frames.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "quality/colorplane.h"
#include "quality/highpass.h"

namespace ffc::quality {

/// What the uniformity figures need of L frames: the sum of every pixel, and sums of squares.
///
/// All sums are whole numbers, so nothing is lost to rounding. Needs 4 bytes per pixel, however many the
/// frames. Squares of filtered samples, which are no whole numbers, are summed in double precision. Used by one thread
/// at a time.
class CFrameStack {
public:
  /// Empties the stack for frames of this size.
  /// \param nBitDepth 8 to 16; frames of 8 bits have one byte per sample, deeper ones two, right-aligned
  /// \return false when the size or the depth is none, or memory is short; the stack is then empty
  bool Prepare(uint32_t nWidth, uint32_t nHeight, uint32_t nBitDepth);

  /// Has each frame filtered as well, as the figures after the high-pass need it. Before the first frame.
  void AlsoFilter(genapi::EColorLayout eLayout, EHighPass eHighPass = EHighPass::Release4);

  /// Has the squares of each pixel summed as well, in 8 bytes more per pixel. Before the first frame.
  /// \return false when memory is short
  bool AlsoKeepSquares();
  bool KeepsSquares() const { return !m_listPixelSquares.empty(); }

  /// Adds one frame of tightly packed lines.
  /// \return false for a buffer of another size, or beyond 256 frames, when sums could overflow; nothing is added then
  bool Add(const void *pFrame, std::size_t nSize);

  uint32_t GetWidth() const { return m_nWidth; }
  uint32_t GetHeight() const { return m_nHeight; }
  uint32_t GetBitDepth() const { return m_nBitDepth; }
  /// Highest value of a sample of this depth.
  uint32_t GetMaximum() const { return (1U << m_nBitDepth) - 1U; }
  /// Bytes of one frame.
  std::size_t GetFrameSize() const;
  /// L, the frames added so far.
  uint32_t GetFrameCount() const { return m_nFrames; }

  /// Sums of one line, a value per column.
  const uint32_t *GetSums(uint32_t nLine) const;
  /// Mean of one pixel over the frames, in DN. Only when frames were added.
  double GetMean(uint32_t nColumn, uint32_t nLine) const;
  /// Variance of one pixel over the frames, DN^2; 0 for a single one. Only where squares are kept.
  double GetVariance(uint32_t nColumn, uint32_t nLine) const;
  /// Means of one line of a channel over the frames, in DN. Only when frames were added.
  void ReadMeans(const SChannel &stChannel, uint32_t nLine, double *pLine) const;
  /// The channels that are filtered; empty where none are.
  const std::vector<SChannel> &GetFilteredChannels() const { return m_listChannels; }
  EHighPass GetHighPass() const { return m_eHighPass; }
  /// Sum of the squares of all filtered samples of a channel, over all frames, DN^2.
  double GetFilteredSquareSum(std::size_t nChannel) const { return m_listFilteredSquares[nChannel]; }
  /// Sum of the squares of all samples of a plane in one line, over all frames.
  uint64_t GetSquareSum(const SColorPlane &stPlane, uint32_t nLine) const;
  /// Samples of a plane, over all frames, that lay at the depth's maximum.
  uint64_t GetClippedCount(const SColorPlane &stPlane) const;

private:
  template <class TSample>
  void AddSamples(const TSample *pSamples);
  template <class TSample>
  void AddFiltered(const TSample *pSamples);

  uint32_t m_nWidth = 0;
  uint32_t m_nHeight = 0;
  uint32_t m_nBitDepth = 8;
  uint32_t m_nFrames = 0;
  std::vector<uint32_t> m_listSums;
  std::vector<std::array<uint64_t, 2>> m_listSquareSums; ///< per line, even and odd columns
  std::array<uint64_t, CELL_SITES> m_anClipped{};
  std::vector<SChannel> m_listChannels;
  EHighPass m_eHighPass = EHighPass::Release4;
  std::vector<double> m_listFilteredSquares; ///< per channel
  std::vector<uint64_t> m_listPixelSquares;
};

} // namespace ffc::quality
