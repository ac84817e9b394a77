#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
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
  EXPECT_EQ(pDarkRig->Process().AcquireDarkImage(), PLUGIN_STATUS_BUFFER_SIZE_ERROR);
  EXPECT_EQ(pDarkRig->Process().AcquireDarkImage(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(pDarkRig->Process().AcquireBrightImage(), PLUGIN_STATUS_SUCCESS);
  const auto pBrightRig = MakePackedRig();
  EXPECT_EQ(pBrightRig->Process().AcquireBrightImage(), PLUGIN_STATUS_BUFFER_SIZE_ERROR);
  EXPECT_EQ(pBrightRig->Process().AcquireBrightImage(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(pBrightRig->Process().GetImageMaxGray(), 7.0); // read as bytes
}

TEST(DeviceGeometry, APackedFormatIsTakenWithTheGeometryOfThePreparationBefore)
{
  const auto pRig = MakePackedRig();
  EXPECT_EQ(pRig->Process().AcquireDarkImage(), PLUGIN_STATUS_BUFFER_SIZE_ERROR);
  EXPECT_EQ(pRig->Process().AcquireDarkImage(), PLUGIN_STATUS_SUCCESS);
  ChangeTo(*pRig, 128, 96);
  ShowBytes(*pRig, std::size_t{2} * 128 * 96);
  EXPECT_EQ(pRig->Process().AcquireDarkImage(),
            PLUGIN_STATUS_BUFFER_SIZE_ERROR); // still as large as a frame of 64 x 64
  EXPECT_EQ(pRig->Process().AcquireDarkImage(), PLUGIN_STATUS_SUCCESS);
}

TEST(DeviceGeometry, ADarkFrameOfAnotherDepthTakesTheBrightOneAlong)
{
  CDeviceRig rig;
  EXPECT_EQ(rig.AcquireBright(120), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  rig.Camera().Enumeration("PixelFormat").Select("Mono12");
  rig.Camera().SaveAsDefault();
  ShowBytes(rig, std::size_t{2} * 64 * 64);
  EXPECT_EQ(rig.Process().AcquireDarkImage(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_BUFFER_SIZE_ERROR);
}

TEST(DeviceGeometry, AFailedAcquisitionGivesAllItsBuffersBack)
{
  for (const bool bBright : {false, true}) {
    CDeviceRig rig;
    const auto fail = [&] {
      rig.ShowNothing();
      const int32_t nStatus = bBright ? rig.Process().AcquireBrightImage() : rig.Process().AcquireDarkImage();
      rig.TakeSignals();
      return nStatus;
    };
    const auto failAtBuffer = [&](int nBuffer) {
      const CFailingNew failing(nBuffer);
      return fail();
    };
    EXPECT_EQ(fail(), PLUGIN_STATUS_BUFFER_TIMEOUT); // by now all features have been looked up
    EXPECT_EQ(failAtBuffer(0), -2);
    const int64_t nWithout = CountLiveAllocations();
    EXPECT_EQ(failAtBuffer(1), -2);
    EXPECT_EQ(CountLiveAllocations(), nWithout) << (bBright ? "bright" : "dark");
    EXPECT_EQ(fail(), PLUGIN_STATUS_BUFFER_TIMEOUT);
    EXPECT_EQ(CountLiveAllocations(), nWithout) << (bBright ? "bright" : "dark");
  }
}

TEST(DeviceGeometry, WithoutMemoryNothingIsComputedLoadedOrSaved)
{
  CDeviceRig rig;
  EXPECT_EQ(rig.Correct(10, 120), PLUGIN_STATUS_SUCCESS);
  const std::vector<uint8_t> listWritten = rig.Camera().Correction().GetWritten();
  const FFCInfo stInfo = rig.Process().GetCorrectionInfo();
  for (int32_t nSuccesses = 0; nSuccesses < 3; ++nSuccesses) { // the body, the bright means and the dark ones
    const CFailingNew failing(nSuccesses);
    EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_OUT_OF_MEMORY) << nSuccesses;
  }
  {
    const CFailingNew failing;
    EXPECT_EQ(rig.Process().LoadFromFlash(), PLUGIN_STATUS_OUT_OF_MEMORY);
    EXPECT_EQ(rig.Process().SaveToFile(), PLUGIN_STATUS_OUT_OF_MEMORY);
  }
  EXPECT_EQ(rig.Camera().Correction().GetWritten(), listWritten);
  EXPECT_EQ(rig.Process().GetCorrectionInfo().nFrameCount, stInfo.nFrameCount);
  {
    const CFailingNew failing;
    EXPECT_EQ(rig.Process().InitProcess(), PLUGIN_STATUS_OUT_OF_MEMORY);
  }
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(rig.Process().InitProcess(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
}

TEST(DeviceGeometry, AFrameWithoutPixelsIsRefused)
{
  for (const int64_t nSide : SIDES) {
    for (const bool bWidth : {true, false}) {
      CDeviceRig rig;
      FixPayload(rig, 64 * 64);
      ShowBytes(rig, 64 * 64);
      ChangeTo(rig, bWidth ? nSide : 64, bWidth ? 64 : nSide);
      EXPECT_EQ(rig.Process().AcquireDarkImage(), PLUGIN_STATUS_INVALID_PARAM) << nSide;
      EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_INVALID_PARAM) << nSide;
      EXPECT_NE(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS) << nSide;
    }
  }
}

TEST(DeviceGeometry, ADeepFormatIsReadAsBytes)
{
  CDeviceRig rig("Mono12");
  rig.Show([](int) { return std::vector<uint8_t>(std::size_t{2} * 64 * 64, 9); });
  EXPECT_EQ(rig.Process().AcquireDarkImage(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().GetImageMaxGray(), 9.0);
  EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
}

TEST(DeviceGeometry, ADarkFrameOfAnotherGeometryIsNotUsed)
{
  for (const auto &[nWidth, nHeight] : {std::pair<int64_t, int64_t>{128, 96}, {32, 32}, {128, 32}}) {
    CDeviceRig rig;
    ChangeTo(rig, nWidth, nHeight);
    EXPECT_EQ(rig.AcquireDark(10), PLUGIN_STATUS_SUCCESS);
    ChangeTo(rig, 64, 64);
    EXPECT_EQ(rig.AcquireBright(120), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS) << nWidth << " x " << nHeight;
    EXPECT_FALSE(rig.IsDarkInForce()) << nWidth << " x " << nHeight;
  }
}

TEST(DeviceGeometry, ABrightFrameOfAnotherGeometryThanTheLastAnalysedFrameIsRefused)
{
  for (const auto &[nWidth, nHeight] : {std::pair<int64_t, int64_t>{128, 96}, {32, 32}, {128, 32}}) {
    CDeviceRig rig;
    EXPECT_EQ(rig.AcquireBright(120), PLUGIN_STATUS_SUCCESS);
    ChangeTo(rig, nWidth, nHeight);
    EXPECT_EQ(rig.AcquireDark(10), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_BUFFER_SIZE_ERROR) << nWidth << " x " << nHeight;
    EXPECT_TRUE(rig.Camera().Correction().GetWritten().empty()) << nWidth << " x " << nHeight;
    ChangeTo(rig, 64, 64);
    EXPECT_EQ(rig.AcquireBright(120), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS) << nWidth << " x " << nHeight;
  }
}

TEST(DeviceGeometry, AnAnalysisThatFailedStandsForTheLastAnalysedFrameToo)
{
  CDeviceRig rig;
  EXPECT_EQ(rig.AcquireBright(120), PLUGIN_STATUS_SUCCESS);
  ChangeTo(rig, 66, 65); // an odd side: no blocks
  EXPECT_EQ(rig.AcquireDark(10), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_BUFFER_SIZE_ERROR);
}

TEST(DeviceGeometry, FramesOfAnotherGeometryThanAtTheInitialisationNeedNoMoreThanTheRegisterHas)
{
  CDeviceRig rig;
  ChangeTo(rig, 128, 96);
  EXPECT_EQ(rig.AcquireBright(120), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM); // the table would be larger
  ChangeTo(rig, 32, 32);
  EXPECT_EQ(rig.AcquireBright(120), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(),
            PLUGIN_STATUS_ROI_MISMATCH); // the camera's register has another length by now
  EXPECT_EQ(rig.Process().InitProcess(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
}
