/// \file
/// The instruction levels whose kernels a test can run here.
#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/instructionlevel.h"

namespace ffc::test {

/// The levels that were built and that this processor has.
/// \param fnFind gives a level's table of kernels, or null
template <class TKernels>
std::vector<platform::EInstructionLevel> GetTestableLevels(const TKernels *(&fnFind)(platform::EInstructionLevel))
{
  std::vector<platform::EInstructionLevel> listLevels;
  for (int32_t nLevel = platform::INSTRUCTION_LEVEL_BASELINE; nLevel <= platform::DetectProcessorLevel(); ++nLevel) {
    const auto eLevel = static_cast<platform::EInstructionLevel>(nLevel);
    if (fnFind(eLevel) != nullptr) {
      listLevels.push_back(eLevel);
    }
  }
  return listLevels;
}

/// Names a test by its level.
inline std::string GetLevelTestName(const testing::TestParamInfo<platform::EInstructionLevel> &stInfo)
{
  return platform::GetInstructionLevelName(stInfo.param);
}

} // namespace ffc::test
