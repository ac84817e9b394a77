#include <cmath>
#include <functional>
#include <string>
#include <tuple>
#include <utility>

#include <gtest/gtest.h>

#include "tests/pluginobject/shadingcorrection/process/vignettingrig.h"

using namespace ffc::test;

namespace {

// An image of 3 x 2 blocks of 64 x 64. The first one has the mean nGray + nHigher / 4096, the others nGray.
CTestImage MakeUneven(int32_t nBitDepth, int32_t nGray, int32_t nHigher)
{
  CTestImage image(192, 128, nBitDepth, nGray);
  for (int32_t i = 0; i < nHigher; ++i) {
    const int32_t nPixel = i % 4096;
    image.Set(nPixel % 64, nPixel / 64, image.Get(nPixel % 64, nPixel / 64) + 1);
  }
  return image;
}

// The gain of the first block of a mono camera: the last of the first four.
int32_t GetFirstBlockGain(const CVignettingRig &rig)
{
  const std::vector<uint8_t> listBytes = rig.GetWritten();
  return listBytes.at(6) + 256 * listBytes.at(7);
}

// What happens to the nFrame-th of four frames; the others are delivered in order.
struct SMishap {
  const char *pName;
  std::function<std::vector<uint8_t>(CVignettingRig &rig)> fnFrame;
  int32_t nStatus;
};

const SMishap MISHAPS[] = {
  {"Lost", [](CVignettingRig &) { return std::vector<uint8_t>(); }, -1009},
  {"Stopped",
   [](CVignettingRig &rig) {
     rig.Process().SetStopFlag(true);
     return rig.Camera().MakeFrame(100);
   },
   -1017},
  {"StoppedAndLost",
   [](CVignettingRig &rig) {
     rig.Process().SetStopFlag(true);
     return std::vector<uint8_t>();
   },
   -1017},
  {"AnotherPayload",
   [](CVignettingRig &rig) {
     std::vector<uint8_t> listFrame = rig.Camera().MakeFrame(100);
     rig.Camera().Integer("Width").Poke(194);
     return listFrame;
   },
   -1012},
};

class VignettingMishap : public testing::TestWithParam<std::tuple<SMishap, int>> {};

} // namespace

TEST_P(VignettingMishap, EndsTheAcquisitionAtOnceAndLeavesNoFrame)
{
  const auto &[stMishap, nAt] = GetParam();
  CVignettingRig rig;
  EXPECT_EQ(0, rig.Correct(50)); // the frame that must not be left
  const std::vector<uint8_t> listWritten = rig.GetWritten();
  EXPECT_EQ(0, rig.Process().SetFrameCount("FFCFrameCount_4"));
  rig.Camera().Float("ExposureTime").Poke(-700000.0);
  rig.Show([&rig, &stMishap = stMishap, nAt = nAt](int nFrame) {
    return nFrame == nAt ? stMishap.fnFrame(rig) : rig.Camera().MakeFrame(100);
  });
  EXPECT_EQ(stMishap.nStatus, rig.Process().AcquireBrightImage());
  EXPECT_EQ(nAt + 1, rig.GetFrameCount());
  EXPECT_EQ(258U, rig.Process().WaitImageRequest());
  EXPECT_EQ(-3, rig.Process().ExecuteCorrection());
  EXPECT_EQ(listWritten, rig.GetWritten());
  rig.Process().SetStopFlag(false);
  EXPECT_EQ(0, rig.AcquireBright(100)); // at whatever width
}

INSTANTIATE_TEST_SUITE_P(Frames, VignettingMishap, testing::Combine(testing::ValuesIn(MISHAPS), testing::Range(0, 4)),
                         [](const auto &stInfo) {
                           return std::string(std::get<0>(stInfo.param).pName) +
                                  std::to_string(std::get<1>(stInfo.param));
                         });

TEST(VignettingBright, TakesFrameCountFrames)
{
  CVignettingRig rig;
  for (const int nCount : {1, 2, 4, 8, 16}) {
    EXPECT_EQ(0, rig.Process().SetFrameCount("FFCFrameCount_" + std::to_string(nCount)));
    EXPECT_EQ(0, rig.AcquireBright(120));
    EXPECT_EQ(nCount, rig.GetFrameCount());
    EXPECT_EQ(258U, rig.Process().WaitImageRequest()) << nCount;
  }
}

