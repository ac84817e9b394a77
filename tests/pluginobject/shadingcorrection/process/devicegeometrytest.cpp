#include <gtest/gtest.h>

#include "tests/pluginobject/shadingcorrection/imagecalc/failingnew.h"
#include "tests/pluginobject/shadingcorrection/process/devicerig.h"

using namespace ffc::test;

namespace {

constexpr int64_t SIDES[] = {0,         -1,       -64, int64_t{1} << 31, (int64_t{1} << 32) + 64, int64_t{1} << 62,
                             INT64_MIN, INT64_MAX};

// The factory set's geometry, which is that of the frames; the user's too.
void ChangeTo(CDeviceRig &rig, int64_t nWidth, int64_t nHeight)
{
  rig.Camera().Integer("Width").Poke(nWidth);
  rig.Camera().Integer("Height").Poke(nHeight);
  rig.Camera().SaveAsDefault();
}

// Makes the payload a number of its own, whatever the geometry.
void FixPayload(CDeviceRig &rig, int64_t nPayloadSize)
{
  rig.Camera().Integer("PayloadSize").OnRead([nPayloadSize] { return nPayloadSize; });
}

void ShowBytes(CDeviceRig &rig, std::size_t nBytes, uint8_t nGray = 7)
{
  rig.Show([nBytes, nGray](int) { return std::vector<uint8_t>(nBytes, nGray); });
}

// A camera whose frames the host delivers unpacked.
std::unique_ptr<CDeviceRig> MakePackedRig()
{
  auto pRig = std::make_unique<CDeviceRig>("Mono8");
  pRig->Camera().Enumeration("PixelFormat").Entry("Mono12Packed", 0x010C0006).Select("Mono12Packed");
  pRig->Camera().SaveAsDefault();
  ShowBytes(*pRig, 2 * 64 * 64);
  return pRig;
}

} // namespace

TEST(DeviceGeometry, TheFirstFrameOfAPackedFormatHasTheWrongSizeAndTheNextOneTheRightOne)
{
  const auto pDarkRig = MakePackedRig();
  EXPECT_EQ(-1012, pDarkRig->Process().AcquireDarkImage());
  EXPECT_EQ(0, pDarkRig->Process().AcquireDarkImage());
  EXPECT_EQ(0, pDarkRig->Process().AcquireBrightImage());
  const auto pBrightRig = MakePackedRig();
  EXPECT_EQ(-1012, pBrightRig->Process().AcquireBrightImage());
  EXPECT_EQ(0, pBrightRig->Process().AcquireBrightImage());
  EXPECT_EQ(7.0, pBrightRig->Process().GetImageMaxGray()); // read as bytes
}

TEST(DeviceGeometry, APackedFormatIsTakenWithTheGeometryOfThePreparationBefore)
{
  const auto pRig = MakePackedRig();
  EXPECT_EQ(-1012, pRig->Process().AcquireDarkImage());
  EXPECT_EQ(0, pRig->Process().AcquireDarkImage());
  ChangeTo(*pRig, 128, 96);
  ShowBytes(*pRig, std::size_t{2} * 128 * 96);
  EXPECT_EQ(-1012, pRig->Process().AcquireDarkImage()); // still as large as a frame of 64 x 64
  EXPECT_EQ(0, pRig->Process().AcquireDarkImage());
}

TEST(DeviceGeometry, ADarkFrameOfAnotherDepthTakesTheBrightOneAlong)
{
  CDeviceRig rig;
  EXPECT_EQ(0, rig.AcquireBright(120));
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
  rig.Camera().Enumeration("PixelFormat").Select("Mono12");
  rig.Camera().SaveAsDefault();
  ShowBytes(rig, std::size_t{2} * 64 * 64);
  EXPECT_EQ(0, rig.Process().AcquireDarkImage());
  EXPECT_EQ(-1012, rig.Process().ExecuteCorrection());
}

TEST(DeviceGeometry, APayloadThatCannotBeAllocatedIsOutOfMemory)
{
  for (const int64_t nPayloadSize : {int64_t{1} << 62, INT64_MAX, int64_t{-1}, INT64_MIN}) {
    CDeviceRig rig;
    const auto mapBefore = rig.TakeSettings();
    FixPayload(rig, nPayloadSize);
    EXPECT_EQ(-2, rig.Process().AcquireDarkImage()) << nPayloadSize;
    EXPECT_EQ(-2, rig.Process().AcquireBrightImage()) << nPayloadSize;
    EXPECT_EQ(-3, rig.Process().ExecuteCorrection()) << nPayloadSize;
    EXPECT_EQ((std::vector<int32_t>{11, 11}), rig.TakeSignals()) << nPayloadSize; // the stream never started
    EXPECT_EQ(258U, rig.Process().WaitImageRequest()) << nPayloadSize;
    FixPayload(rig, 64 * 64);
    EXPECT_EQ("", DescribeChanges(mapBefore, rig.TakeSettings())) << nPayloadSize;
    EXPECT_EQ(0, rig.AcquireBright(120)) << nPayloadSize;
  }
}

