#include <functional>

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/failingnew.h"
#include "tests/pluginobject/shadingcorrection/process/hostrig.h"
#include "tests/pluginobject/shadingcorrection/process/scriptedchooser.h"

using namespace ffc::test;
using ffc::genapi::SNodeAccess;

namespace {

constexpr int64_t SIDES[] = {0,         -1,       -64, int64_t{1} << 31, (int64_t{1} << 32) + 64, int64_t{1} << 62,
                             INT64_MIN, INT64_MAX};

void ChangeTo(CHostRig &rig, int64_t nWidth, int64_t nHeight)
{
  rig.Camera().Integer("Width").Poke(nWidth);
  rig.Camera().Integer("Height").Poke(nHeight);
}

// Makes the payload a number of its own, whatever the geometry.
void FixPayload(CHostRig &rig, int64_t nPayloadSize)
{
  rig.Camera().Integer("PayloadSize").OnRead([nPayloadSize] { return nPayloadSize; });
}

void ShowBytes(CHostRig &rig, std::size_t nBytes)
{
  rig.Show([nBytes](int) { return std::vector<uint8_t>(nBytes, 7); });
}

} // namespace

TEST(HostGeometry, WithoutMemoryNothingIsAcquiredOrComputed)
{
  CHostRig rig;
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
  int32_t nExecuted = 0;
  int32_t nDark = 0;
  int32_t nBright = 0;
  {
    const CFailingNew failing;
    nExecuted = rig.Process().ExecuteCorrection();
    nDark = rig.Process().AcquireDarkImage();
    nBright = rig.Process().AcquireBrightImage();
  }
  EXPECT_EQ(nExecuted, PLUGIN_STATUS_OUT_OF_MEMORY);
  EXPECT_EQ(nDark, PLUGIN_STATUS_OUT_OF_MEMORY);
  EXPECT_EQ(nBright, PLUGIN_STATUS_OUT_OF_MEMORY);
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
}

TEST(HostGeometry, AFrameWithoutPixelsIsRefused)
{
  for (const int64_t nSide : SIDES) {
    CHostRig rig;
    FixPayload(rig, 64 * 48);
    ShowBytes(rig, 64 * 48);
    ChangeTo(rig, nSide, 48);
    EXPECT_EQ(rig.Process().AcquireDarkImage(), PLUGIN_STATUS_INVALID_PARAM) << nSide;
    EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_INVALID_PARAM) << nSide;
    EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM) << nSide;
    ChangeTo(rig, 64, nSide);
    EXPECT_EQ(rig.Process().AcquireDarkImage(), PLUGIN_STATUS_INVALID_PARAM) << nSide;
    EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_INVALID_PARAM) << nSide;
    EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM) << nSide;
  }
}

TEST(HostGeometry, AFrameThatCannotBeJudgedIsInvalid)
{
  for (const auto &[nWidth, nHeight] : {std::pair<int64_t, int64_t>{30, 48}, {64, 30}, {65, 48}, {64, 49}}) {
    CHostRig rig;
    ChangeTo(rig, nWidth, nHeight);
    EXPECT_EQ(rig.AcquireDark(10), PLUGIN_STATUS_INVALID_PARAM) << nWidth << " x " << nHeight;
    EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_INVALID_PARAM) << nWidth << " x " << nHeight;
  }
}

TEST(HostGeometry, AFormatOfUnknownDepthIsInvalid)
{
  CHostRig rig;
  rig.Camera().Enumeration("PixelFormat").Entry("RGBa8", 0x02200016);
  rig.Camera().Enumeration("PixelFormat").Select("RGBa8");
  EXPECT_EQ(rig.AcquireDark(10), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM);
}

TEST(HostGeometry, APackedFormatIsTakenAsTheHostDeliversIt)
{
  CHostRig rig("Mono12");
  rig.Camera().Enumeration("PixelFormat").Entry("Mono12Packed", 0x010C0006);
  rig.Camera().Enumeration("PixelFormat").Select("Mono12Packed");
  const std::vector<uint8_t> listUnpacked = CTestCamera("Mono12").MakeFrame(1600);
  rig.Show([&listUnpacked](int) -> std::vector<uint8_t> { return std::vector<uint8_t>(listUnpacked); });
  EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().GetImageMaxGray(), 100.0);
  EXPECT_EQ(rig.Process().GetImageGrayDiff(), 0.0);
  rig.Process().SetExpectGray(200);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  std::vector<uint8_t> listCorrected(listUnpacked.size());
  EXPECT_EQ(rig.Process().CorrectImage(listUnpacked.data(), listCorrected.data(), 64, 48, 0x01100005),
            PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(CTestCamera("Mono12").MakeFrame(3200), listCorrected);
}

TEST(HostGeometry, ABrightAcquisitionOfAnotherSizeDropsTheDarkFrame)
{
  CHostRig rig;
  EXPECT_EQ(rig.AcquireDark(10), PLUGIN_STATUS_SUCCESS);
  ChangeTo(rig, 96, 64);
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.GetTableBytesPerPixel(), 2U);
}

