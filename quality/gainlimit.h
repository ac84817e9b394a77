/// \file
/// Pixels that a correction could not bring to their target.
#pragma once

#include <cstdint>

#include "quality/framestack.h"

namespace ffc::quality {

/// The image library's gains end just below 16; from here on a pixel counts as held at that limit.
constexpr double GAIN_LIMIT = 15.9;

/// Counts pixels whose mean was raised by GAIN_LIMIT times or more, and those without any signal: they are brighter
/// than before, but not as bright as their neighbours. Stacks of the same size, with frames.
/// \param stRaw, stCorrected bright frames of the same exposures
/// \param stDark raw dark frames
/// \return 0 when the sizes differ or a stack is empty
uint64_t CountPixelsAtGainLimit(const CFrameStack &stRaw, const CFrameStack &stDark, const CFrameStack &stCorrected);

} // namespace ffc::quality
