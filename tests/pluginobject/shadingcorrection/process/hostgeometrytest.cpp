#include <functional>

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "tests/pluginobject/shadingcorrection/imagecalc/failingnew.h"
#include "tests/pluginobject/shadingcorrection/process/hostrig.h"
#include "tests/pluginobject/shadingcorrection/process/scriptedchooser.h"

using namespace ffc::test;

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

TEST(HostGeometry, APayloadThatCannotBeAllocatedIsOutOfMemory)
{
  for (const int64_t nPayloadSize : {int64_t{1} << 62, INT64_MAX, int64_t{-1}, INT64_MIN}) {
    CHostRig rig;
    const auto mapBefore = rig.TakeSnapshot();
    FixPayload(rig, nPayloadSize);
    EXPECT_EQ(-2, rig.Process().AcquireDarkImage()) << nPayloadSize;
    EXPECT_EQ(-2, rig.Process().AcquireBrightImage()) << nPayloadSize;
    EXPECT_EQ(-3, rig.Process().ExecuteCorrection()) << nPayloadSize;
    EXPECT_EQ((std::vector<int32_t>{11, 11}), rig.TakeSignals()) << nPayloadSize; // the stream never started
    rig.Camera().Integer("PayloadSize").OnRead([&rig] { return rig.Camera().GetPayloadSize(); });
    EXPECT_EQ(mapBefore, rig.TakeSnapshot()) << nPayloadSize;
    EXPECT_EQ(0, rig.AcquireBright(100)) << nPayloadSize;
  }
}

TEST(HostGeometry, WithoutMemoryNothingIsAcquiredOrComputed)
{
  CHostRig rig;
  EXPECT_EQ(0, rig.AcquireBright(100));
  int32_t nExecuted = 0;
  int32_t nDark = 0;
  int32_t nBright = 0;
  {
    const CFailingNew failing;
    nExecuted = rig.Process().ExecuteCorrection();
    nDark = rig.Process().AcquireDarkImage();
    nBright = rig.Process().AcquireBrightImage();
  }
  EXPECT_EQ(-2, nExecuted);
  EXPECT_EQ(-2, nDark);
  EXPECT_EQ(-2, nBright);
  EXPECT_EQ(0, rig.AcquireBright(100));
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
}

TEST(HostGeometry, AFrameWithoutPixelsIsRefused)
{
  for (const int64_t nSide : SIDES) {
    CHostRig rig;
    FixPayload(rig, 64 * 48);
    ShowBytes(rig, 64 * 48);
    ChangeTo(rig, nSide, 48);
    EXPECT_EQ(-3, rig.Process().AcquireDarkImage()) << nSide;
    EXPECT_EQ(-3, rig.Process().AcquireBrightImage()) << nSide;
    EXPECT_EQ(-3, rig.Process().ExecuteCorrection()) << nSide;
    ChangeTo(rig, 64, nSide);
    EXPECT_EQ(-3, rig.Process().AcquireDarkImage()) << nSide;
    EXPECT_EQ(-3, rig.Process().AcquireBrightImage()) << nSide;
    EXPECT_EQ(-3, rig.Process().ExecuteCorrection()) << nSide;
  }
}

TEST(HostGeometry, APayloadSmallerThanThePixelsIsRefused)
{
  for (const int64_t nPayloadSize : {0, 1, 64 * 48 - 1}) {
    CHostRig rig;
    FixPayload(rig, nPayloadSize);
    ShowBytes(rig, 64 * 48);
    EXPECT_EQ(-1012, rig.Process().AcquireDarkImage()) << nPayloadSize;
    EXPECT_EQ(-1012, rig.Process().AcquireBrightImage()) << nPayloadSize;
  }
}

TEST(HostGeometry, ALargerPayloadIsNoHindrance)
{
  CHostRig rig;
  FixPayload(rig, 64 * 48 + 100);
  ShowBytes(rig, 64 * 48 + 100);
  EXPECT_EQ(0, rig.Process().AcquireDarkImage());
  EXPECT_EQ(0, rig.Process().AcquireBrightImage());
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
  EXPECT_EQ(4U, rig.GetTableBytesPerPixel());
}

