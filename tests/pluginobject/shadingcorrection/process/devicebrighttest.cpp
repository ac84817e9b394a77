#include <atomic>

#include <gtest/gtest.h>

#include "tests/pluginobject/shadingcorrection/process/blockframe.h"
#include "tests/pluginobject/shadingcorrection/process/devicerig.h"

using namespace ffc::test;

namespace {

// What the gain of every element is for a signal: all of a uniform frame are alike.
uint16_t GetGain(CDeviceRig &rig)
{
  const std::vector<uint8_t> listBytes = rig.Camera().Correction().GetWritten();
  return static_cast<uint16_t>(listBytes.at(2) + 256 * listBytes.at(3));
}

void SetFrameCount(CDeviceRig &rig, int nCount)
{
  EXPECT_EQ(0, rig.Process().SetFrameCount("FFCFrameCount_" + std::to_string(nCount)));
}

} // namespace

TEST(DeviceBright, TakesFrameCountFrames)
{
  CDeviceRig rig;
  for (const int nCount : {1, 2, 4, 8, 16}) {
    SetFrameCount(rig, nCount);
    EXPECT_EQ(0, rig.AcquireBright(120));
    EXPECT_EQ(nCount, rig.GetFrameCount());
    EXPECT_EQ(258U, rig.Process().WaitImageRequest()) << nCount;
  }
}

TEST(DeviceBright, OfOneFrameAsksForNoOther)
{
  CDeviceRig rig;
  SetFrameCount(rig, 1);
  uint32_t nRequest = 0;
  // The first access of the check of the frame: by then a further request would stand.
  rig.SetHook([&](const SNodeAccess &stAccess) {
    if (rig.IsStreaming() && stAccess.strNode == "Height" && stAccess.eKind == SNodeAccess::EKind::Read) {
      nRequest = rig.Process().WaitImageRequest();
    }
  });
  EXPECT_EQ(0, rig.AcquireBright(120));
  EXPECT_EQ(258U, nRequest);
  EXPECT_EQ(1, rig.GetFrameCount());
}

TEST(DeviceBright, IsTheTruncatedAverageOfItsFrames)
{
  CDeviceRig rig;
  SetFrameCount(rig, 4);
  rig.Show([](int nFrame) { return std::vector<uint8_t>(64 * 64, nFrame == 3 ? 104 : 101); }); // 101.75
  EXPECT_EQ(0, rig.Process().AcquireBrightImage());
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
  EXPECT_EQ(65280 / 101, GetGain(rig));
}

TEST(DeviceBright, IsJudgedByItsFirstFrame)
{
  CDeviceRig rig;
  SetFrameCount(rig, 2);
  rig.Show([](int nFrame) { return nFrame == 0 ? MakeUnevenFrame(90, 2048) : MakeEvenFrame(200, 0); });
  EXPECT_EQ(0, rig.Process().AcquireBrightImage());
  EXPECT_EQ(92.0, rig.Process().GetImageMaxGray());
  EXPECT_EQ(2.0, rig.Process().GetImageGrayDiff());
}

TEST(DeviceBright, SixteenFramesOfFullScaleAverageToFullScale)
{
  CDeviceRig rig;
  SetFrameCount(rig, 16);
  EXPECT_EQ(0, rig.AcquireBright(255));
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
  EXPECT_EQ(256, GetGain(rig));
}

TEST(DeviceBright, ComesFromTheFreeRunningStream)
{
  CDeviceRig rig;
  rig.Camera().Enumeration("TriggerMode").Select("On"); // the user's; the factory set has it off
  EXPECT_EQ(0, rig.AcquireBright(120));
  EXPECT_EQ("On", rig.Camera().Enumeration("TriggerMode").PeekSymbolic());
}

TEST(DeviceBright, WithoutAFrameTimesOut)
{
  CDeviceRig rig;
  rig.ShowNothing();
  EXPECT_EQ(-1009, rig.Process().AcquireBrightImage());
  EXPECT_EQ(258U, rig.Process().WaitImageRequest());
}

TEST(DeviceBright, TimesOutWhenAnyOfItsFramesIsLost)
{
  for (const int nLost : {0, 3}) {
    CDeviceRig rig;
    SetFrameCount(rig, 4);
    rig.Show(
      [nLost](int nFrame) { return nFrame == nLost ? std::vector<uint8_t>() : std::vector<uint8_t>(64 * 64, 120); });
    EXPECT_EQ(-1009, rig.Process().AcquireBrightImage()) << nLost;
    EXPECT_EQ(nLost + 1, rig.GetFrameCount());
    EXPECT_EQ(258U, rig.Process().WaitImageRequest()) << nLost;
    EXPECT_EQ(-3, rig.Process().ExecuteCorrection()) << nLost;
  }
}

