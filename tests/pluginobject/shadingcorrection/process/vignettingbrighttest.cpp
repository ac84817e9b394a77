#include <cmath>
#include <functional>
#include <string>
#include <tuple>
#include <utility>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/vignettingrig.h"

using namespace ffc::test;
using ffc::genapi::SNodeAccess;

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
  {"Lost", [](CVignettingRig &) { return std::vector<uint8_t>(); }, PLUGIN_STATUS_BUFFER_TIMEOUT},
  {"Stopped",
   [](CVignettingRig &rig) {
     rig.Process().SetStopFlag(true);
     return rig.Camera().MakeFrame(100);
   },
   PLUGIN_STATUS_NEED_BAYER_FORMAT},
  {"StoppedAndLost",
   [](CVignettingRig &rig) {
     rig.Process().SetStopFlag(true);
     return std::vector<uint8_t>();
   },
   PLUGIN_STATUS_NEED_BAYER_FORMAT},
  {"AnotherPayload",
   [](CVignettingRig &rig) {
     std::vector<uint8_t> listFrame = rig.Camera().MakeFrame(100);
     rig.Camera().Integer("Width").Poke(194);
     return listFrame;
   },
   PLUGIN_STATUS_BUFFER_SIZE_ERROR},
};

class VignettingMishap : public testing::TestWithParam<std::tuple<SMishap, int>> {};

} // namespace

TEST_P(VignettingMishap, EndsTheAcquisitionAtOnceAndLeavesNoFrame)
{
  const auto &[stMishap, nAt] = GetParam();
  CVignettingRig rig;
  EXPECT_EQ(rig.Correct(50), PLUGIN_STATUS_SUCCESS); // the frame that must not be left
  const std::vector<uint8_t> listWritten = rig.GetWritten();
  EXPECT_EQ(rig.Process().SetFrameCount("FFCFrameCount_4"), PLUGIN_STATUS_SUCCESS);
  rig.Camera().Float("ExposureTime").Poke(-700000.0);
  rig.Show([&rig, &stMishap = stMishap, nAt = nAt](int nFrame) {
    return nFrame == nAt ? stMishap.fnFrame(rig) : rig.Camera().MakeFrame(100);
  });
  EXPECT_EQ(rig.Process().AcquireBrightImage(), stMishap.nStatus);
  EXPECT_EQ(rig.GetFrameCount(), nAt + 1);
  EXPECT_EQ(rig.Process().WaitImageRequest(), 258U);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(rig.GetWritten(), listWritten);
  rig.Process().SetStopFlag(false);
  rig.Camera().Float("ExposureTime").Poke(10000.0);
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS); // at whatever width
}

INSTANTIATE_TEST_SUITE_P(Frames, VignettingMishap, testing::Combine(testing::ValuesIn(MISHAPS), testing::Range(0, 4)),
                         [](const auto &stInfo) {
                           return std::string(std::get<0>(stInfo.param).pName) +
                                  std::to_string(std::get<1>(stInfo.param));
                         });

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
    EXPECT_EQ(rig.Acquire({MakeUneven(stMeasure.nBitDepth, stMeasure.nGray, stMeasure.nHigher)}),
              PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(rig.Process().GetImageMaxGray(), stMeasure.dMax) << stMeasure.pFormat;
    EXPECT_EQ(rig.Process().GetImageGrayDiff(), stMeasure.dMax - stMeasure.dMin) << stMeasure.pFormat;
  }
}

TEST(VignettingBright, IsMeasuredByTheColoursOfItsBlocks)
{
  CVignettingRig rig("BayerGR12");
  EXPECT_EQ(rig.Acquire({CTestImage::MakeCells(192, 128, 12, {1600, 3200, 800, 1616})}),
            PLUGIN_STATUS_SUCCESS); // green between
  EXPECT_EQ(rig.Process().GetImageMaxGray(), 200.0);
  EXPECT_EQ(rig.Process().GetImageGrayDiff(), 150.0);
}