TEST(DeviceGeometry, WithoutMemoryAnAcquisitionFailsAndTheCameraIsAsBefore)
{
  CDeviceRig rig;
  rig.ChangeSettings();
  const auto mapBefore = rig.TakeSettings();
  for (const bool bBright : {false, true}) {
    const auto fnAcquire = [&] { return bBright ? rig.AcquireBright(120) : rig.AcquireDark(10); };
    int32_t nStatus = -2;
    int32_t nSuccesses = 0;
    for (; nStatus != 0 && nSuccesses < 50; ++nSuccesses) {
      {
        const CFailingNew failing(nSuccesses);
        nStatus = fnAcquire();
      }
      EXPECT_TRUE(nStatus == -2 || nStatus == 0) << nStatus;
      EXPECT_EQ("", DescribeChanges(mapBefore, rig.TakeSettings())) << nSuccesses;
      EXPECT_EQ(258U, rig.Process().WaitImageRequest()) << nSuccesses;
    }
    EXPECT_EQ(0, nStatus);
    EXPECT_GE(nSuccesses, 4) << "frame, buffer, block means and then all of them";
  }
}

TEST(DeviceGeometry, AFailedAcquisitionGivesAllItsBuffersBack)
{
  for (const bool bBright : {false, true}) {
    CDeviceRig rig;
    const auto fnFail = [&] {
      rig.ShowNothing();
      const int32_t nStatus = bBright ? rig.Process().AcquireBrightImage() : rig.Process().AcquireDarkImage();
      rig.TakeSignals();
      return nStatus;
    };
    EXPECT_EQ(-1009, fnFail()); // by now all features have been looked up
    {
      const CFailingNew failing(1); // ends at the second buffer
      EXPECT_EQ(-2, fnFail());
    }
    const int64_t nWithout = CountLiveAllocations();
    EXPECT_EQ(-1009, fnFail());
    EXPECT_EQ(nWithout, CountLiveAllocations()) << (bBright ? "bright" : "dark");
  }
}

TEST(DeviceGeometry, WithoutMemoryNothingIsComputedLoadedOrSaved)
{
  CDeviceRig rig;
  EXPECT_EQ(0, rig.Correct(10, 120));
  const std::vector<uint8_t> listWritten = rig.Camera().Correction().GetWritten();
  const FFCInfo stInfo = rig.Process().GetCorrectionInfo();
  for (int32_t nSuccesses = 0; nSuccesses < 3; ++nSuccesses) { // the body, the bright means and the dark ones
    const CFailingNew failing(nSuccesses);
    EXPECT_EQ(-2, rig.Process().ExecuteCorrection()) << nSuccesses;
  }
  {
    const CFailingNew failing;
    EXPECT_EQ(-2, rig.Process().LoadFromFlash());
    EXPECT_EQ(-2, rig.Process().SaveToFile());
  }
  EXPECT_EQ(listWritten, rig.Camera().Correction().GetWritten());
  EXPECT_EQ(stInfo.nFrameCount, rig.Process().GetCorrectionInfo().nFrameCount);
  {
    const CFailingNew failing;
    EXPECT_EQ(-2, rig.Process().InitProcess());
  }
  EXPECT_EQ(-3, rig.Process().ExecuteCorrection());
  EXPECT_EQ(0, rig.Process().InitProcess());
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
}

TEST(DeviceGeometry, AFrameWithoutPixelsIsRefused)
{
  for (const int64_t nSide : SIDES) {
    for (const bool bWidth : {true, false}) {
      CDeviceRig rig;
      FixPayload(rig, 64 * 64);
      ShowBytes(rig, 64 * 64);
      ChangeTo(rig, bWidth ? nSide : 64, bWidth ? 64 : nSide);
      EXPECT_EQ(-3, rig.Process().AcquireDarkImage()) << nSide;
      EXPECT_EQ(-3, rig.Process().AcquireBrightImage()) << nSide;
      EXPECT_NE(0, rig.Process().ExecuteCorrection()) << nSide;
    }
  }
}

