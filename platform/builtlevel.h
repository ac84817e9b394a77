/// \file
/// The instruction level that the including file is compiled for, as the compiler itself says.
///
/// For sources that are compiled once per level: has no function, as nothing in them may be merged across levels.
#pragma once

#include "platform/instructionlevel.h"

#if defined(__AVX512BW__) && defined(__AVX512VL__)
#define FFC_BUILT_LEVEL ffc::platform::INSTRUCTION_LEVEL_V4
#elif defined(__AVX2__)
#define FFC_BUILT_LEVEL ffc::platform::INSTRUCTION_LEVEL_V3
#elif defined(__SSE4_2__)
#define FFC_BUILT_LEVEL ffc::platform::INSTRUCTION_LEVEL_V2
#else
#define FFC_BUILT_LEVEL ffc::platform::INSTRUCTION_LEVEL_BASELINE
#endif
