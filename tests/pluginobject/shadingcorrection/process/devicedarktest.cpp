#include <cmath>

#include <gtest/gtest.h>

#include "tests/pluginobject/shadingcorrection/process/blockframe.h"
#include "tests/pluginobject/shadingcorrection/process/devicerig.h"

using namespace ffc::test;

namespace {

// Takes the given dark frame and a bright one, and tells whether the coefficients use the dark one.
bool IsDarkUsed(CDeviceRig &rig, CDeviceRig::FnFrame fnDark)
{
  rig.Show(std::move(fnDark));
  EXPECT_EQ(0, rig.Process().AcquireDarkImage());
  EXPECT_EQ(0, rig.AcquireBright(200));
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
  return rig.IsDarkInForce();
}

bool IsDarkUsed(const std::vector<uint8_t> &listDark)
{
  CDeviceRig rig;
  return IsDarkUsed(rig, [&listDark](int) { return listDark; });
}

// Whether a dark frame counts with this black level in the user's and in the factory set.
bool IsBlackLevelDefault(double dUser, double dDefault)
{
  CDeviceRig rig;
  rig.Camera().Float("BlackLevel").Poke(dDefault);
  rig.Camera().SaveAsDefault();
  rig.Camera().Float("BlackLevel").Poke(dUser);
  const bool bUsed = IsDarkUsed(rig, [](int) { return std::vector<uint8_t>(64 * 64, 10); });
  EXPECT_EQ(bUsed, rig.Process().IsBlackLevelDefault());
  return bUsed;
}

} // namespace

TEST(DeviceDark, TakesExactlyOneTriggeredFrame)
{
  CDeviceRig rig;
  EXPECT_EQ(0, rig.AcquireDark(10));
  EXPECT_EQ(1, rig.GetFrameCount());
  EXPECT_EQ(258U, rig.Process().WaitImageRequest());
}

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
  EXPECT_EQ(0, rig.Process().AcquireDarkImage());
  const std::map<std::string, std::string> mapExpected = {
    {"Gain", "4"}, {"ExposureTime", "30000"}, {"DigitalShift", "2"}, {"DeadPixelCorrect", "On"}, {"Width", "64"}};
  EXPECT_EQ(mapExpected, mapDuring);
  EXPECT_EQ(32, camera.Integer("Width").Peek());
}

TEST(DeviceDark, IsMeasuredByItsBlocks)
{
  CDeviceRig rig;
  rig.Show([](int) { return MakeUnevenFrame(10, 7 * 1024 + 512); });
  EXPECT_EQ(0, rig.Process().AcquireDarkImage());
  EXPECT_EQ(17.5, rig.Process().GetImageMaxGray());
  EXPECT_EQ(7.5, rig.Process().GetImageGrayDiff());
}

TEST(DeviceDark, UpToGreyTwentyIsUsed)
{
  EXPECT_TRUE(IsDarkUsed(MakeEvenFrame(20, 0)));
  EXPECT_TRUE(IsDarkUsed(MakeUnevenFrame(19, 1024)));
  EXPECT_TRUE(IsDarkUsed(MakeEvenFrame(1, 0)));
}

TEST(DeviceDark, JustAboveGreyTwentyIsKeptButNotUsed)
{
  EXPECT_FALSE(IsDarkUsed(MakeEvenFrame(20, 1)));
  EXPECT_FALSE(IsDarkUsed(MakeEvenFrame(20, 10))); // 20.01
  EXPECT_FALSE(IsDarkUsed(MakeUnevenFrame(20, 1)));
  EXPECT_FALSE(IsDarkUsed(MakeEvenFrame(255, 0)));
}

TEST(DeviceDark, ThatIsUnevenByFiveIsKeptButNotUsed)
{
  EXPECT_TRUE(IsDarkUsed(MakeUnevenFrame(15, 5 * 1024 - 1)));
  EXPECT_FALSE(IsDarkUsed(MakeUnevenFrame(15, 5 * 1024)));
  EXPECT_FALSE(IsDarkUsed(MakeUnevenFrame(2, 9 * 1024)));
}

TEST(DeviceDark, OfABayerCameraIsJudgedColourByColour)
{
  // Red 20, blue 15: the colours differ by 5 although all blocks are alike.
  const auto fnCells = [](int) {
    std::vector<uint8_t> listFrame(64 * 64, 17);
    for (std::size_t y = 0; y < 64; y += 2) {
      for (std::size_t x = 0; x < 64; x += 2) {
        listFrame[y * 64 + x] = 20;
        listFrame[(y + 1) * 64 + x + 1] = 15;
      }
    }
    return listFrame;
  };
  CDeviceRig colourRig("BayerRG8");
  EXPECT_FALSE(IsDarkUsed(colourRig, fnCells));
  EXPECT_EQ(0, colourRig.AcquireDark(17));
  EXPECT_TRUE(IsDarkUsed(colourRig, [](int) { return MakeEvenFrame(17, 0); }));
  CDeviceRig rig("Mono8");
  EXPECT_TRUE(IsDarkUsed(rig, fnCells));
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
  EXPECT_EQ(0, rig.AcquireDark(200));
  EXPECT_TRUE(rig.Process().IsBlackLevelDefault());
  rig.Camera().Float("BlackLevel").Poke(0.5);
  EXPECT_EQ(0, rig.AcquireDark(10));
  EXPECT_FALSE(rig.Process().IsBlackLevelDefault());
}

