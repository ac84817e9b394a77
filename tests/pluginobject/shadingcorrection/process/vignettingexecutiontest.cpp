#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "pluginobject/shadingcorrection/imagecalc/vignetting/vignettingcoefficient.h"
#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/vignettingrig.h"

using namespace ffc::test;
using ffc::genapi::SNodeAccess;

namespace {

using Bytes = std::vector<uint8_t>;

// A format and its Bayer type.
struct SCamera {
  const char *pFormat;
  int32_t nBitDepth;
  int32_t nBayerType;
};

constexpr SCamera CAMERAS[] = {
  {"Mono8", 8, 0},      {"Mono10", 10, 0},    {"Mono12", 12, 0},    {"BayerRG8", 8, 1},
  {"BayerGB8", 8, 2},   {"BayerGR8", 8, 3},   {"BayerBG8", 8, 4},   {"BayerRG10", 10, 1},
  {"BayerGB10", 10, 2}, {"BayerGR12", 12, 3}, {"BayerBG12", 12, 4},
};

// A frame whose brightness falls to one side and differs between the four pixels of each cell, with noise.
CTestImage MakeShaded(int32_t nWidth, int32_t nHeight, int32_t nBitDepth, uint32_t nSeed)
{
  CTestRandom random(nSeed);
  CTestImage image(nWidth, nHeight, nBitDepth);
  for (int32_t y = 0; y < nHeight; ++y) {
    for (int32_t x = 0; x < nWidth; ++x) {
      const int32_t nLevel = 200 - 90 * x / nWidth - 40 * y / nHeight - 10 * (x % 2) - 25 * (y % 2);
      image.Set(x, y, (nLevel << (nBitDepth - 8)) + random.Between(0, 7));
    }
  }
  return image;
}

std::vector<CTestImage> MakeShadedRun(int32_t nWidth, int32_t nHeight, int32_t nBitDepth, int nCount)
{
  std::vector<CTestImage> listImages;
  for (int i = 0; i < nCount; ++i) {
    listImages.push_back(MakeShaded(nWidth, nHeight, nBitDepth, 11 + static_cast<uint32_t>(i)));
  }
  return listImages;
}

// Pixel by pixel, truncated.
CTestImage Average(const std::vector<CTestImage> &listImages)
{
  CTestImage average = listImages.front();
  for (int32_t i = 0; i < average.GetPixelCount(); ++i) {
    int32_t nSum = 0;
    for (const CTestImage &image : listImages) {
      nSum += image.GetAt(i);
    }
    average.SetAt(i, nSum / static_cast<int32_t>(listImages.size()));
  }
  return average;
}

// The calculator's own table.
Bytes ComputeTable(const CTestImage &image, int32_t nBayerType, int64_t nBlockSide)
{
  int64_t nSize = 0;
  EXPECT_EQ(
    GetVignettingCoefficientSize(nBayerType, image.GetWidth(), image.GetHeight(), nBlockSide, nBlockSide, &nSize), 0);
  Bytes listTable(static_cast<std::size_t>(nSize));
  EXPECT_EQ(CalcVignettingCoefficient(image.GetData(), image.GetBitDepth(), nBayerType, image.GetWidth(),
                                      image.GetHeight(), nBlockSide, nBlockSide, nSize, listTable.data()),
            0);
  return listTable;
}

// A table and the record behind it.
Bytes ComputeImage(const Bytes &listTable, uint32_t nFrameCount, uint32_t nBlockCode)
{
  Bytes listImage = listTable;
  const auto nSize = static_cast<uint32_t>(listTable.size() + 24);
  for (const uint8_t nByte : MakeRecord({1, 2, nFrameCount, nBlockCode, nSize, 0})) {
    listImage.push_back(nByte);
  }
  return listImage;
}

void ChangeTo(CVignettingRig &rig, int64_t nWidth, int64_t nHeight)
{
  rig.Camera().Integer("Width").Poke(nWidth);
  rig.Camera().Integer("Height").Poke(nHeight);
}

void SetBlocks(CVignettingRig &rig, const char *pEntry)
{
  rig.Camera().Enumeration("FFCBlockSize").Select(pEntry);
  EXPECT_EQ(rig.Process().InitProcess(), PLUGIN_STATUS_SUCCESS);
}

class VignettingExecution : public testing::TestWithParam<SCamera> {};

} // namespace

