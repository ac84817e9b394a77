/// \file
/// How long an operation waits for one frame.
#pragma once

#include <cstdint>

/// Milliseconds to wait for a frame: exposure / 1000 + 1000, in single precision, truncated.
/// \param fExposureTime microseconds
/// \return 0 for a result below 0 or not a number; at most 0xFFFFFFFE, since all ones would wait for ever
uint32_t GetFrameTimeout(float fExposureTime);
