#include "platform/instructionlevel.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace ffc::platform {

namespace {

constexpr const char *LEVEL_NAMES[] = {"baseline", "v2", "v3", "v4"};
static_assert(sizeof LEVEL_NAMES / sizeof LEVEL_NAMES[0] == INSTRUCTION_LEVEL_COUNT);

} // namespace

EInstructionLevel FindOfferedLevel(std::initializer_list<SProcessorFeature> listFeatures) noexcept
{
  int32_t nLevel = INSTRUCTION_LEVEL_COUNT - 1;
  for (const SProcessorFeature &stFeature : listFeatures) {
    if (!stFeature.bThere) {
      nLevel = std::min(nLevel, stFeature.eLevel - 1);
    }
  }
  return static_cast<EInstructionLevel>(nLevel);
}

EInstructionLevel ChooseInstructionLevel(const char *pName, EInstructionLevel eOffered) noexcept
{
  for (int32_t nLevel = INSTRUCTION_LEVEL_BASELINE; pName != nullptr && nLevel < eOffered; ++nLevel) {
    if (std::strcmp(pName, LEVEL_NAMES[nLevel]) == 0) {
      return static_cast<EInstructionLevel>(nLevel);
    }
  }
  return eOffered;
}

EInstructionLevel GetInstructionLevel() noexcept
{
  return ChooseInstructionLevel(std::getenv("FFC_INSTRUCTION_LEVEL"), DetectProcessorLevel());
}

const char *GetInstructionLevelName(EInstructionLevel eLevel) noexcept
{
  return LEVEL_NAMES[eLevel];
}

} // namespace ffc::platform