TEST_P(VignettingExecution, WritesTheCalculatorsTableAndThePlainRecordBehindIt)
{
  const SCamera stCamera = GetParam();
  CVignettingRig rig(stCamera.pFormat, 320, 224);
  EXPECT_EQ(rig.Process().SetFrameCount("FFCFrameCount_2"), PLUGIN_STATUS_SUCCESS);
  const std::vector<CTestImage> listImages = MakeShadedRun(320, 224, stCamera.nBitDepth, 2);
  const CTestImage average = Average(listImages);
  EXPECT_EQ(rig.Acquire(listImages), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(ComputeImage(ComputeTable(average, stCamera.nBayerType, 64), 2, 2), rig.GetWritten());
  EXPECT_EQ(rig.GetCorrection(), "On");
  EXPECT_EQ(rig.Process().GetCorrectionInfo().nValid, 1U);
  SetBlocks(rig, "BlockSize_16384");
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(ComputeImage(ComputeTable(average, stCamera.nBayerType, 128), 2, 3), rig.GetWritten());
}

INSTANTIATE_TEST_SUITE_P(Cameras, VignettingExecution, testing::ValuesIn(CAMERAS),
                         [](const auto &stInfo) { return std::string(stInfo.param.pFormat); });

TEST(VignettingExecutions, AreTheSameWhenRepeatedOnTheSameFrame)
{
  CVignettingRig rig;
  EXPECT_EQ(rig.Acquire({MakeShaded(192, 128, 8, 1)}), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  const Bytes listFirst = rig.GetWritten();
  rig.Camera().Correction().SetWritten({});
  rig.Camera().Enumeration("FlatFieldCorrection").Select("Off");
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.GetWritten(), listFirst);
  EXPECT_EQ(rig.GetCorrection(), "On");
}

TEST(VignettingExecutions, CarryTheFrameCountThatIsSetNow)
{
  CVignettingRig rig;
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().SetFrameCount("FFCFrameCount_16"), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(MakeRecord({1, 2, 16, 2, 72, 0}), rig.GetWrittenRecord());
}

TEST(VignettingExecutions, WithoutABrightFrameAreInvalidAndTouchNothing)
{
  CVignettingRig rig;
  EXPECT_EQ(rig.Process().AcquireDarkImage(), PLUGIN_STATUS_SUCCESS);
  rig.SetHook([](const SNodeAccess &stAccess) { ADD_FAILURE() << stAccess.strNode; });
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(rig.GetInfo(), (std::vector<uint32_t>{0, 2, 1, 2, 72, 0}));
}

TEST(VignettingExecutions, FollowTheGeometryOfTheFrames)
{
  CVignettingRig rig;
  for (const auto &[nWidth, nHeight, nSize] :
       {std::tuple{192, 128, 72U}, {320, 128, 88U}, {64, 64, 56U}, {640, 480, 264U}, {192, 128, 72U}}) {
    ChangeTo(rig, nWidth, nHeight);
    const CTestImage image = MakeShaded(nWidth, nHeight, 8, 5);
    EXPECT_EQ(rig.Acquire({image}), PLUGIN_STATUS_SUCCESS) << nWidth;
    EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS) << nWidth;
    EXPECT_EQ(ComputeImage(ComputeTable(image, 0, 64), 1, 2), rig.GetWritten()) << nWidth;
    EXPECT_EQ(rig.GetWritten().size(), nSize) << nWidth;
    EXPECT_EQ(rig.Process().GetCorrectionInfo().nCoefficientsSize, nSize) << nWidth;
  }
}

