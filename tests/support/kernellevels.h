/// \file
/// The instruction levels whose kernels a test can run here.
#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/instructionlevel.h"

/// The levels that were built and that this processor has.
/// \param fnFind gives a level's table of kernels, or null
template <class TKernels>
std::vector<EInstructionLevel> GetTestableLevels(const TKernels *(&fnFind)(EInstructionLevel))
{
  std::vector<EInstructionLevel> listLevels;
  for (int32_t nLevel = INSTRUCTION_LEVEL_BASELINE; nLevel <= DetectProcessorLevel(); ++nLevel) {
    const auto eLevel = static_cast<EInstructionLevel>(nLevel);
    if (fnFind(eLevel) != nullptr) {
      listLevels.push_back(eLevel);
    }
  }
  return listLevels;
}

/// Names a test by its level.
inline std::string GetLevelTestName(const testing::TestParamInfo<EInstructionLevel> &info)
{
  return GetInstructionLevelName(info.param);
}
