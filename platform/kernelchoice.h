/// \file
/// Choosing among tables of functions that were compiled once per instruction level.
#pragma once

#include <cstdint>

#include "platform/instructionlevel.h"

namespace ffc::platform {

/// The table of the highest level that was built, from eLevel downwards.
/// \param fnFind gives a level's table, null for a level that was not built; there always is a baseline
template <class TKernels>
const TKernels &ChooseKernels(const TKernels *(&fnFind)(EInstructionLevel), EInstructionLevel eLevel) noexcept
{
  int32_t nLevel = eLevel;
  while (nLevel > INSTRUCTION_LEVEL_BASELINE && fnFind(static_cast<EInstructionLevel>(nLevel)) == nullptr) {
    --nLevel;
  }
  return *fnFind(static_cast<EInstructionLevel>(nLevel));
}

} // namespace ffc::platform