TEST(VignettingExecutions, FollowTheFramesAlsoWhenALoadedRecordHasTheirSizeAlready)
{
  CVignettingRig rig;
  EXPECT_EQ(rig.Correct(100), PLUGIN_STATUS_SUCCESS); // memory for 72 bytes
  ChangeTo(rig, 320, 128);
  rig.Camera().Correction().SetFlash(MakeCoefficients(88, 88));
  EXPECT_EQ(rig.Process().LoadFromFlash(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().GetCorrectionInfo().nCoefficientsSize, 88U);
  EXPECT_EQ(rig.Correct(100), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.GetWritten().size(), 88U);
}

TEST(VignettingExecutions, FollowTheFramesWhateverTheSizeInALoadedRecord)
{
  CVignettingRig rig;
  EXPECT_EQ(rig.Correct(100), PLUGIN_STATUS_SUCCESS);
  ChangeTo(rig, 320, 128);
  rig.Camera().Correction().SetFlash(MakeCoefficients(88, 88));
  EXPECT_EQ(rig.Process().LoadFromFlash(), PLUGIN_STATUS_SUCCESS);
  ChangeTo(rig, 192, 128); // the frame's again
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(MakeRecord({1, 2, 4, 2, 72, 7}), rig.GetWrittenRecord());
}

TEST(VignettingExecutions, OfFramesOfAnotherGeometryThanTheCameraHasNowAreRefused)
{
  CVignettingRig rig;
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
  ChangeTo(rig, 320, 128);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_ROI_MISMATCH);
  EXPECT_TRUE(rig.GetWritten().empty());
  EXPECT_EQ(rig.GetCorrection(), "Off");
  ChangeTo(rig, 192, 128);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
}

TEST(VignettingExecutions, ForARegisterOfAnotherLengthAreRefused)
{
  CVignettingRig rig;
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
  for (const int64_t nSize : {71, 73, 24, 0}) {
    rig.Camera().Integer("FFCCoefficientsSize").OnRead([nSize] { return nSize; });
    EXPECT_EQ(rig.Process().InitProcess(), PLUGIN_STATUS_SUCCESS) << nSize; // its own rule gives the size
    EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_ROI_MISMATCH) << nSize;
    EXPECT_EQ(rig.Process().GetCorrectionInfo().nCoefficientsSize, 72U) << nSize;
    EXPECT_TRUE(rig.GetWritten().empty()) << nSize;
    EXPECT_EQ(rig.GetCorrection(), "Off") << nSize;
  }
}

TEST(VignettingExecutions, WithBlocksLargerThanTheFrameAreInvalid)
{
  CVignettingRig rig("Mono8", 192, 96);
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
  SetBlocks(rig, "BlockSize_16384");
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_INVALID_PARAM);
  SetBlocks(rig, "BlockSize_4096");
  EXPECT_EQ(rig.Correct(100), PLUGIN_STATUS_SUCCESS);
}

TEST(VignettingExecutions, OfADeeperFormatThanTwelveBitsAreNotSupported)
{
  for (const char *pFormat : {"Mono14", "Mono16", "BayerRG16"}) {
    CVignettingRig rig(pFormat);
    EXPECT_EQ(rig.AcquireBright(9000), PLUGIN_STATUS_SUCCESS) << pFormat;
    EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_CAMERA_NOT_SUPPORTED) << pFormat;
    EXPECT_TRUE(rig.GetWritten().empty()) << pFormat;
    EXPECT_EQ(rig.GetCorrection(), "Off") << pFormat;
    EXPECT_EQ(rig.Process().GetCorrectionInfo().nValid, 0U) << pFormat;
  }
}

TEST(VignettingExecutions, ThatTheCameraRefusesAreReported)
{
  for (const char *pName : {"FFCValueAll", "FlatFieldCorrection"}) {
    CVignettingRig rig;
    EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
    rig.Refuse(pName);
    EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_FEATURE_ERROR) << pName;
    EXPECT_EQ(rig.GetCorrection(), "Off") << pName;
    EXPECT_EQ(pName == std::string("FFCValueAll"), rig.GetWritten().empty());
  }
}