TEST(VignettingBright, OfOneFrameAsksForNoOther)
{
  CVignettingRig rig;
  bool bRequested = false;
  rig.SetHook([&](const SNodeAccess &) { // by the check of the frame a further request would stand
    bRequested = bRequested || (rig.GetFrameCount() == 1 && rig.Process().WaitImageRequest() == 0);
  });
  EXPECT_EQ(0, rig.AcquireBright(100));
  EXPECT_FALSE(bRequested);
}

TEST(VignettingBright, IsMeasuredOnAScaleOfEightBits)
{
  struct SMeasure {
    const char *pFormat;
    int32_t nBitDepth;
    int32_t nGray;
    int32_t nHigher; // 4096ths
    double dMax;
    double dMin;
  };
  for (const SMeasure &stMeasure : {SMeasure{"Mono12", 12, 2000, 1000 * 4096 + 2867, 187.0, 125.0}, // 3000.7
                                    {"Mono12", 12, 1600, 15 * 4096 + 4095, 100.0, 100.0},           // nearly 1616
                                    {"Mono12", 12, 1600, 16 * 4096, 101.0, 100.0},
                                    {"Mono10", 10, 403, 400 * 4096 + 4095, 200.0, 100.0}, // nearly 804
                                    {"Mono8", 8, 100, 99 * 4096, 199.0, 100.0},           // not shifted
                                    {"Mono8", 8, 100, 99 * 4096 + 4095, 199.0, 100.0},    // truncated
                                    {"Mono16", 16, 65535, 0, 255.0, 255.0},
                                    {"Mono14", 14, 64, 63, 1.0, 1.0}}) {
    CVignettingRig rig(stMeasure.pFormat);
    EXPECT_EQ(0, rig.Acquire({MakeUneven(stMeasure.nBitDepth, stMeasure.nGray, stMeasure.nHigher)}));
    EXPECT_EQ(stMeasure.dMax, rig.Process().GetImageMaxGray()) << stMeasure.pFormat;
    EXPECT_EQ(stMeasure.dMax - stMeasure.dMin, rig.Process().GetImageGrayDiff()) << stMeasure.pFormat;
  }
}

TEST(VignettingBright, IsMeasuredByTheColoursOfItsBlocks)
{
  CVignettingRig rig("BayerGR12");
  EXPECT_EQ(0, rig.Acquire({CTestImage::MakeCells(192, 128, 12, {1600, 3200, 800, 1616})})); // green between
  EXPECT_EQ(200.0, rig.Process().GetImageMaxGray());
  EXPECT_EQ(150.0, rig.Process().GetImageGrayDiff());
}

TEST(VignettingBright, IsMeasuredByItsFirstFrameAlone)
{
  CVignettingRig rig;
  EXPECT_EQ(0, rig.Process().SetFrameCount("FFCFrameCount_2"));
  EXPECT_EQ(0, rig.Acquire({MakeUneven(8, 90, 7 * 4096), CTestImage(192, 128, 8, 200)}));
  EXPECT_EQ(97.0, rig.Process().GetImageMaxGray());
  EXPECT_EQ(7.0, rig.Process().GetImageGrayDiff());
}

TEST(VignettingBright, AFailedOneKeepsTheGreysOfTheLastAnalysedFrame)
{
  CVignettingRig rig;
  EXPECT_EQ(0, rig.Acquire({MakeUneven(8, 90, 7 * 4096)}));
  rig.Refuse("Height");
  EXPECT_EQ(-1002, rig.AcquireBright(200));
  EXPECT_EQ(97.0, rig.Process().GetImageMaxGray());
  EXPECT_EQ(7.0, rig.Process().GetImageGrayDiff());
}

TEST(VignettingBright, IsTheTruncatedAverageOfItsFrames)
{
  CVignettingRig rig("Mono12");
  EXPECT_EQ(0, rig.Process().SetFrameCount("FFCFrameCount_4"));
  const CTestImage usual(192, 128, 12, 2);
  CTestImage last = usual;
  for (int32_t i = 0; i < 4096; ++i) {
    last.Set(i % 64, i / 64, 1);
  }
  EXPECT_EQ(0, rig.Acquire({usual, usual, usual, last})); // the first block averages 1.75
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
  EXPECT_EQ(2 * 256, GetFirstBlockGain(rig));
}

