#include <utility>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/failingnew.h"
#include "tests/pluginobject/shadingcorrection/process/vignettingrig.h"

using ffc::genapi::SNodeAccess;
using ffc::pluginobject::CFeatureAccess;
using namespace ffc::test;

namespace {

constexpr int64_t PAYLOAD = 192 * 128;

void FixPayload(CVignettingRig &rig, int64_t nPayloadSize)
{
  rig.Camera().Integer("PayloadSize").OnRead([nPayloadSize] { return nPayloadSize; });
}

void ChangeTo(CVignettingRig &rig, const char *pName, int64_t nSide)
{
  rig.Camera().Integer(pName).Poke(nSide);
}

// A failed acquisition, which leaves the camera as it was and no frame.
void ExpectFailure(int32_t nStatus, CVignettingRig &rig)
{
  const Settings mapBefore = rig.TakeSettings();
  EXPECT_EQ(rig.Process().AcquireBrightImage(), nStatus);
  EXPECT_EQ(DescribeChanges(mapBefore, rig.TakeSettings()), "");
  EXPECT_EQ(rig.Process().WaitImageRequest(), 258U);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM);
}

} // namespace

TEST(VignettingGeometry, AFrameOfAnotherSizeThanTheLastOneIsTaken)
{
  CVignettingRig rig;
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
  for (const int64_t nWidth : {640, 64, 192, 128}) {
    ChangeTo(rig, "Width", nWidth);
    const auto nGray = static_cast<uint32_t>(nWidth / 4);
    EXPECT_EQ(rig.AcquireBright(nGray), PLUGIN_STATUS_SUCCESS) << nWidth;
    EXPECT_EQ(rig.Process().GetImageMaxGray(), nGray) << nWidth;
    EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS) << nWidth;
  }
}

TEST(VignettingGeometry, AFrameOfAnotherSizeIsTakenAlsoWhenTheCameraDidNotTellTheSizeAtOnce)
{
  CVignettingRig rig;
  for (const int64_t nWidth : {64, 640}) {
    EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
    ChangeTo(rig, "Width", nWidth);
    bool bAsked = false;
    rig.SetHook([&bAsked](const SNodeAccess &stAccess) {
      if (stAccess.strNode == "PayloadSize" && !std::exchange(bAsked, true)) {
        throw GenICam::TimeoutException("no answer", __FILE__, __LINE__);
      }
    });
    EXPECT_EQ(rig.Correct(100), PLUGIN_STATUS_SUCCESS) << nWidth;
    EXPECT_TRUE(bAsked);
    rig.SetHook(nullptr);
  }
}

TEST(VignettingGeometry, AFrameOfAnotherShapeButTheSameSizeIsTaken)
{
  CVignettingRig rig;
  EXPECT_EQ(rig.Correct(100), PLUGIN_STATUS_SUCCESS);
  ChangeTo(rig, "Width", 384);
  ChangeTo(rig, "Height", 64);
  EXPECT_EQ(rig.Correct(100), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(static_cast<std::size_t>(8 * 4 * 2 + 24), rig.GetWritten().size());
}

TEST(VignettingGeometry, AnotherBitDepthIsTaken)
{
  CVignettingRig rig;
  EXPECT_EQ(rig.Correct(100), PLUGIN_STATUS_SUCCESS);
  rig.Camera().Enumeration("PixelFormat").Select("Mono12");
  EXPECT_EQ(rig.Correct(1616), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().GetImageMaxGray(), 101.0);
}

TEST(VignettingGeometry, APackedFormatIsTakenUnpackedAtItsDepth)
{
  CVignettingRig rig;
  rig.Camera().Enumeration("PixelFormat").Entry("Mono12Packed", 0x010C0006).Select("Mono12Packed");
  EXPECT_EQ(static_cast<uint32_t>(PAYLOAD * 3 / 2), rig.Camera().GetPayloadSize());
  EXPECT_EQ(rig.Acquire({CTestImage(192, 128, 12, 3000)}), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().GetImageMaxGray(), 187.0);
  EXPECT_EQ(rig.Process().GetImageGrayDiff(), 0.0);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
}

TEST(VignettingGeometry, AFrameWithoutPixelsOrWithTooManyIsRefused)
{
  for (const char *pName : {"Width", "Height"}) {
    for (const int64_t nSide : {int64_t{0}, int64_t{-64}, INT64_MIN, INT64_MAX, int64_t{1} << 31,
                                (int64_t{1} << 32) + 64, int64_t{1} << 62}) {
      CVignettingRig rig;
      FixPayload(rig, PAYLOAD);
      rig.Show([](int) { return std::vector<uint8_t>(PAYLOAD, 100); });
      ChangeTo(rig, pName, nSide);
      EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_INVALID_PARAM) << nSide;
      EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM) << nSide;
    }
  }
}

