#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/testimage.h"
#include "tests/pluginobject/shadingcorrection/process/blockframe.h"
#include "tests/pluginobject/shadingcorrection/process/devicerig.h"

using namespace ffc::test;
using ffc::genapi::CSoftwareRegister;
using ffc::genapi::SNodeAccess;

namespace {

using Bytes = std::vector<uint8_t>;

// A frame whose every pixel is another number between two greys.
Bytes MakeNoisyFrame(int32_t nWidth, int32_t nHeight, int32_t nLowest, int32_t nHighest, uint32_t nSeed)
{
  CTestRandom random(nSeed);
  Bytes listFrame(static_cast<std::size_t>(nWidth * nHeight));
  for (uint8_t &nPixel : listFrame) {
    nPixel = static_cast<uint8_t>(random.Between(nLowest, nHighest));
  }
  return listFrame;
}

int32_t Acquire(CDeviceRig &rig, const Bytes &listDark, const Bytes &listBright)
{
  rig.Show([&listDark](int) { return Bytes(listDark); });
  const int32_t nDark = rig.Process().AcquireDarkImage();
  rig.Show([&listBright](int) { return Bytes(listBright); });
  const int32_t nBright = rig.Process().AcquireBrightImage();
  return nDark == 0 ? nBright : nDark;
}

// The generator's own table of two frames.
Bytes ComputeBody(const BLOCK_PARAM &stParam, const Bytes *pDark, const Bytes &listBright)
{
  CGetSCCoefficient generator;
  int32_t nSize = 0;
  EXPECT_EQ(generator.SetBlockParam(stParam), 0);
  EXPECT_EQ(generator.GetCoefficientSize(&nSize), 0);
  Bytes listBody(static_cast<std::size_t>(nSize));
  EXPECT_EQ(pDark == nullptr ? generator.CalcWithoutDark(listBright.data(), 8, listBody.data(), &nSize)
                             : generator.CalcWithDark(listBright.data(), pDark->data(), 8, listBody.data(), &nSize),
            0);
  return listBody;
}

Bytes Join(Bytes listFirst, const Bytes &listSecond)
{
  listFirst.insert(listFirst.end(), listSecond.begin(), listSecond.end());
  return listFirst;
}

// Whether a bright frame uses a usable dark one.
bool IsDarkUsed(const Bytes &listDark, const Bytes &listBright)
{
  CDeviceRig rig;
  EXPECT_EQ(Acquire(rig, listDark, listBright), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  return rig.IsDarkInForce();
}

} // namespace

TEST(DeviceExecution, WritesTheGeneratorsTableAndThePlainRecordBehindIt)
{
  for (const char *pFormat : {"Mono8", "BayerRG8", "BayerGB8", "BayerGR8", "BayerBG8"}) {
    CDeviceRig rig(pFormat, 128, 96);
    EXPECT_EQ(rig.Process().SetExpectGray(0x81), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(rig.Process().SetFrameCount("FFCFrameCount_2"), PLUGIN_STATUS_SUCCESS);
    const Bytes listDark = MakeNoisyFrame(128, 96, 8, 12, 1);
    const Bytes listBright = MakeNoisyFrame(128, 96, 100, 220, 2);
    EXPECT_EQ(Acquire(rig, listDark, listBright), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
    const std::string strFormat = pFormat;
    const std::map<std::string, int32_t> mapTypes = {
      {"BayerRG8", 1}, {"BayerGB8", 2}, {"BayerGR8", 3}, {"BayerBG8", 4}};
    const int32_t nType = strFormat == "Mono8" ? 0 : mapTypes.at(strFormat);
    const Bytes listBody = ComputeBody({128, 96, 32, 32, nType}, &listDark, listBright);
    const auto nSize = static_cast<uint32_t>(listBody.size() + 24);
    EXPECT_EQ(Join(listBody, MakeRecord({1, 0, 2, 0, nSize, 0x81})), rig.Camera().Correction().GetWritten()) << pFormat;
    EXPECT_EQ(rig.Camera().Enumeration("FlatFieldCorrection").PeekSymbolic(), "On") << pFormat;
    EXPECT_EQ(rig.Process().GetCorrectionInfo().nValid, 1U) << pFormat;
  }
}

TEST(DeviceExecution, UsesTheSmallBlocksWhenTheCameraIsSetToThem)
{
  CDeviceRig rig("Mono8", 128, 96);
  rig.Camera().Enumeration("FFCBlockSize").Select("BlockSize_256");
  rig.Camera().SaveAsDefault();
  EXPECT_EQ(rig.Process().InitProcess(), PLUGIN_STATUS_SUCCESS);
  const Bytes listDark = MakeNoisyFrame(128, 96, 8, 12, 3);
  const Bytes listBright = MakeNoisyFrame(128, 96, 100, 220, 4);
  EXPECT_EQ(Acquire(rig, listDark, listBright), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  const Bytes listBody = ComputeBody({128, 96, 16, 16, 0}, &listDark, listBright);
  EXPECT_EQ(Join(listBody, MakeRecord({1, 0, 1, 1, 10 * 8 * 8 + 24, 200})), rig.Camera().Correction().GetWritten());
}

TEST(DeviceExecution, WithoutADarkFrameUsesTheBrightOneAlone)
{
  CDeviceRig rig;
  const Bytes listBright = MakeNoisyFrame(64, 64, 100, 220, 5);
  rig.Show([&listBright](int) { return Bytes(listBright); });
  EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  const Bytes listBody = ComputeBody({64, 64, 32, 32, 0}, nullptr, listBright);
  EXPECT_EQ(Join(listBody, MakeRecord({1, 0, 1, 0, 152, 200})), rig.Camera().Correction().GetWritten());
}

TEST(DeviceExecution, UsesTheDarkFrameFromAContrastOfEighty)
{
  EXPECT_TRUE(IsDarkUsed(MakeEvenFrame(20, 0), MakeEvenFrame(100, 0)));
  EXPECT_TRUE(IsDarkUsed(MakeEvenFrame(10, 512), MakeEvenFrame(90, 512)));
  EXPECT_TRUE(IsDarkUsed(MakeEvenFrame(20, 0), MakeUnevenFrame(60, 40 * 1024))); // the brightest block counts
}

TEST(DeviceExecution, IgnoresTheDarkFrameBelowAContrastOfEighty)
{
  EXPECT_FALSE(IsDarkUsed(MakeEvenFrame(20, 0), MakeEvenFrame(99, 1023)));
  EXPECT_FALSE(IsDarkUsed(MakeEvenFrame(20, 0), MakeEvenFrame(99, 922))); // 79.9
  EXPECT_FALSE(IsDarkUsed(MakeUnevenFrame(16, 4 * 1024), MakeEvenFrame(99, 1023)));
  EXPECT_FALSE(IsDarkUsed(MakeEvenFrame(10, 0), MakeEvenFrame(5, 0)));
}

TEST(DeviceExecution, TheContrastIsThatOfTheFirstBrightFrame)
{
  CDeviceRig rig;
  EXPECT_EQ(rig.Process().SetFrameCount("FFCFrameCount_2"), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.AcquireDark(10), PLUGIN_STATUS_SUCCESS);
  rig.Show([](int nFrame) { return MakeEvenFrame(nFrame == 0 ? 89 : 250, 0); });
  EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  EXPECT_FALSE(rig.IsDarkInForce());
  rig.Show([](int nFrame) { return MakeEvenFrame(nFrame == 0 ? 90 : 20, 0); });
  EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  EXPECT_TRUE(rig.IsDarkInForce());
}

TEST(DeviceExecution, MayBeRepeatedOnTheSameFrames)
{
  CDeviceRig rig;
  EXPECT_EQ(rig.Correct(10, 120), PLUGIN_STATUS_SUCCESS);
  const Bytes listFirst = rig.Camera().Correction().GetWritten();
  rig.Camera().Correction().SetWritten({});
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Camera().Correction().GetWritten(), listFirst);
}

TEST(DeviceExecution, CarriesTheFrameCountAndTheGreyThatAreSetNow)
{
  CDeviceRig rig;
  EXPECT_EQ(rig.Correct(10, 120), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().SetFrameCount("FFCFrameCount_16"), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().SetExpectGray(99), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  const Bytes listBytes = rig.Camera().Correction().GetWritten();
  EXPECT_EQ(MakeRecord({1, 0, 16, 0, 152, 99}), Bytes(listBytes.end() - 24, listBytes.end()));
}

TEST(DeviceExecution, WithoutABrightFrameIsInvalidAndTouchesNothing)
{
  CDeviceRig rig;
  EXPECT_EQ(rig.AcquireDark(10), PLUGIN_STATUS_SUCCESS);
  rig.SetHook([](const SNodeAccess &stAccess) { ADD_FAILURE() << stAccess.strNode; });
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(rig.Process().GetCorrectionInfo().nValid, 0U);
}

TEST(DeviceExecution, IntoARegisterOfAnotherLengthIsRefusedAndDoesNotSwitchTheCorrectionOn)
{
  CDeviceRig rig;
  EXPECT_EQ(rig.AcquireBright(120), PLUGIN_STATUS_SUCCESS);
  for (const int64_t nLength : {151, 153, 0}) {
    rig.Camera().Device().Find<CSoftwareRegister>("FFCValueAll")->Length(nLength);
    EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_ROI_MISMATCH) << nLength;
    EXPECT_EQ(rig.Camera().Enumeration("FlatFieldCorrection").PeekSymbolic(), "Off") << nLength;
    EXPECT_TRUE(rig.Camera().Correction().GetWritten().empty()) << nLength;
  }
}

TEST(DeviceExecution, ATableLargerThanTheRegisterIsRefused)
{
  CDeviceRig rig;
  rig.Camera().Integer("FFCCoefficientsSize").OnRead([] { return 151; });
  EXPECT_EQ(rig.Process().InitProcess(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.AcquireBright(120), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_TRUE(rig.Camera().Correction().GetWritten().empty());
}

TEST(DeviceExecution, ARegisterLargerThanTheTableHasZerosBetweenTableAndRecord)
{
  CDeviceRig rig;
  rig.Camera().Integer("FFCCoefficientsSize").OnRead([] { return 160; });
  EXPECT_EQ(rig.Process().InitProcess(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.AcquireBright(120), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  const Bytes listBody = ComputeBody({64, 64, 32, 32, 0}, nullptr, Bytes(64 * 64, 120));
  EXPECT_EQ(Join(Join(listBody, Bytes(8, 0)), MakeRecord({1, 0, 1, 0, 160, 200})),
            rig.Camera().Correction().GetWritten());
}

TEST(DeviceExecution, ACorrectionThatCannotBeSwitchedOnIsReported)
{
  CDeviceRig rig;
  EXPECT_EQ(rig.AcquireBright(120), PLUGIN_STATUS_SUCCESS);
  rig.Camera().Enumeration("FlatFieldCorrection").Access(GenApi::RO);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_FEATURE_ERROR);
}

TEST(DeviceExecution, OnACameraWithoutTheSwitchIsInvalid)
{
  CDeviceRig rig("Mono8", 64, 64, {"FlatFieldCorrection"});
  EXPECT_EQ(rig.AcquireBright(120), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM);
}
