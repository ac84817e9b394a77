#include <gtest/gtest.h>

#include "pluginobject/shadingcorrection/process/coefficients/entrytables.h"

using namespace ffc::process;

namespace {

uint32_t ApplyTo(uint32_t nFrameCount, const std::string &strEntry)
{
  ApplyFrameCountEntry(strEntry, nFrameCount);
  return nFrameCount;
}

SCorrectionBlock ApplyFlatFieldTo(SCorrectionBlock stBlock, const std::string &strEntry)
{
  ApplyFlatFieldBlockEntry(strEntry, stBlock);
  return stBlock;
}

SCorrectionBlock ApplyVignettingTo(SCorrectionBlock stBlock, const std::string &strEntry)
{
  ApplyVignettingBlockEntry(strEntry, stBlock);
  return stBlock;
}

void ExpectBlock(int64_t nSide, uint32_t nCode, const SCorrectionBlock &stBlock)
{
  EXPECT_EQ(nSide, stBlock.nWidth);
  EXPECT_EQ(nSide, stBlock.nHeight);
  EXPECT_EQ(nCode, stBlock.nCode);
}

} // namespace

TEST(EntryTables, EachFrameCountEntryGivesItsCount)
{
  EXPECT_EQ(ApplyTo(99, "FFCFrameCount_1"), 1U);
  EXPECT_EQ(ApplyTo(99, "FFCFrameCount_2"), 2U);
  EXPECT_EQ(ApplyTo(99, "FFCFrameCount_4"), 4U);
  EXPECT_EQ(ApplyTo(99, "FFCFrameCount_8"), 8U);
  EXPECT_EQ(ApplyTo(99, "FFCFrameCount_16"), 16U);
}

TEST(EntryTables, OnlyTheCountsOfEntriesAndNoneArePossible)
{
  for (const uint32_t nFrameCount : {0U, 1U, 2U, 4U, 8U, 16U}) {
    EXPECT_EQ(GetPossibleFrameCount(nFrameCount), nFrameCount);
  }
  for (const uint32_t nFrameCount : {3U, 5U, 15U, 17U, 32U, 0x80000000U, 0xFFFFFFFFU}) {
    EXPECT_EQ(GetPossibleFrameCount(nFrameCount), 1U);
  }
}

TEST(EntryTables, AnyOtherNameLeavesTheFrameCount)
{
  for (const char *pName : {"", "FFCFrameCount_", "FFCFrameCount_3", "FFCFrameCount_32", "FFCFrameCount_16 ",
                            "ffcframecount_1", "FFCFrameCount_01", "1"}) {
    EXPECT_EQ(ApplyTo(7, pName), 7U) << pName;
  }
}

TEST(EntryTables, EachFlatFieldBlockGivesItsSidesAndCode)
{
  ExpectBlock(32, 0, ApplyFlatFieldTo({}, "BlockSize_1024"));
  ExpectBlock(16, 1, ApplyFlatFieldTo({}, "BlockSize_256"));
  ExpectBlock(32, 0, ApplyFlatFieldTo({16, 16, 1}, "BlockSize_1024"));
}

TEST(EntryTables, EachVignettingBlockGivesItsSidesAndCode)
{
  ExpectBlock(128, 3, ApplyVignettingTo({}, "BlockSize_16384"));
  ExpectBlock(64, 2, ApplyVignettingTo({}, "BlockSize_4096"));
}

TEST(EntryTables, AnyOtherNameLeavesTheBlock)
{
  for (const char *pName : {"", "BlockSize_", "BlockSize_64", "BlockSize_102", "BlockSize_10240", "blocksize_256"}) {
    ExpectBlock(24, 9, ApplyFlatFieldTo({24, 24, 9}, pName));
    ExpectBlock(24, 9, ApplyVignettingTo({24, 24, 9}, pName));
  }
  // Each kind of camera has blocks of its own.
  ExpectBlock(24, 9, ApplyFlatFieldTo({24, 24, 9}, "BlockSize_4096"));
  ExpectBlock(24, 9, ApplyVignettingTo({24, 24, 9}, "BlockSize_1024"));
}
