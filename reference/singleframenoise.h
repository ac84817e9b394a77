/// \file
/// Noise of a frame that nothing can be compared with.
#pragma once

#include <cstdint>
#include <vector>

#include "reference/noisemodel.h"
#include "reference/planesource.h"
#include "reference/weightedreference.h"

namespace ffc::reference {

struct SSingleFrameNoise {
  SSampleNoise stNoise;
  ENoiseSource eSource = ENoiseSource::AllDetail; ///< PhotonTransfer, HalfDetail or AllDetail
};

/// Photon transfer within one frame: the variance of the finest detail, level by level, is that in the dark, plus a
/// part in proportion to the level (noise of the light), plus one in proportion to its square (pattern). The levels are
/// those of the shading and of the colours; where they lie too close together the two parts cannot be told apart. Then
/// all of it counts as noise, or half where it is less than the light's noise of any common sensor. Dust and defect
/// pixels do not count. May throw std::bad_alloc.
/// \param dDark variance in the dark, DN^2
SSingleFrameNoise MeasureSingleFrame(const std::vector<CPlaneSource> &listPlanes, double dDark, uint32_t nBitDepth);

/// Of one dark frame: the variance of its finest detail, less the part that bright frames share with it, which is the
/// pixels' own dark level. DN^2. May throw std::bad_alloc.
/// \param listBright averages of the bright frames with their dark level, plane by plane like the dark ones
double MeasureSingleDark(const std::vector<CPlaneSource> &listDark, const std::vector<CPlaneSource> &listBright);

} // namespace ffc::reference
