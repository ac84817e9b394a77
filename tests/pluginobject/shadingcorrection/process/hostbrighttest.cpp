#include <atomic>

#include <gtest/gtest.h>

#include "tests/pluginobject/shadingcorrection/process/hostrig.h"

using namespace ffc::test;

namespace {

constexpr const char *FRAME_COUNT_ENTRIES[] = {"FFCFrameCount_1", "FFCFrameCount_2", "FFCFrameCount_4",
                                               "FFCFrameCount_8", "FFCFrameCount_16"};

} // namespace

TEST(HostBright, OfAMonochromeCameraTakesFrameCountFrames)
{
  CHostRig rig;
  for (const char *pEntry : FRAME_COUNT_ENTRIES) {
    rig.Process().SetFrameCount(pEntry);
    EXPECT_EQ(0, rig.AcquireBright(100));
    EXPECT_EQ(static_cast<int>(rig.Process().GetCorrectionInfo().nFrameCount), rig.GetFrameCount()) << pEntry;
    EXPECT_EQ(258U, rig.Process().WaitImageRequest()) << pEntry;
  }
}

TEST(HostBright, OfAColourCameraTakesSevenFramesMore)
{
  CHostRig rig("BayerGR8");
  rig.Camera().Enumeration("BalanceWhiteAuto").Access(GenApi::NI);
  for (const char *pEntry : FRAME_COUNT_ENTRIES) {
    rig.Process().SetFrameCount(pEntry);
    EXPECT_EQ(0, rig.AcquireBright(100));
    EXPECT_EQ(static_cast<int>(rig.Process().GetCorrectionInfo().nFrameCount) + 7, rig.GetFrameCount()) << pEntry;
    EXPECT_EQ(258U, rig.Process().WaitImageRequest()) << pEntry;
  }
}

TEST(HostBright, IsTheTruncatedAverageOfItsFrames)
{
  CHostRig rig;
  rig.Process().SetExpectGray(101);
  rig.Show([&rig](int nFrame) { return rig.Camera().MakeFrame(nFrame == 3 ? 102 : 101); });
  EXPECT_EQ(0, rig.Process().AcquireBrightImage());
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
  std::vector<uint8_t> listCorrected;
  EXPECT_EQ(0, rig.Correct(rig.Camera().MakeFrame(73), listCorrected));
  EXPECT_EQ(rig.Camera().MakeFrame(73), listCorrected); // a gain of exactly 1
}

TEST(HostBright, OfAColourCameraAveragesTheFramesAfterTheFirstSeven)
{
  CHostRig rig("BayerGR8");
  rig.Camera().Enumeration("BalanceWhiteAuto").Access(GenApi::NI);
  rig.Process().SetExpectGray(101);
  rig.Show([&rig](int nFrame) { return rig.Camera().MakeFrame(nFrame < 7 ? 255 : 101); });
  EXPECT_EQ(0, rig.Process().AcquireBrightImage());
  EXPECT_EQ(101.0, rig.Process().GetImageMaxGray());
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
  std::vector<uint8_t> listCorrected;
  EXPECT_EQ(0, rig.Correct(rig.Camera().MakeFrame(73), listCorrected));
  EXPECT_EQ(rig.Camera().MakeFrame(73), listCorrected);
}

TEST(HostBright, IsJudgedByItsFirstFrame)
{
  CHostRig rig;
  rig.Show([&rig](int nFrame) { return rig.Camera().MakeFrame(nFrame == 0 ? 90 : 200); });
  EXPECT_EQ(0, rig.Process().AcquireBrightImage());
  EXPECT_EQ(90.0, rig.Process().GetImageMaxGray());
}

TEST(HostBright, WithoutAFrameTimesOut)
{
  CHostRig rig;
  rig.ShowNothing();
  EXPECT_EQ(-1009, rig.Process().AcquireBrightImage());
  EXPECT_EQ(258U, rig.Process().WaitImageRequest());
}

TEST(HostBright, TimesOutWhenTheFramesEndInTheMiddle)
{
  CHostRig rig;
  rig.Camera().Float("ExposureTime").Poke(-700000.0);
  rig.Show([&rig](int nFrame) { return nFrame < 2 ? rig.Camera().MakeFrame(100) : std::vector<uint8_t>(); });
  EXPECT_EQ(-1009, rig.Process().AcquireBrightImage());
  EXPECT_EQ(3, rig.GetFrameCount());
}

TEST(HostBright, IsStoppedAlsoWhenTheFrameCame)
{
  CHostRig rig;
  rig.Show([&rig](int nFrame) {
    rig.Process().SetStopFlag(nFrame == 2);
    return rig.Camera().MakeFrame(100);
  });
  EXPECT_EQ(-1017, rig.Process().AcquireBrightImage());
  EXPECT_EQ(3, rig.GetFrameCount());
}

TEST(HostBright, OfAColourCameraIsStoppedAmongTheFirstSeven)
{
  CHostRig rig("BayerGR8");
  rig.Camera().Enumeration("BalanceWhiteAuto").Access(GenApi::NI);
  rig.Show([&rig](int nFrame) {
    rig.Process().SetStopFlag(nFrame == 5);
    return rig.Camera().MakeFrame(100);
  });
  EXPECT_EQ(-1017, rig.Process().AcquireBrightImage());
  EXPECT_EQ(6, rig.GetFrameCount());
}

TEST(HostBright, FailsWhenThePayloadChangesInTheMiddle)
{
  CHostRig rig;
  std::atomic<int64_t> nPayloadSize{rig.Camera().GetPayloadSize()};
  rig.Camera().Integer("PayloadSize").OnRead([&nPayloadSize] { return nPayloadSize.load(); });
  rig.Show([&](int nFrame) {
    nPayloadSize = rig.Camera().GetPayloadSize() + (nFrame < 2 ? 0U : 1U);
    return rig.Camera().MakeFrame(100);
  });
  EXPECT_EQ(-1012, rig.Process().AcquireBrightImage());
  EXPECT_EQ(3, rig.GetFrameCount());
}

TEST(HostBright, AFailedOneLeavesNoFrameBehind)
{
  CHostRig rig;
  EXPECT_EQ(0, rig.AcquireBright(100));
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
  const FFCInfo stInfo = rig.Process().GetCorrectionInfo();
  rig.Show([&rig](int nFrame) {
    rig.Process().SetStopFlag(nFrame == 3);
    return rig.Camera().MakeFrame(100);
  });
  EXPECT_EQ(-1017, rig.Process().AcquireBrightImage());
  EXPECT_EQ(-3, rig.Process().ExecuteCorrection());
  EXPECT_EQ(stInfo.nCoefficientsSize, rig.Process().GetCorrectionInfo().nCoefficientsSize);
  std::vector<uint8_t> listCorrected;
  EXPECT_EQ(0, rig.Correct(rig.Camera().MakeFrame(73), listCorrected)); // the coefficients stay in force
}

TEST(HostBright, KeepsTheDarkFrameOfTheSameSize)
{
  CHostRig rig;
  EXPECT_EQ(0, rig.AcquireDark(10));
  EXPECT_EQ(0, rig.AcquireBright(100));
  EXPECT_EQ(0, rig.AcquireBright(120));
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
  EXPECT_EQ(4U, rig.GetTableBytesPerPixel());
}