TEST(VignettingBright, IsMeasuredByItsFirstFrameAlone)
{
  CVignettingRig rig;
  EXPECT_EQ(rig.Process().SetFrameCount("FFCFrameCount_2"), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Acquire({MakeUneven(8, 90, 7 * 4096), CTestImage(192, 128, 8, 200)}), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().GetImageMaxGray(), 97.0);
  EXPECT_EQ(rig.Process().GetImageGrayDiff(), 7.0);
}

TEST(VignettingBright, AFailedOneKeepsTheGreysOfTheLastAnalysedFrame)
{
  CVignettingRig rig;
  EXPECT_EQ(rig.Acquire({MakeUneven(8, 90, 7 * 4096)}), PLUGIN_STATUS_SUCCESS);
  rig.Refuse("Height");
  EXPECT_EQ(rig.AcquireBright(200), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_EQ(rig.Process().GetImageMaxGray(), 97.0);
  EXPECT_EQ(rig.Process().GetImageGrayDiff(), 7.0);
}

TEST(VignettingBright, SixteenFramesOfFullScaleDoNotOverflow)
{
  for (const auto &[pFormat, nBitDepth] : {std::pair{"Mono8", 8}, {"Mono10", 10}, {"Mono12", 12}}) {
    CVignettingRig rig(pFormat);
    EXPECT_EQ(rig.Process().SetFrameCount("FFCFrameCount_16"), PLUGIN_STATUS_SUCCESS);
    CTestImage image(192, 128, nBitDepth, (1 << nBitDepth) - 1);
    for (int32_t i = 0; i < 4096; ++i) {
      image.Set(i % 64, i / 64, 1 << (nBitDepth - 2));
    }
    EXPECT_EQ(rig.Acquire({image}), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
    const double dRatio = ((1 << nBitDepth) - 1) * 256.0 / (1 << (nBitDepth - 2));
    EXPECT_EQ(std::lround(dRatio), GetFirstBlockGain(rig)) << pFormat;
    EXPECT_EQ(rig.Process().GetImageMaxGray(), 255.0) << pFormat;
  }
}

TEST(VignettingBright, ThatCannotBeAnalysedEndsWithItsFirstFrame)
{
  CVignettingRig rig("Mono8", 193, 128); // a frame with an odd side has no blocks
  EXPECT_EQ(rig.Process().SetFrameCount("FFCFrameCount_4"), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(rig.GetFrameCount(), 1);
  EXPECT_EQ(rig.Process().WaitImageRequest(), 258U);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM);
}

TEST(VignettingBright, OfAFormatOfUnknownDepthIsRefused)
{
  CVignettingRig rig;
  rig.Camera().Enumeration("PixelFormat").Entry("YUV422_8", 0x02100032).Select("YUV422_8");
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM);
}

TEST(VignettingBright, IsTakenUncorrectedAndTheCorrectionStaysOff)
{
  CVignettingRig rig;
  EXPECT_EQ(rig.Correct(100), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.GetCorrection(), "On");
  std::string strDuring;
  rig.Show([&](int) {
    strDuring = rig.GetCorrection();
    return rig.Camera().MakeFrame(100);
  });
  EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(strDuring, "Off");
  EXPECT_EQ(rig.GetCorrection(), "Off");
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.GetCorrection(), "On");
  rig.ShowNothing();
  EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_BUFFER_TIMEOUT);
  EXPECT_EQ(rig.GetCorrection(), "Off");
}

TEST(VignettingBright, ComesFromTheFreeRunningStreamWhateverTheTrigger)
{
  for (const bool bStreaming : {false, true}) {
    CVignettingRig rig;
    rig.Camera().Enumeration("TriggerMode").Select("On");
    rig.SetStreaming(bStreaming);
    EXPECT_EQ(rig.Correct(100), PLUGIN_STATUS_SUCCESS) << bStreaming;
    EXPECT_EQ(rig.Camera().Enumeration("TriggerMode").PeekSymbolic(), "On") << bStreaming;
    EXPECT_EQ(rig.IsStreaming(), bStreaming);
  }
}

TEST(VignettingBright, DoesNotTakeAFrameThatWasAnnouncedBefore)
{
  CVignettingRig rig;
  rig.ShowNothing();
  rig.Process().SetImageReady();
  EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_BUFFER_TIMEOUT);
}