TEST(HostGeometry, AFrameThatCannotBeJudgedIsInvalid)
{
  for (const auto &[nWidth, nHeight] : {std::pair<int64_t, int64_t>{30, 48}, {64, 30}, {65, 48}, {64, 49}}) {
    CHostRig rig;
    ChangeTo(rig, nWidth, nHeight);
    EXPECT_EQ(-3, rig.AcquireDark(10)) << nWidth << " x " << nHeight;
    EXPECT_EQ(-3, rig.AcquireBright(100)) << nWidth << " x " << nHeight;
  }
}

TEST(HostGeometry, AFormatOfUnknownDepthIsInvalid)
{
  CHostRig rig;
  rig.Camera().Enumeration("PixelFormat").Entry("RGBa8", 0x02200016);
  rig.Camera().Enumeration("PixelFormat").Select("RGBa8");
  EXPECT_EQ(-3, rig.AcquireDark(10));
  EXPECT_EQ(-3, rig.AcquireBright(100));
  EXPECT_EQ(-3, rig.Process().ExecuteCorrection());
}

TEST(HostGeometry, APackedFormatIsTakenAsTheHostDeliversIt)
{
  CHostRig rig("Mono12");
  rig.Camera().Enumeration("PixelFormat").Entry("Mono12Packed", 0x010C0006);
  rig.Camera().Enumeration("PixelFormat").Select("Mono12Packed");
  const std::vector<uint8_t> listUnpacked = CTestCamera("Mono12").MakeFrame(1600);
  rig.Show([&listUnpacked](int) -> std::vector<uint8_t> { return std::vector<uint8_t>(listUnpacked); });
  EXPECT_EQ(0, rig.Process().AcquireBrightImage());
  EXPECT_EQ(100.0, rig.Process().GetImageMaxGray());
  EXPECT_EQ(0.0, rig.Process().GetImageGrayDiff());
  rig.Process().SetExpectGray(200);
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
  std::vector<uint8_t> listCorrected(listUnpacked.size());
  EXPECT_EQ(0, rig.Process().CorrectImage(listUnpacked.data(), listCorrected.data(), 64, 48, 0x01100005));
  EXPECT_EQ(CTestCamera("Mono12").MakeFrame(3200), listCorrected);
}

TEST(HostGeometry, ABrightAcquisitionOfAnotherSizeDropsTheDarkFrame)
{
  CHostRig rig;
  EXPECT_EQ(0, rig.AcquireDark(10));
  ChangeTo(rig, 96, 64);
  EXPECT_EQ(0, rig.AcquireBright(100));
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
  EXPECT_EQ(2U, rig.GetTableBytesPerPixel());
}

TEST(HostGeometry, ADarkAcquisitionOfAnotherSizeDropsTheBrightFrame)
{
  CHostRig rig;
  EXPECT_EQ(0, rig.AcquireBright(100));
  ChangeTo(rig, 96, 64);
  EXPECT_EQ(0, rig.AcquireDark(10));
  EXPECT_EQ(-1012, rig.Process().ExecuteCorrection());
  EXPECT_EQ(0, rig.AcquireBright(100));
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
  EXPECT_EQ(4U, rig.GetTableBytesPerPixel());
}

TEST(HostGeometry, AFirstSizeCheckThatCannotReadDropsTheOtherFrameOnly)
{
  CHostRig rig;
  int nLookUps = 0;
  const auto fnFailFirst = [&nLookUps](const SNodeAccess &stAccess) {
    if (stAccess.strNode == "PayloadSize" && nLookUps++ == 0) {
      throw GenICam::TimeoutException("no answer", __FILE__, __LINE__);
    }
  };
  EXPECT_EQ(0, rig.AcquireBright(100));
  rig.SetHook(fnFailFirst);
  EXPECT_EQ(0, rig.AcquireDark(10));
  EXPECT_EQ(-1012, rig.Process().ExecuteCorrection());
  EXPECT_EQ(0, rig.AcquireBright(100));
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
  EXPECT_EQ(4U, rig.GetTableBytesPerPixel());
  nLookUps = 0;
  EXPECT_EQ(0, rig.AcquireBright(100));
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
  EXPECT_EQ(2U, rig.GetTableBytesPerPixel());
}