TEST(VignettingBright, SixteenFramesOfFullScaleDoNotOverflow)
{
  for (const auto &[pFormat, nBitDepth] : {std::pair{"Mono8", 8}, {"Mono10", 10}, {"Mono12", 12}}) {
    CVignettingRig rig(pFormat);
    EXPECT_EQ(0, rig.Process().SetFrameCount("FFCFrameCount_16"));
    CTestImage image(192, 128, nBitDepth, (1 << nBitDepth) - 1);
    for (int32_t i = 0; i < 4096; ++i) {
      image.Set(i % 64, i / 64, 1 << (nBitDepth - 2));
    }
    EXPECT_EQ(0, rig.Acquire({image}));
    EXPECT_EQ(0, rig.Process().ExecuteCorrection());
    const double dRatio = ((1 << nBitDepth) - 1) * 256.0 / (1 << (nBitDepth - 2));
    EXPECT_EQ(std::lround(dRatio), GetFirstBlockGain(rig)) << pFormat;
    EXPECT_EQ(255.0, rig.Process().GetImageMaxGray()) << pFormat;
  }
}

TEST(VignettingBright, ThatCannotBeAnalysedEndsWithItsFirstFrame)
{
  CVignettingRig rig("Mono8", 193, 128); // a frame with an odd side has no blocks
  EXPECT_EQ(0, rig.Process().SetFrameCount("FFCFrameCount_4"));
  EXPECT_EQ(-3, rig.AcquireBright(100));
  EXPECT_EQ(1, rig.GetFrameCount());
  EXPECT_EQ(258U, rig.Process().WaitImageRequest());
  EXPECT_EQ(-3, rig.Process().ExecuteCorrection());
}

TEST(VignettingBright, OfAFormatOfUnknownDepthIsRefused)
{
  CVignettingRig rig;
  rig.Camera().Enumeration("PixelFormat").Entry("YUV422_8", 0x02100032).Select("YUV422_8");
  EXPECT_EQ(-3, rig.AcquireBright(100));
  EXPECT_EQ(-3, rig.Process().ExecuteCorrection());
}

TEST(VignettingBright, IsTakenUncorrectedAndTheCorrectionStaysOff)
{
  CVignettingRig rig;
  EXPECT_EQ(0, rig.Correct(100));
  EXPECT_EQ("On", rig.GetCorrection());
  std::string strDuring;
  rig.Show([&](int) {
    strDuring = rig.GetCorrection();
    return rig.Camera().MakeFrame(100);
  });
  EXPECT_EQ(0, rig.Process().AcquireBrightImage());
  EXPECT_EQ("Off", strDuring);
  EXPECT_EQ("Off", rig.GetCorrection());
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
  EXPECT_EQ("On", rig.GetCorrection());
  rig.ShowNothing();
  EXPECT_EQ(-1009, rig.Process().AcquireBrightImage());
  EXPECT_EQ("Off", rig.GetCorrection());
}

TEST(VignettingBright, ComesFromTheFreeRunningStreamWhateverTheTrigger)
{
  for (const bool bStreaming : {false, true}) {
    CVignettingRig rig;
    rig.Camera().Enumeration("TriggerMode").Select("On");
    rig.SetStreaming(bStreaming);
    EXPECT_EQ(0, rig.Correct(100)) << bStreaming;
    EXPECT_EQ("On", rig.Camera().Enumeration("TriggerMode").PeekSymbolic()) << bStreaming;
    EXPECT_EQ(bStreaming, rig.IsStreaming());
  }
}

TEST(VignettingBright, DoesNotTakeAFrameThatWasAnnouncedBefore)
{
  CVignettingRig rig;
  rig.ShowNothing();
  rig.Process().SetImageReady();
  EXPECT_EQ(-1009, rig.Process().AcquireBrightImage());
}

TEST(VignettingBright, AShortFrameLeavesWhatTheBufferHolds)
{
  CVignettingRig rig;
  EXPECT_EQ(0, rig.AcquireBright(250)); // of which nothing is left
  rig.Show([](int) { return std::vector<uint8_t>(192 * 64, 100); });
  EXPECT_EQ(0, rig.Process().AcquireBrightImage());
  EXPECT_EQ(100.0, rig.Process().GetImageMaxGray());
  EXPECT_EQ(100.0, rig.Process().GetImageGrayDiff());
}

TEST(VignettingBright, ALongFrameIsCut)
{
  CVignettingRig rig;
  rig.Show([](int) { return std::vector<uint8_t>(192 * 1280, 150); });
  EXPECT_EQ(0, rig.Process().AcquireBrightImage());
  EXPECT_EQ(150.0, rig.Process().GetImageMaxGray());
  EXPECT_EQ(0.0, rig.Process().GetImageGrayDiff());
}