TEST(DeviceDark, AFailedOneIsNotUsedAndTheBrightOneStays)
{
  CDeviceRig rig;
  EXPECT_TRUE(IsDarkUsed(rig, [](int) { return MakeEvenFrame(10, 0); }));
  rig.ShowNothing();
  EXPECT_EQ(-1009, rig.Process().AcquireDarkImage());
  EXPECT_FALSE(rig.Process().IsBlackLevelDefault());
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
  EXPECT_FALSE(rig.IsDarkInForce());
}

TEST(DeviceDark, WithoutAFrameTimesOut)
{
  CDeviceRig rig;
  rig.ShowNothing();
  EXPECT_EQ(-1009, rig.Process().AcquireDarkImage());
  EXPECT_EQ(258U, rig.Process().WaitImageRequest()); // the request is withdrawn
}

TEST(DeviceDark, WhoseFrameIsLostOnItsWayTimesOut)
{
  CDeviceRig rig;
  rig.Show([](int) { return std::vector<uint8_t>(); });
  EXPECT_EQ(-1009, rig.Process().AcquireDarkImage());
  EXPECT_EQ(1, rig.GetFrameCount());
  EXPECT_EQ(258U, rig.Process().WaitImageRequest());
}

TEST(DeviceDark, IsStoppedAlsoWhenTheFrameCame)
{
  CDeviceRig rig;
  rig.Show([&rig](int) {
    rig.Process().SetStopFlag(true);
    return rig.Camera().MakeFrame(10);
  });
  EXPECT_EQ(-1017, rig.Process().AcquireDarkImage());
  EXPECT_EQ(1, rig.GetFrameCount());
  rig.Process().SetStopFlag(false);
  EXPECT_EQ(0, rig.AcquireDark(10));
}

TEST(DeviceDark, IsStoppedAlsoWhenNoFrameCame)
{
  CDeviceRig rig;
  rig.ShowNothing();
  rig.Process().SetStopFlag(true);
  EXPECT_EQ(-1017, rig.Process().AcquireDarkImage());
}

TEST(DeviceDark, FailsWhenThePayloadChangesWhileItIsTaken)
{
  CDeviceRig rig;
  std::atomic<int64_t> nPayloadSize{64 * 64};
  rig.Camera().Integer("PayloadSize").OnRead([&nPayloadSize] { return nPayloadSize.load(); });
  rig.Show([&](int) {
    nPayloadSize = 64 * 64 + 1;
    return rig.Camera().MakeFrame(10);
  });
  EXPECT_EQ(-1012, rig.Process().AcquireDarkImage());
  EXPECT_EQ(0.0, rig.Process().GetImageMaxGray()); // not even looked at
}

TEST(DeviceDark, IgnoresAFrameThatNobodyAskedFor)
{
  CDeviceRig rig;
  const std::vector<uint8_t> listFrame(64 * 64, 255);
  rig.Process().ReceiveImage(listFrame.data(), static_cast<uint32_t>(listFrame.size()));
  rig.Process().SetImageReady();
  EXPECT_EQ(0, rig.AcquireDark(10)); // the early signal is not taken for the dark frame
  EXPECT_EQ(1, rig.GetFrameCount());
  EXPECT_EQ(10.0, rig.Process().GetImageMaxGray());
}

TEST(DeviceDark, AShortFrameLeavesZerosBehindIt)
{
  CDeviceRig rig;
  EXPECT_EQ(0, rig.AcquireDark(200)); // nothing of it is left
  rig.Show([](int) { return std::vector<uint8_t>(64 * 32, 18); });
  EXPECT_EQ(0, rig.Process().AcquireDarkImage());
  EXPECT_EQ(18.0, rig.Process().GetImageMaxGray());
  EXPECT_EQ(18.0, rig.Process().GetImageGrayDiff());
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
  EXPECT_EQ(0, rig.Process().AcquireDarkImage());
  EXPECT_EQ(18.0, rig.Process().GetImageMaxGray());
  EXPECT_EQ(18.0, rig.Process().GetImageGrayDiff());
}

TEST(DeviceDark, ALongFrameIsCut)
{
  CDeviceRig rig;
  rig.Show([](int) { return std::vector<uint8_t>(64 * 640, 18); });
  EXPECT_EQ(0, rig.Process().AcquireDarkImage());
  EXPECT_EQ(18.0, rig.Process().GetImageMaxGray());
  EXPECT_EQ(0.0, rig.Process().GetImageGrayDiff());
}