TEST(HostGeometry, AnExecutionAfterAChangeOfSizeIsRefused)
{
  CHostRig rig;
  EXPECT_EQ(0, rig.AcquireBright(100));
  ChangeTo(rig, 96, 48);
  EXPECT_EQ(-1012, rig.Process().ExecuteCorrection());
  rig.Camera().Integer("Width").Access(GenApi::NA);
  EXPECT_EQ(-1002, rig.Process().ExecuteCorrection());
  rig.Camera().Integer("Width").Access(GenApi::RW);
  ChangeTo(rig, 64, 48);
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
}

TEST(HostGeometry, AFrameOfTheSamePixelCountInAnotherShapeIsNotCorrected)
{
  CHostRig rig;
  std::vector<uint8_t> listCorrected;
  EXPECT_EQ(0, rig.AcquireDark(10));
  EXPECT_EQ(0, rig.AcquireBright(100));
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
  ChangeTo(rig, 48, 64);
  EXPECT_EQ(-3, rig.Correct(rig.Camera().MakeFrame(60), listCorrected));
  // Neither after an acquisition in the new shape, failed or not.
  rig.Camera().Float("ExposureTime").Poke(-990000.0); // a short wait
  rig.Show([](int) { return std::vector<uint8_t>(); });
  EXPECT_EQ(-1009, rig.Process().AcquireBrightImage());
  EXPECT_EQ(-3, rig.Correct(rig.Camera().MakeFrame(60), listCorrected));
  EXPECT_EQ(0, rig.AcquireBright(100));
  EXPECT_EQ(-3, rig.Correct(rig.Camera().MakeFrame(60), listCorrected));
  EXPECT_EQ(rig.Camera().MakeFrame(0), listCorrected);
  // The frames of the new shape wait for their execution.
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
  EXPECT_EQ(0, rig.Correct(rig.Camera().MakeFrame(60), listCorrected));
}

TEST(HostGeometry, ATableLoadedForAnotherShapeCorrectsThatOneAndLeavesTheKeptFramesTheirs)
{
  CHostRig rig;
  EXPECT_EQ(0, rig.AcquireBright(100));
  rig.Process().SetExpectGray(200);
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
  QTemporaryDir folder;
  CScriptedChooser &chooser = InstallChooser(rig.Process());
  chooser.Choose(folder.filePath("table.ffc"));
  EXPECT_EQ(0, rig.Process().SaveToFile());
  ChangeTo(rig, 48, 64);
  EXPECT_EQ(0, rig.Process().LoadFromFile());
  std::vector<uint8_t> listCorrected;
  EXPECT_EQ(0, rig.Correct(rig.Camera().MakeFrame(60), listCorrected));
  EXPECT_EQ(rig.Camera().MakeFrame(120), listCorrected);
  // The bright frame is still one of 64 x 48.
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
  EXPECT_EQ(-3, rig.Correct(rig.Camera().MakeFrame(60), listCorrected));
  ChangeTo(rig, 64, 48);
  EXPECT_EQ(0, rig.Correct(rig.Camera().MakeFrame(60), listCorrected));
}

TEST(HostGeometry, AnAcquisitionInAnotherShapeOrDepthDropsTheOtherFrame)
{
  const auto fnTurn = [](CHostRig &rig) { ChangeTo(rig, 48, 64); };
  const auto fnDeepen = [](CHostRig &rig) { rig.Camera().Enumeration("PixelFormat").Select("Mono12"); };
  for (const std::function<void(CHostRig &)> &fnChange : {std::function<void(CHostRig &)>(fnTurn), {fnDeepen}}) {
    CHostRig rig("Mono10");
    EXPECT_EQ(0, rig.AcquireBright(400));
    fnChange(rig);
    EXPECT_EQ(0, rig.AcquireDark(40));
    EXPECT_EQ(-1012, rig.Process().ExecuteCorrection());
    EXPECT_EQ(0, rig.AcquireBright(400));
    EXPECT_EQ(0, rig.Process().ExecuteCorrection());
    EXPECT_EQ(4U, rig.GetTableBytesPerPixel());
  }
  for (const std::function<void(CHostRig &)> &fnChange : {std::function<void(CHostRig &)>(fnTurn), {fnDeepen}}) {
    CHostRig rig("Mono10");
    EXPECT_EQ(0, rig.AcquireDark(40));
    fnChange(rig);
    EXPECT_EQ(0, rig.AcquireBright(400));
    EXPECT_EQ(0, rig.Process().ExecuteCorrection());
    EXPECT_EQ(2U, rig.GetTableBytesPerPixel());
  }
}
