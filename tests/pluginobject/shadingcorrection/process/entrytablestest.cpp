#include <gtest/gtest.h>

#include "pluginobject/shadingcorrection/process/calcstatusmapping.h"
#include "pluginobject/shadingcorrection/process/entrytables.h"

namespace {

uint32_t ApplyTo(uint32_t nFrameCount, const std::string &strEntry)
{
  ApplyFrameCountEntry(strEntry, nFrameCount);
  return nFrameCount;
}

} // namespace

TEST(EntryTables, EachFrameCountEntryGivesItsCount)
{
  EXPECT_EQ(1U, ApplyTo(99, "FFCFrameCount_1"));
  EXPECT_EQ(2U, ApplyTo(99, "FFCFrameCount_2"));
  EXPECT_EQ(4U, ApplyTo(99, "FFCFrameCount_4"));
  EXPECT_EQ(8U, ApplyTo(99, "FFCFrameCount_8"));
  EXPECT_EQ(16U, ApplyTo(99, "FFCFrameCount_16"));
}

TEST(EntryTables, AnyOtherNameLeavesTheFrameCount)
{
  for (const char *pName : {"", "FFCFrameCount_", "FFCFrameCount_3", "FFCFrameCount_32", "FFCFrameCount_16 ",
                            "ffcframecount_1", "FFCFrameCount_01", "1"}) {
    EXPECT_EQ(7U, ApplyTo(7, pName)) << pName;
  }
}

TEST(EntryTables, EachColourFilterGivesItsBayerType)
{
  EXPECT_EQ(1, GetBayerType("BayerRG"));
  EXPECT_EQ(2, GetBayerType("BayerGB"));
  EXPECT_EQ(3, GetBayerType("BayerGR"));
  EXPECT_EQ(4, GetBayerType("BayerBG"));
}

TEST(EntryTables, AnyOtherColourFilterIsMono)
{
  for (const char *pName : {"", "None", "BayerRG8", "bayerrg", "Bayer", "BayerRGGB"}) {
    EXPECT_EQ(0, GetBayerType(pName)) << pName;
  }
}

TEST(CalcStatusMapping, EveryStatusOfTheComputationsHasAPluginCode)
{
  EXPECT_EQ(0, MapCalcStatus(0));
  EXPECT_EQ(-3, MapCalcStatus(-101));
  EXPECT_EQ(-3, MapCalcStatus(-102));
  EXPECT_EQ(-2, MapCalcStatus(-103));
  EXPECT_EQ(-1011, MapCalcStatus(-105));
  EXPECT_EQ(-3, MapCalcStatus(-106));
}

TEST(CalcStatusMapping, AnyOtherStatusIsAnUnknownError)
{
  for (const int32_t nStatus : {-100, -104, -107, -108, -1, -3, 1, 101, INT32_MIN, INT32_MAX}) {
    EXPECT_EQ(-1, MapCalcStatus(nStatus)) << nStatus;
  }
}
