/// \file
/// Means over the blocks of an image.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "quality/framestack.h"

namespace ffc::quality {

/// Side of a block in pixels.
constexpr uint32_t BLOCK_SIDE = 32;

/// Means of the whole blocks, in DN, line by line.
struct SBlockMeans {
  uint32_t nColumns = 0;
  uint32_t nLines = 0;
  std::vector<double> listMeans;

  double At(uint32_t nColumn, uint32_t nLine) const
  {
    return listMeans[static_cast<std::size_t>(nLine) * nColumns + nColumn];
  }
};

/// Blocks that would hang over the right or lower edge are left out; an image smaller than a block is one
/// block. Only for a stack with frames.
SBlockMeans GetBlockMeans(const CFrameStack &stStack, const SColorPlane &stPlane);

} // namespace ffc::quality