TEST(DeviceGeometry, APayloadSmallerThanThePixelsIsRefused)
{
  for (const int64_t nPayloadSize : {0, 1, 64 * 64 - 1}) {
    CDeviceRig rig;
    FixPayload(rig, nPayloadSize);
    ShowBytes(rig, 64 * 64);
    EXPECT_EQ(-1012, rig.Process().AcquireDarkImage()) << nPayloadSize;
    EXPECT_EQ(-1012, rig.Process().AcquireBrightImage()) << nPayloadSize;
    EXPECT_EQ(-3, rig.Process().ExecuteCorrection()) << nPayloadSize;
  }
}

TEST(DeviceGeometry, ALargerPayloadIsNoHindrance)
{
  CDeviceRig rig;
  FixPayload(rig, 64 * 64 + 100);
  ShowBytes(rig, 64 * 64 + 100, 10);
  EXPECT_EQ(0, rig.Process().AcquireDarkImage());
  ShowBytes(rig, 64 * 64 + 100, 120);
  EXPECT_EQ(0, rig.Process().AcquireBrightImage());
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
  EXPECT_TRUE(rig.IsDarkInForce());
}

TEST(DeviceGeometry, ADeepFormatIsReadAsBytes)
{
  CDeviceRig rig("Mono12");
  rig.Show([](int) { return std::vector<uint8_t>(std::size_t{2} * 64 * 64, 9); });
  EXPECT_EQ(0, rig.Process().AcquireDarkImage());
  EXPECT_EQ(9.0, rig.Process().GetImageMaxGray());
  EXPECT_EQ(0, rig.Process().AcquireBrightImage());
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
}

TEST(DeviceGeometry, ADarkFrameOfAnotherGeometryIsNotUsed)
{
  for (const auto &[nWidth, nHeight] : {std::pair<int64_t, int64_t>{128, 96}, {32, 32}, {128, 32}}) {
    CDeviceRig rig;
    ChangeTo(rig, nWidth, nHeight);
    EXPECT_EQ(0, rig.AcquireDark(10));
    ChangeTo(rig, 64, 64);
    EXPECT_EQ(0, rig.AcquireBright(120));
    EXPECT_EQ(0, rig.Process().ExecuteCorrection()) << nWidth << " x " << nHeight;
    EXPECT_FALSE(rig.IsDarkInForce()) << nWidth << " x " << nHeight;
  }
}

TEST(DeviceGeometry, ABrightFrameOfAnotherGeometryThanTheLastAnalysedFrameIsRefused)
{
  for (const auto &[nWidth, nHeight] : {std::pair<int64_t, int64_t>{128, 96}, {32, 32}, {128, 32}}) {
    CDeviceRig rig;
    EXPECT_EQ(0, rig.AcquireBright(120));
    ChangeTo(rig, nWidth, nHeight);
    EXPECT_EQ(0, rig.AcquireDark(10));
    EXPECT_EQ(-1012, rig.Process().ExecuteCorrection()) << nWidth << " x " << nHeight;
    EXPECT_TRUE(rig.Camera().Correction().GetWritten().empty()) << nWidth << " x " << nHeight;
    ChangeTo(rig, 64, 64);
    EXPECT_EQ(0, rig.AcquireBright(120));
    EXPECT_EQ(0, rig.Process().ExecuteCorrection()) << nWidth << " x " << nHeight;
  }
}

TEST(DeviceGeometry, AnAnalysisThatFailedStandsForTheLastAnalysedFrameToo)
{
  CDeviceRig rig;
  EXPECT_EQ(0, rig.AcquireBright(120));
  ChangeTo(rig, 66, 65); // an odd side: no blocks
  EXPECT_EQ(-3, rig.AcquireDark(10));
  EXPECT_EQ(-1012, rig.Process().ExecuteCorrection());
}

TEST(DeviceGeometry, FramesOfAnotherGeometryThanAtTheInitialisationNeedNoMoreThanTheRegisterHas)
{
  CDeviceRig rig;
  ChangeTo(rig, 128, 96);
  EXPECT_EQ(0, rig.AcquireBright(120));
  EXPECT_EQ(-3, rig.Process().ExecuteCorrection()); // the table would be larger
  ChangeTo(rig, 32, 32);
  EXPECT_EQ(0, rig.AcquireBright(120));
  EXPECT_EQ(-1015, rig.Process().ExecuteCorrection()); // the camera's register has another length by now
  EXPECT_EQ(0, rig.Process().InitProcess());
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
}
