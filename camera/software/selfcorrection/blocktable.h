/// \file
/// A coefficient table as numbers.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "camera/software/selfcorrection/blocklayout.h"
#include "genapi/sensorformat.h"

namespace ffc::camera {

/// One number for each point of a block grid, row by row, ring included.
using GridPlane = std::vector<double>;

struct SBlockTable {
  GridPlane listDark;                                     ///< in values of an 8-bit frame
  std::array<GridPlane, genapi::COLOR_COUNT> alistGain{}; ///< by EColor; 1.0 leaves a pixel as it is
};

/// Reads the table that a register starts with.
///
/// Flat field: elements of four 16-bit words, little-endian, row by row: dark level, gain of blue, green
/// and red in 1/256. Vignetting: gains in 1/256 in groups of 2 x 2 points, groups row by row, points of a
/// group row by row; red, green and blue of a point, or one gain for mono; what an odd grid lacks in its
/// last groups is there and means nothing.
/// \param stLayout has a table
/// \param listRegister of GetRegisterSize() bytes
SBlockTable ReadBlockTable(const SBlockLayout &stLayout, const std::vector<uint8_t> &listRegister);

} // namespace ffc::camera
