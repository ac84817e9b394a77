/// \file
/// What the columns and the lines of one tile have in common.
#pragma once

#include "reference/tile.h"

namespace ffc::reference {

/// Robust means (after Huber) of the fine detail along each column and each line of a tile: a mean in which what lies
/// far off counts no more than what lies a little off, so that dust does not draw a streak over the whole tile, and a
/// hot column is still found in full.
class CTileProfiles {
public:
  /// \param tile loaded; its spare image is used
  explicit CTileProfiles(const CTile &tile);

  /// Adds the means times the number of their samples.
  /// \param pColumns one per column of the tile
  /// \param pLines one per line of the tile
  void AddUp(float *pColumns, float *pLines) const;

private:
  void AddColumns(float *pColumns) const;
  void AddLines(float *pLines) const;

  const CTile &m_tile;
  float m_fReach = 0; ///< how far off counts in full, DN
};

} // namespace ffc::reference
