#include "platform/instructionlevel.h"

#include <cstring>

#include <gtest/gtest.h>

#include "platform/kernelchoice.h"

using ffc::platform::ChooseInstructionLevel;
using ffc::platform::ChooseKernels;
using ffc::platform::DetectProcessorLevel;
using ffc::platform::EInstructionLevel;
using ffc::platform::FindOfferedLevel;
using ffc::platform::GetInstructionLevel;
using ffc::platform::GetInstructionLevelName;
using ffc::platform::INSTRUCTION_LEVEL_BASELINE;
using ffc::platform::INSTRUCTION_LEVEL_COUNT;
using ffc::platform::INSTRUCTION_LEVEL_V2;
using ffc::platform::INSTRUCTION_LEVEL_V3;
using ffc::platform::INSTRUCTION_LEVEL_V4;

namespace {

constexpr EInstructionLevel LEVELS[] = {INSTRUCTION_LEVEL_BASELINE, INSTRUCTION_LEVEL_V2, INSTRUCTION_LEVEL_V3,
                                        INSTRUCTION_LEVEL_V4};

struct STable {
  EInstructionLevel eLevel;
};

// As built by a compiler that knows no v2.
const STable *FindTable(EInstructionLevel eLevel)
{
  static const STable BASELINE = {INSTRUCTION_LEVEL_BASELINE};
  static const STable V3 = {INSTRUCTION_LEVEL_V3};
  return eLevel == INSTRUCTION_LEVEL_BASELINE ? &BASELINE : eLevel == INSTRUCTION_LEVEL_V3 ? &V3 : nullptr;
}

} // namespace

TEST(InstructionLevel, AMissingFeatureLeavesTheLevelBelowTheFirstThatNeedsIt)
{
  for (int32_t nMissing = 0; nMissing < 16; ++nMissing) {
    const bool bV2 = (nMissing & 3) == 0;
    const bool bV3 = bV2 && (nMissing & 4) == 0;
    const bool bV4 = bV3 && (nMissing & 8) == 0;
    EXPECT_EQ(FindOfferedLevel({{INSTRUCTION_LEVEL_V4, (nMissing & 8) == 0},
                                {INSTRUCTION_LEVEL_V2, (nMissing & 1) == 0},
                                {INSTRUCTION_LEVEL_V3, (nMissing & 4) == 0},
                                {INSTRUCTION_LEVEL_V2, (nMissing & 2) == 0}}),
              bV4   ? INSTRUCTION_LEVEL_V4
              : bV3 ? INSTRUCTION_LEVEL_V3
              : bV2 ? INSTRUCTION_LEVEL_V2
                    : INSTRUCTION_LEVEL_BASELINE)
      << nMissing;
  }
}

TEST(InstructionLevel, AWishUpToTheProcessorsLevelIsGranted)
{
  for (const EInstructionLevel eOffered : LEVELS) {
    for (const EInstructionLevel eWish : LEVELS) {
      EXPECT_EQ(ChooseInstructionLevel(GetInstructionLevelName(eWish), eOffered), eWish < eOffered ? eWish : eOffered);
    }
  }
}

TEST(InstructionLevel, NoWishOrAnUnknownOneGetsTheProcessorsLevel)
{
  for (const EInstructionLevel eOffered : LEVELS) {
    for (const char *pName : {static_cast<const char *>(nullptr), "", "V2", "v22", "v5", "v", "base"}) {
      EXPECT_EQ(ChooseInstructionLevel(pName, eOffered), eOffered);
    }
  }
}

TEST(InstructionLevel, TheProcessorsLevelIsOneThatHasAName)
{
  const EInstructionLevel eLevel = DetectProcessorLevel();
  EXPECT_GE(eLevel, INSTRUCTION_LEVEL_BASELINE);
  ASSERT_LT(eLevel, INSTRUCTION_LEVEL_COUNT);
  EXPECT_GT(std::strlen(GetInstructionLevelName(eLevel)), 0U);
  EXPECT_LE(GetInstructionLevel(), eLevel);
}

TEST(KernelChoice, ALevelThatWasNotBuiltGivesTheNextLowerOne)
{
  EXPECT_EQ(ChooseKernels(FindTable, INSTRUCTION_LEVEL_BASELINE).eLevel, INSTRUCTION_LEVEL_BASELINE);
  EXPECT_EQ(ChooseKernels(FindTable, INSTRUCTION_LEVEL_V2).eLevel, INSTRUCTION_LEVEL_BASELINE);
  EXPECT_EQ(ChooseKernels(FindTable, INSTRUCTION_LEVEL_V3).eLevel, INSTRUCTION_LEVEL_V3);
  EXPECT_EQ(ChooseKernels(FindTable, INSTRUCTION_LEVEL_V4).eLevel, INSTRUCTION_LEVEL_V3);
}
