/// \file
/// How much of the processor's instruction set code may use.
#pragma once

#include <cstdint>
#include <initializer_list>

namespace ffc::platform {

/// The levels of the x86-64 psABI, each including those before it. Processors of other kinds have the baseline
/// alone, whatever theirs is.
enum EInstructionLevel : int32_t {
  INSTRUCTION_LEVEL_BASELINE, ///< what the compiler uses unasked
  INSTRUCTION_LEVEL_V2,       ///< x86-64-v2: to SSE4.2
  INSTRUCTION_LEVEL_V3,       ///< x86-64-v3: AVX2, BMI, FMA
  INSTRUCTION_LEVEL_V4,       ///< x86-64-v4: AVX-512 F, BW, CD, DQ, VL
  INSTRUCTION_LEVEL_COUNT,
};

struct SProcessorFeature {
  EInstructionLevel eLevel; ///< the lowest that needs it
  bool bThere;
};

/// The highest level that needs none of the features that are missing.
EInstructionLevel FindOfferedLevel(std::initializer_list<SProcessorFeature> listFeatures) noexcept;

/// What processor and operating system offer.
EInstructionLevel DetectProcessorLevel() noexcept;

/// The level to use.
/// \param pName what the user asks for: "baseline", "v2", "v3" or "v4"; null or anything else for no wish
/// \param eOffered of the processor; a higher wish counts as this
EInstructionLevel ChooseInstructionLevel(const char *pName, EInstructionLevel eOffered) noexcept;

/// The processor's level, or the one that the environment variable FFC_INSTRUCTION_LEVEL asks for. Reads it anew
/// with each call, so that whoever uses the answer keeps it.
EInstructionLevel GetInstructionLevel() noexcept;

/// The name of a level, as in the environment variable.
const char *GetInstructionLevelName(EInstructionLevel eLevel) noexcept;

} // namespace ffc::platform
