/// \file
/// The pixels around edges of a tile.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "reference/scales.h"

namespace ffc::reference {

/// Where samples along an edge can tell on which side of it they lie. One for each thread.
class CEdgePixels {
public:
  /// So near to the border of the image there are none.
  static constexpr uint32_t REACH = 9;
  /// Pixels side by side that make a run, at most.
  static constexpr std::size_t LONGEST_RUN = 64;
  /// A box with what is read around it stays in the nearest caches.
  static constexpr uint32_t BOX_SIDE = 64;
  /// Part of an image around edges beyond which they are a pattern, and no dust; one part of so many.
  static constexpr std::size_t LARGEST_PART = 2;

  /// All memory, for images whose sides are no longer than this. May throw std::bad_alloc; nothing else does.
  explicit CEdgePixels(uint32_t nLongestSide);

  /// What is an edge, 1 of a pixel that is and 0 of others; to be written before they are found.
  uint8_t *GetMarks() { return m_listMarks.data(); }
  /// Finds the pixels around edges of an image of this size.
  /// \return whether there are any, and not everywhere
  bool Find(uint32_t nWidth, uint32_t nHeight);

  /// Most that are found of the largest image.
  std::size_t GetMost() const { return m_listMarks.size() / LARGEST_PART; }

  /// Places in the image, line after line.
  const std::vector<uint32_t> &GetAll() const { return m_listPixels; }
  /// Calls fnUse(index of the first, count) for pixels side by side.
  template <class TFunction>
  void ForEachRun(const TFunction &fnUse) const
  {
    std::size_t nCount = 0;
    for (std::size_t nFirst = 0; nFirst < m_listPixels.size(); nFirst += nCount) {
      nCount = CountRun(nFirst);
      fnUse(nFirst, nCount);
    }
  }
  /// Calls fnUse(box) for boxes no larger than BOX_SIDE along each axis, in which together all pixels are.
  template <class TFunction>
  void ForEachBox(const TFunction &fnUse) const
  {
    for (const SBox &stBox : m_listBoxes) {
      if (stBox.nFirstColumn < stBox.nEndColumn) {
        fnUse(stBox);
      }
    }
  }

private:
  void SeeLine(uint32_t nLine);
  bool AddLine(uint32_t nLine);
  void Add(uint32_t nColumn, uint32_t nLine);
  std::size_t CountRun(std::size_t nFirst) const;

  uint32_t m_nWidth = 0;
  std::size_t m_nMost = 0;
  std::vector<uint8_t> m_listMarks;
  std::vector<uint32_t> m_listSeen; ///< of each column the line after its last edge; 0: none
  std::vector<uint32_t> m_listPixels;
  std::vector<SBox> m_listBoxes; ///< one in each cell of BOX_SIDE x BOX_SIDE; may be empty
};

} // namespace ffc::reference
