#include <atomic>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/hostrig.h"

using namespace ffc::test;

namespace {

constexpr const char *FRAME_COUNT_ENTRIES[] = {"FFCFrameCount_1", "FFCFrameCount_2", "FFCFrameCount_4",
                                               "FFCFrameCount_8", "FFCFrameCount_16"};

} // namespace

TEST(HostBright, OfAColourCameraTakesSevenFramesMore)
{
  CHostRig rig("BayerGR8");
  rig.Camera().Enumeration("BalanceWhiteAuto").Access(GenApi::NI);
  for (const char *pEntry : FRAME_COUNT_ENTRIES) {
    rig.Process().SetFrameCount(pEntry);
    EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(static_cast<int>(rig.Process().GetCorrectionInfo().nFrameCount) + 7, rig.GetFrameCount()) << pEntry;
    EXPECT_EQ(rig.Process().WaitImageRequest(), 258U) << pEntry;
  }
}

TEST(HostBright, OfAColourCameraAveragesTheFramesAfterTheFirstSeven)
{
  CHostRig rig("BayerGR8");
  rig.Camera().Enumeration("BalanceWhiteAuto").Access(GenApi::NI);
  rig.Process().SetExpectGray(101);
  rig.Show([&rig](int nFrame) { return rig.Camera().MakeFrame(nFrame < 7 ? 255 : 101); });
  EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().GetImageMaxGray(), 101.0);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  std::vector<uint8_t> listCorrected;
  EXPECT_EQ(rig.Correct(rig.Camera().MakeFrame(73), listCorrected), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Camera().MakeFrame(73), listCorrected);
}

TEST(HostBright, OfAColourCameraIsStoppedAmongTheFirstSeven)
{
  CHostRig rig("BayerGR8");
  rig.Camera().Enumeration("BalanceWhiteAuto").Access(GenApi::NI);
  rig.Show([&rig](int nFrame) {
    rig.Process().SetStopFlag(nFrame == 5);
    return rig.Camera().MakeFrame(100);
  });
  EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_NEED_BAYER_FORMAT);
  EXPECT_EQ(rig.GetFrameCount(), 6);
}

TEST(HostBright, AFailedOneLeavesNoFrameBehind)
{
  CHostRig rig;
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  const FFCInfo stInfo = rig.Process().GetCorrectionInfo();
  rig.Show([&rig](int nFrame) {
    rig.Process().SetStopFlag(nFrame == 3);
    return rig.Camera().MakeFrame(100);
  });
  EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_NEED_BAYER_FORMAT);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(rig.Process().GetCorrectionInfo().nCoefficientsSize, stInfo.nCoefficientsSize);
  std::vector<uint8_t> listCorrected;
  EXPECT_EQ(rig.Correct(rig.Camera().MakeFrame(73), listCorrected),
            PLUGIN_STATUS_SUCCESS); // the coefficients stay in force
}

TEST(HostBright, KeepsTheDarkFrameOfTheSameSize)
{
  CHostRig rig;
  EXPECT_EQ(rig.AcquireDark(10), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.AcquireBright(120), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.GetTableBytesPerPixel(), 4U);
}
