#include <cmath>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/blockframe.h"
#include "tests/pluginobject/shadingcorrection/process/processkinds.h"

using namespace ffc::test;
using ffc::genapi::SNodeAccess;

namespace {

bool IsFrameUsed(const std::vector<uint8_t> &listDark)
{
  CDeviceRig rig;
  return IsDarkUsed<SDevice>(rig, [&listDark](int) { return listDark; });
}

// Whether a dark frame counts with this black level in the user's and in the factory set.
bool IsBlackLevelDefault(double dUser, double dDefault)
{
  CDeviceRig rig;
  rig.Camera().Float("BlackLevel").Poke(dDefault);
  rig.Camera().SaveAsDefault();
  rig.Camera().Float("BlackLevel").Poke(dUser);
  const bool bUsed = IsDarkUsed<SDevice>(rig, [](int) { return std::vector<uint8_t>(64 * 64, 10); });
  EXPECT_EQ(rig.Process().IsBlackLevelDefault(), bUsed);
  return bUsed;
}

} // namespace

TEST(DeviceDark, IsTakenInTheFactoryStateWithTheUsersExposure)
{
  CDeviceRig rig;
  CCorrectingCamera &camera = rig.Camera();
  camera.Float("Gain").Poke(4.0);
  camera.Float("ExposureTime").Poke(30000.0);
  camera.Integer("DigitalShift").Poke(2);
  camera.Enumeration("DeadPixelCorrect").Select("On");
  camera.Integer("Width").Poke(32); // the user's frame is smaller than the factory's
  std::map<std::string, std::string> mapDuring;
  rig.Show([&](int) {
    mapDuring = {{"Gain", camera.Float("Gain").ToString().c_str()},
                 {"ExposureTime", camera.Float("ExposureTime").ToString().c_str()},
                 {"DigitalShift", camera.Integer("DigitalShift").ToString().c_str()},
                 {"DeadPixelCorrect", camera.Enumeration("DeadPixelCorrect").ToString().c_str()},
                 {"Width", camera.Integer("Width").ToString().c_str()}};
    return camera.MakeFrame(10);
  });
  EXPECT_EQ(rig.Process().AcquireDarkImage(), PLUGIN_STATUS_SUCCESS);
  const std::map<std::string, std::string> mapExpected = {
    {"Gain", "4"}, {"ExposureTime", "30000"}, {"DigitalShift", "2"}, {"DeadPixelCorrect", "On"}, {"Width", "64"}};
  EXPECT_EQ(mapExpected, mapDuring);
  EXPECT_EQ(camera.Integer("Width").Peek(), 32);
}

TEST(DeviceDark, IsMeasuredByItsBlocks)
{
  CDeviceRig rig;
  rig.Show([](int) { return MakeUnevenFrame(10, 7 * 1024 + 512); });
  EXPECT_EQ(rig.Process().AcquireDarkImage(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().GetImageMaxGray(), 17.5);
  EXPECT_EQ(rig.Process().GetImageGrayDiff(), 7.5);
}

TEST(DeviceDark, WithABlockUpToGreyTwentyIsUsed)
{
  EXPECT_TRUE(IsFrameUsed(MakeUnevenFrame(19, 1024)));
}

TEST(DeviceDark, JustAboveGreyTwentyIsKeptButNotUsed)
{
  EXPECT_FALSE(IsFrameUsed(MakeEvenFrame(20, 1)));
  EXPECT_FALSE(IsFrameUsed(MakeEvenFrame(20, 10))); // 20.01
  EXPECT_FALSE(IsFrameUsed(MakeUnevenFrame(20, 1)));
  EXPECT_FALSE(IsFrameUsed(MakeEvenFrame(255, 0)));
}

TEST(DeviceDark, ThatIsUnevenByAlmostFiveIsUsed)
{
  EXPECT_TRUE(IsFrameUsed(MakeUnevenFrame(15, 5 * 1024 - 1)));
  EXPECT_FALSE(IsFrameUsed(MakeUnevenFrame(15, 5 * 1024)));
}

TEST(DeviceDark, CountsOnlyAtTheFactorysBlackLevel)
{
  const float fLimit = 1e-6F; // as a float a little less than a millionth
  const float fBeyond = std::nextafterf(fLimit, 1.0F);
  EXPECT_TRUE(IsBlackLevelDefault(0.4, 0.4));
  EXPECT_TRUE(IsBlackLevelDefault(0.0, double{fLimit}));
  EXPECT_TRUE(IsBlackLevelDefault(double{fLimit}, 0.0));
  EXPECT_FALSE(IsBlackLevelDefault(0.0, double{fBeyond}));
  EXPECT_FALSE(IsBlackLevelDefault(double{fBeyond}, 0.0));
  EXPECT_FALSE(IsBlackLevelDefault(0.5, 0.4));
}

TEST(DeviceDark, TellsTheBlackLevelAlsoOfAFrameThatIsTooBright)
{
  CDeviceRig rig;
  EXPECT_EQ(rig.AcquireDark(200), PLUGIN_STATUS_SUCCESS);
  EXPECT_TRUE(rig.Process().IsBlackLevelDefault());
  rig.Camera().Float("BlackLevel").Poke(0.5);
  EXPECT_EQ(rig.AcquireDark(10), PLUGIN_STATUS_SUCCESS);
  EXPECT_FALSE(rig.Process().IsBlackLevelDefault());
}

TEST(DeviceDark, WhatCameBeforeTheTriggerIsWiped)
{
  CDeviceRig rig;
  const std::vector<uint8_t> listEarly(64 * 64, 200);
  rig.SetHook([&](const SNodeAccess &stAccess) {
    if (stAccess.strNode == "TriggerSource") {
      rig.Process().ReceiveImage(listEarly.data(), static_cast<uint32_t>(listEarly.size()));
    }
  });
  rig.Show([](int) { return std::vector<uint8_t>(64 * 32, 18); });
  EXPECT_EQ(rig.Process().AcquireDarkImage(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().GetImageMaxGray(), 18.0);
  EXPECT_EQ(rig.Process().GetImageGrayDiff(), 18.0);
}