TEST(DeviceBright, IsStoppedAtAnyOfItsFrames)
{
  for (const int nStopped : {0, 1, 2, 3}) {
    CDeviceRig rig;
    SetFrameCount(rig, 4);
    rig.Show([&rig, nStopped](int nFrame) {
      rig.Process().SetStopFlag(nFrame == nStopped);
      return rig.Camera().MakeFrame(120);
    });
    EXPECT_EQ(-1017, rig.Process().AcquireBrightImage()) << nStopped;
    EXPECT_EQ(nStopped + 1, rig.GetFrameCount());
    EXPECT_EQ(-3, rig.Process().ExecuteCorrection()) << nStopped;
  }
}

TEST(DeviceBright, IsStoppedAlsoWhenNoFrameCame)
{
  CDeviceRig rig;
  rig.ShowNothing();
  rig.Process().SetStopFlag(true);
  EXPECT_EQ(-1017, rig.Process().AcquireBrightImage());
}

TEST(DeviceBright, FailsWhenThePayloadChangesAtAnyOfItsFrames)
{
  for (const int nChanged : {0, 1, 2, 3}) {
    CDeviceRig rig;
    SetFrameCount(rig, 4);
    std::atomic<int64_t> nPayloadSize{64 * 64};
    rig.Camera().Integer("PayloadSize").OnRead([&nPayloadSize] { return nPayloadSize.load(); });
    rig.Show([&, nChanged](int nFrame) {
      nPayloadSize = 64 * 64 + (nFrame < nChanged ? 0 : 1);
      return std::vector<uint8_t>(64 * 64, 120);
    });
    EXPECT_EQ(-1012, rig.Process().AcquireBrightImage()) << nChanged;
    EXPECT_EQ(nChanged + 1, rig.GetFrameCount());
    EXPECT_EQ(-3, rig.Process().ExecuteCorrection()) << nChanged;
  }
}

TEST(DeviceBright, ThatCannotBeAnalysedTakesAllItsFramesAndFailsThen)
{
  CDeviceRig rig("Mono8", 66, 65); // a frame with an odd side has no blocks
  SetFrameCount(rig, 4);
  rig.ShowGray(120);
  EXPECT_EQ(-3, rig.Process().AcquireBrightImage());
  EXPECT_EQ(4, rig.GetFrameCount());
  EXPECT_EQ(-3, rig.Process().ExecuteCorrection());
}

TEST(DeviceBright, ThatIsLostAfterAFailedAnalysisTimesOut)
{
  CDeviceRig rig("Mono8", 66, 65);
  SetFrameCount(rig, 2);
  rig.Show([](int nFrame) { return std::vector<uint8_t>(nFrame == 0 ? 66 * 65 : 0, 120); });
  EXPECT_EQ(-1009, rig.Process().AcquireBrightImage());
}

TEST(DeviceBright, AFailedOneLeavesNoFrameBehindAndTheCoefficientsInForce)
{
  CDeviceRig rig;
  EXPECT_EQ(0, rig.Correct(10, 120));
  const FFCInfo stInfo = rig.Process().GetCorrectionInfo();
  const std::vector<uint8_t> listCoefficients = rig.Camera().Correction().GetWritten();
  rig.ShowNothing();
  EXPECT_EQ(-1009, rig.Process().AcquireBrightImage());
  EXPECT_EQ(-3, rig.Process().ExecuteCorrection());
  EXPECT_EQ(stInfo.nCoefficientsSize, rig.Process().GetCorrectionInfo().nCoefficientsSize);
  EXPECT_EQ(listCoefficients, rig.Camera().Correction().GetWritten());
}

TEST(DeviceBright, KeepsTheDarkFrame)
{
  CDeviceRig rig;
  EXPECT_EQ(0, rig.AcquireDark(10));
  EXPECT_EQ(0, rig.AcquireBright(120));
  EXPECT_EQ(0, rig.AcquireBright(140));
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
  EXPECT_TRUE(rig.IsDarkInForce());
  EXPECT_EQ(65280 / 130, GetGain(rig));
}

TEST(DeviceBright, AShortFrameLeavesWhatTheOneBeforeItBrought)
{
  CDeviceRig rig;
  SetFrameCount(rig, 2);
  rig.Show([](int nFrame) { return std::vector<uint8_t>(nFrame == 0 ? 64 * 64 : 0x10, nFrame == 0 ? 100 : 200); });
  EXPECT_EQ(0, rig.Process().AcquireBrightImage());
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
  const std::vector<uint8_t> listBytes = rig.Camera().Correction().GetWritten();
  const std::size_t nLastElement = listBytes.size() - 24 - 8;
  EXPECT_EQ(65280 / 100, listBytes[nLastElement + 2] + 256 * listBytes[nLastElement + 3]);
}

TEST(DeviceBright, ALongFrameIsCut)
{
  CDeviceRig rig;
  rig.Show([](int) { return std::vector<uint8_t>(64 * 640, 150); });
  EXPECT_EQ(0, rig.Process().AcquireBrightImage());
  EXPECT_EQ(150.0, rig.Process().GetImageMaxGray());
  EXPECT_EQ(0.0, rig.Process().GetImageGrayDiff());
}
