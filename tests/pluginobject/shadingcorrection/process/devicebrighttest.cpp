#include <atomic>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/blockframe.h"
#include "tests/pluginobject/shadingcorrection/process/processkinds.h"

using namespace ffc::test;
using ffc::genapi::SNodeAccess;

namespace {

// What the gain of every element is for a signal: all of a uniform frame are alike.
uint16_t GetGain(CDeviceRig &rig)
{
  const std::vector<uint8_t> listBytes = rig.Camera().Correction().GetWritten();
  return static_cast<uint16_t>(listBytes.at(2) + 256 * listBytes.at(3));
}

} // namespace

TEST(DeviceBright, SixteenFramesOfFullScaleAverageToFullScale)
{
  CDeviceRig rig;
  SetFrameCount(rig, 16);
  EXPECT_EQ(rig.AcquireBright(255), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(GetGain(rig), 256);
}

TEST(DeviceBright, ComesFromTheFreeRunningStream)
{
  CDeviceRig rig;
  rig.Camera().Enumeration("TriggerMode").Select("On"); // the user's; the factory set has it off
  EXPECT_EQ(rig.AcquireBright(120), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Camera().Enumeration("TriggerMode").PeekSymbolic(), "On");
}

TEST(DeviceBright, ThatCannotBeAnalysedTakesAllItsFramesAndFailsThen)
{
  CDeviceRig rig("Mono8", 66, 65); // a frame with an odd side has no blocks
  SetFrameCount(rig, 4);
  rig.ShowGray(120);
  EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(rig.GetFrameCount(), 4);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM);
}

TEST(DeviceBright, ThatIsLostAfterAFailedAnalysisTimesOut)
{
  CDeviceRig rig("Mono8", 66, 65);
  SetFrameCount(rig, 2);
  rig.Show([](int nFrame) { return std::vector<uint8_t>(nFrame == 0 ? 66 * 65 : 0, 120); });
  EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_BUFFER_TIMEOUT);
}

TEST(DeviceBright, AFailedOneLeavesNoFrameBehindAndTheCoefficientsInForce)
{
  CDeviceRig rig;
  EXPECT_EQ(rig.Correct(10, 120), PLUGIN_STATUS_SUCCESS);
  const FFCInfo stInfo = rig.Process().GetCorrectionInfo();
  const std::vector<uint8_t> listCoefficients = rig.Camera().Correction().GetWritten();
  rig.ShowNothing();
  EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_BUFFER_TIMEOUT);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(rig.Process().GetCorrectionInfo().nCoefficientsSize, stInfo.nCoefficientsSize);
  EXPECT_EQ(rig.Camera().Correction().GetWritten(), listCoefficients);
}

TEST(DeviceBright, KeepsTheDarkFrame)
{
  CDeviceRig rig;
  EXPECT_EQ(rig.AcquireDark(10), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.AcquireBright(120), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.AcquireBright(140), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  EXPECT_TRUE(rig.IsDarkInForce());
  EXPECT_EQ(GetGain(rig), 65280 / 130);
}

TEST(DeviceBright, AShortFrameLeavesWhatTheOneBeforeItBrought)
{
  CDeviceRig rig;
  SetFrameCount(rig, 2);
  rig.Show([](int nFrame) { return std::vector<uint8_t>(nFrame == 0 ? 64 * 64 : 0x10, nFrame == 0 ? 100 : 200); });
  EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  const std::vector<uint8_t> listBytes = rig.Camera().Correction().GetWritten();
  const std::size_t nLastElement = listBytes.size() - 24 - 8;
  EXPECT_EQ(listBytes[nLastElement + 2] + 256 * listBytes[nLastElement + 3], 65280 / 100);
}