TEST(HostGeometry, ADarkAcquisitionOfAnotherSizeDropsTheBrightFrame)
{
  CHostRig rig;
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
  ChangeTo(rig, 96, 64);
  EXPECT_EQ(rig.AcquireDark(10), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_BUFFER_SIZE_ERROR);
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.GetTableBytesPerPixel(), 4U);
}

TEST(HostGeometry, AFirstSizeCheckThatCannotReadDropsTheOtherFrameOnly)
{
  CHostRig rig;
  int nLookUps = 0;
  const auto failFirst = [&nLookUps](const SNodeAccess &stAccess) {
    if (stAccess.strNode == "PayloadSize" && nLookUps++ == 0) {
      throw GenICam::TimeoutException("no answer", __FILE__, __LINE__);
    }
  };
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
  rig.SetHook(failFirst);
  EXPECT_EQ(rig.AcquireDark(10), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_BUFFER_SIZE_ERROR);
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.GetTableBytesPerPixel(), 4U);
  nLookUps = 0;
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.GetTableBytesPerPixel(), 2U);
}

TEST(HostGeometry, AnExecutionAfterAChangeOfSizeIsRefused)
{
  CHostRig rig;
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
  ChangeTo(rig, 96, 48);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_BUFFER_SIZE_ERROR);
  rig.Camera().Integer("Width").Access(GenApi::NA);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_FEATURE_ERROR);
  rig.Camera().Integer("Width").Access(GenApi::RW);
  ChangeTo(rig, 64, 48);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
}

TEST(HostGeometry, AFrameOfTheSamePixelCountInAnotherShapeIsNotCorrected)
{
  CHostRig rig;
  std::vector<uint8_t> listCorrected;
  EXPECT_EQ(rig.AcquireDark(10), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  ChangeTo(rig, 48, 64);
  EXPECT_EQ(rig.Correct(rig.Camera().MakeFrame(60), listCorrected), PLUGIN_STATUS_INVALID_PARAM);
  // Neither after an acquisition in the new shape, failed or not.
  rig.Camera().Float("ExposureTime").Poke(-990000.0); // a short wait
  rig.Show([](int) { return std::vector<uint8_t>(); });
  EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_BUFFER_TIMEOUT);
  EXPECT_EQ(rig.Correct(rig.Camera().MakeFrame(60), listCorrected), PLUGIN_STATUS_INVALID_PARAM);
  rig.Camera().Float("ExposureTime").Poke(10000.0);
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Correct(rig.Camera().MakeFrame(60), listCorrected), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(rig.Camera().MakeFrame(0), listCorrected);
  // The frames of the new shape wait for their execution.
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Correct(rig.Camera().MakeFrame(60), listCorrected), PLUGIN_STATUS_SUCCESS);
}

TEST(HostGeometry, ATableLoadedForAnotherShapeCorrectsThatOneAndLeavesTheKeptFramesTheirs)
{
  CHostRig rig;
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
  rig.Process().SetExpectGray(200);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  QTemporaryDir folder;
  CScriptedChooser &chooser = InstallChooser(rig.Process());
  chooser.Choose(folder.filePath("table.ffc"));
  EXPECT_EQ(rig.Process().SaveToFile(), PLUGIN_STATUS_SUCCESS);
  ChangeTo(rig, 48, 64);
  EXPECT_EQ(rig.Process().LoadFromFile(), PLUGIN_STATUS_SUCCESS);
  std::vector<uint8_t> listCorrected;
  EXPECT_EQ(rig.Correct(rig.Camera().MakeFrame(60), listCorrected), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Camera().MakeFrame(120), listCorrected);
  // The bright frame is still one of 64 x 48.
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Correct(rig.Camera().MakeFrame(60), listCorrected), PLUGIN_STATUS_INVALID_PARAM);
  ChangeTo(rig, 64, 48);
  EXPECT_EQ(rig.Correct(rig.Camera().MakeFrame(60), listCorrected), PLUGIN_STATUS_SUCCESS);
}

TEST(HostGeometry, AnAcquisitionInAnotherShapeOrDepthDropsTheOtherFrame)
{
  const auto turn = [](CHostRig &rig) { ChangeTo(rig, 48, 64); };
  const auto deepen = [](CHostRig &rig) { rig.Camera().Enumeration("PixelFormat").Select("Mono12"); };
  for (const std::function<void(CHostRig &)> &fnChange : {std::function<void(CHostRig &)>(turn), {deepen}}) {
    CHostRig rig("Mono10");
    EXPECT_EQ(rig.AcquireBright(400), PLUGIN_STATUS_SUCCESS);
    fnChange(rig);
    EXPECT_EQ(rig.AcquireDark(40), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_BUFFER_SIZE_ERROR);
    EXPECT_EQ(rig.AcquireBright(400), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(rig.GetTableBytesPerPixel(), 4U);
  }
  for (const std::function<void(CHostRig &)> &fnChange : {std::function<void(CHostRig &)>(turn), {deepen}}) {
    CHostRig rig("Mono10");
    EXPECT_EQ(rig.AcquireDark(40), PLUGIN_STATUS_SUCCESS);
    fnChange(rig);
    EXPECT_EQ(rig.AcquireBright(400), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(rig.GetTableBytesPerPixel(), 2U);
  }
}
