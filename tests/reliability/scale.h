/// \file
/// How long the reliability tests run.
#pragma once

#include <cstdint>

/// Whether FFC_SOAK is set: every combination instead of a part of them, and millions of frames.
bool IsSoak();

/// Every how many-th failure of a sweep is tried: all of them but in a short run on a slow build.
uint64_t GetStride();

/// FFC_SEED, or a fixed number. Printed, so that a run can be had again.
uint32_t GetSeed();
