/// \file
/// The image library's arithmetic once more, one pixel at a time in exact integer fractions.
#pragma once

#include <cstdint>

/// Gain in 1/4096.
int64_t GetReferenceGain(int64_t nBright, int64_t nDark, int64_t nTarget, int nBitDepth);

/// Corrected value.
/// \param nLevel dark level shifted left to 16 bits
int64_t GetReferencePixel(int64_t nSource, int64_t nLevel, int64_t nGain, int nBitDepth);
