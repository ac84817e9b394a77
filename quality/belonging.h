/// \file
/// Whether coefficients were made with the camera that made the frames.
#pragma once

#include <cstdint>

#include "quality/framestack.h"

namespace ffc::quality {

enum class EBelonging {
  Yes,
  No,
  Unknown, ///< noise drowns the pattern of the frames: more of them are needed
};

struct SBelonging {
  EBelonging eBelonging = EBelonging::Unknown;
  double dCorrelation = 0; ///< of the pixels' own pattern in the frames and in the coefficients, -1 to 1
};

/// Compares how each pixel differs from its neighbours of the same colour, in which shading leaves no trace, with what
/// the gains expect.
/// \param stack bright frames as they came, right-aligned
/// \param pGains of a host-side table of the same size
SBelonging JudgeBelonging(const CFrameStack &stack, const uint16_t *pGains);

} // namespace ffc::quality