TEST(VignettingGeometry, AFrameWithoutBlocksIsInvalid)
{
  for (const char *pName : {"Width", "Height"}) {
    for (const int64_t nSide : {62, 127, 193}) { // smaller than a block; odd
      CVignettingRig rig;
      ChangeTo(rig, pName, nSide);
      rig.ShowGray(100);
      ExpectFailure(-3, rig);
    }
  }
}

TEST(VignettingGeometry, AFailedAcquisitionKeepsNoMemory)
{
  CCorrectingCamera camera("Mono8", 192, 128, {}, ECoefficients::Vignetting);
  camera.Float("ExposureTime").Poke(-970000.0); // 30 ms to wait
  CVignettingCorrectionPro_Dev process{CFeatureAccess(&camera.Device())};
  EXPECT_EQ(process.InitProcess(), PLUGIN_STATUS_SUCCESS);
  const int64_t nBefore = CountLiveAllocations();
  EXPECT_EQ(process.AcquireBrightImage(), PLUGIN_STATUS_BUFFER_TIMEOUT);
  EXPECT_EQ(CountLiveAllocations(), nBefore);
}

TEST(VignettingGeometry, WithoutMemoryAnExecutionFailsAndSucceedsWhenThereIsSome)
{
  CVignettingRig rig;
  EXPECT_EQ(rig.Correct(100), PLUGIN_STATUS_SUCCESS);
  const std::vector<uint8_t> listWritten = rig.GetWritten();
  ChangeTo(rig, "Width", 320); // new memory for the coefficients as well
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
  int32_t nStatus = -2;
  int32_t nSuccesses = 0;
  for (; nStatus == -2 && nSuccesses < 50; ++nSuccesses) {
    EXPECT_EQ(rig.GetWritten(), listWritten) << nSuccesses;
    // The size in the record is that of the coefficients that there is room for.
    EXPECT_EQ(rig.Process().GetCorrectionInfo().nCoefficientsSize, nSuccesses <= 1 ? 72U : 88U) << nSuccesses;
    const CFailingNew failing(nSuccesses);
    nStatus = rig.Process().ExecuteCorrection();
  }
  EXPECT_EQ(nStatus, PLUGIN_STATUS_SUCCESS);
  EXPECT_GE(nSuccesses, 7) << "coefficients, table, calculator, pixels, means, gains, quads";
  EXPECT_EQ(rig.GetWritten().size(), 88U);
}

TEST(VignettingGeometry, WithoutMemoryNothingIsInitialisedLoadedOrSaved)
{
  CVignettingRig rig;
  EXPECT_EQ(rig.Correct(100), PLUGIN_STATUS_SUCCESS);
  const std::vector<uint8_t> listWritten = rig.GetWritten();
  const std::vector<uint32_t> listInfo = rig.GetInfo();
  {
    const CFailingNew failing;
    EXPECT_EQ(rig.Process().LoadFromFlash(), PLUGIN_STATUS_OUT_OF_MEMORY);
    EXPECT_EQ(rig.Process().SaveToFile(), PLUGIN_STATUS_OUT_OF_MEMORY);
    EXPECT_EQ(rig.Process().InitProcess(), PLUGIN_STATUS_OUT_OF_MEMORY);
  }
  EXPECT_EQ(rig.GetWritten(), listWritten);
  EXPECT_EQ(rig.GetInfo(), listInfo);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(rig.Process().InitProcess(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
}
