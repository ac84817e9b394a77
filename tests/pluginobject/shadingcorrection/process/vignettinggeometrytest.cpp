#include <utility>

#include <gtest/gtest.h>

#include "tests/pluginobject/shadingcorrection/imagecalc/failingnew.h"
#include "tests/pluginobject/shadingcorrection/process/vignettingrig.h"

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
  EXPECT_EQ(nStatus, rig.Process().AcquireBrightImage());
  EXPECT_EQ("", DescribeChanges(mapBefore, rig.TakeSettings()));
  EXPECT_EQ(258U, rig.Process().WaitImageRequest());
  EXPECT_EQ(-3, rig.Process().ExecuteCorrection());
}

} // namespace

TEST(VignettingGeometry, AFrameOfAnotherSizeThanTheLastOneIsTaken)
{
  CVignettingRig rig;
  EXPECT_EQ(0, rig.AcquireBright(100));
  for (const int64_t nWidth : {640, 64, 192, 128}) {
    ChangeTo(rig, "Width", nWidth);
    const auto nGray = static_cast<uint32_t>(nWidth / 4);
    EXPECT_EQ(0, rig.AcquireBright(nGray)) << nWidth;
    EXPECT_EQ(nGray, rig.Process().GetImageMaxGray()) << nWidth;
    EXPECT_EQ(0, rig.Process().ExecuteCorrection()) << nWidth;
  }
}

TEST(VignettingGeometry, AFrameOfAnotherSizeIsTakenAlsoWhenTheCameraDidNotTellTheSizeAtOnce)
{
  CVignettingRig rig;
  for (const int64_t nWidth : {64, 640}) {
    EXPECT_EQ(0, rig.AcquireBright(100));
    ChangeTo(rig, "Width", nWidth);
    bool bAsked = false;
    rig.SetHook([&bAsked](const SNodeAccess &stAccess) {
      if (stAccess.strNode == "PayloadSize" && !std::exchange(bAsked, true)) {
        throw GenICam::TimeoutException("no answer", __FILE__, __LINE__);
      }
    });
    EXPECT_EQ(0, rig.Correct(100)) << nWidth;
    EXPECT_TRUE(bAsked);
    rig.SetHook(nullptr);
  }
}

TEST(VignettingGeometry, AFrameOfAnotherShapeButTheSameSizeIsTaken)
{
  CVignettingRig rig;
  EXPECT_EQ(0, rig.Correct(100));
  ChangeTo(rig, "Width", 384);
  ChangeTo(rig, "Height", 64);
  EXPECT_EQ(0, rig.Correct(100));
  EXPECT_EQ(static_cast<std::size_t>(8 * 4 * 2 + 24), rig.GetWritten().size());
}

TEST(VignettingGeometry, AnotherBitDepthIsTaken)
{
  CVignettingRig rig;
  EXPECT_EQ(0, rig.Correct(100));
  rig.Camera().Enumeration("PixelFormat").Select("Mono12");
  EXPECT_EQ(0, rig.Correct(1616));
  EXPECT_EQ(101.0, rig.Process().GetImageMaxGray());
}

TEST(VignettingGeometry, APackedFormatIsTakenUnpackedAtItsDepth)
{
  CVignettingRig rig;
  rig.Camera().Enumeration("PixelFormat").Entry("Mono12Packed", 0x010C0006).Select("Mono12Packed");
  EXPECT_EQ(static_cast<uint32_t>(PAYLOAD * 3 / 2), rig.Camera().GetPayloadSize());
  EXPECT_EQ(0, rig.Acquire({CTestImage(192, 128, 12, 3000)}));
  EXPECT_EQ(187.0, rig.Process().GetImageMaxGray());
  EXPECT_EQ(0.0, rig.Process().GetImageGrayDiff());
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
}

TEST(VignettingGeometry, APayloadThatCannotBeAllocatedIsOutOfMemory)
{
  for (const int64_t nPayloadSize : {int64_t{1} << 62, INT64_MAX, int64_t{-1}, INT64_MIN}) {
    CVignettingRig rig;
    rig.Camera().Enumeration("TriggerMode").Select("On");
    EXPECT_EQ(0, rig.AcquireBright(100));
    FixPayload(rig, nPayloadSize);
    ExpectFailure(-2, rig);
    FixPayload(rig, PAYLOAD);
    EXPECT_EQ(0, rig.Correct(100)) << nPayloadSize;
  }
}

TEST(VignettingGeometry, APayloadSmallerThanThePixelsIsRefused)
{
  for (const int64_t nPayloadSize : {int64_t{0}, int64_t{1}, PAYLOAD - 1}) {
    CVignettingRig rig;
    FixPayload(rig, nPayloadSize);
    rig.ShowGray(100);
    ExpectFailure(-1012, rig);
  }
}

TEST(VignettingGeometry, ALargerPayloadIsNoHindrance)
{
  CVignettingRig rig;
  FixPayload(rig, PAYLOAD + 100);
  rig.Show([](int) { return std::vector<uint8_t>(PAYLOAD + 100, 100); });
  EXPECT_EQ(0, rig.Process().AcquireBrightImage());
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
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
      EXPECT_EQ(-3, rig.Process().AcquireBrightImage()) << nSide;
      EXPECT_EQ(-3, rig.Process().ExecuteCorrection()) << nSide;
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

TEST(VignettingGeometry, WithoutMemoryAnAcquisitionFailsAndTheCameraIsAsBefore)
{
  CVignettingRig rig;
  rig.Camera().Enumeration("TriggerMode").Select("On");
  const Settings mapBefore = rig.TakeSettings();
  int32_t nStatus = -2;
  int32_t nSuccesses = 0;
  for (; nStatus == -2 && nSuccesses < 50; ++nSuccesses) {
    rig.ShowGray(100);
    {
      const CFailingNew failing(nSuccesses);
      nStatus = rig.Process().AcquireBrightImage();
    }
    EXPECT_EQ("", DescribeChanges(mapBefore, rig.TakeSettings())) << nSuccesses;
    EXPECT_EQ(258U, rig.Process().WaitImageRequest()) << nSuccesses;
    EXPECT_EQ(nStatus == 0 ? 0 : -3, rig.Process().ExecuteCorrection()) << nSuccesses;
  }
  EXPECT_EQ(0, nStatus);
  EXPECT_GE(nSuccesses, 5) << "average, sums, frame, block means and then all of them";
}

TEST(VignettingGeometry, AFailedAcquisitionKeepsNoMemory)
{
  CCorrectingCamera camera("Mono8", 192, 128, {}, ECoefficients::Vignetting);
  camera.Float("ExposureTime").Poke(-970000.0); // 30 ms to wait
  CVignettingCorrectionPro_Dev process{CFeatureAccess(&camera.Device())};
  EXPECT_EQ(0, process.InitProcess());
  const int64_t nBefore = CountLiveAllocations();
  EXPECT_EQ(-1009, process.AcquireBrightImage());
  EXPECT_EQ(nBefore, CountLiveAllocations());
}

TEST(VignettingGeometry, WithoutMemoryAnExecutionFailsAndSucceedsWhenThereIsSome)
{
  CVignettingRig rig;
  EXPECT_EQ(0, rig.Correct(100));
  const std::vector<uint8_t> listWritten = rig.GetWritten();
  ChangeTo(rig, "Width", 320); // new memory for the coefficients as well
  EXPECT_EQ(0, rig.AcquireBright(100));
  int32_t nStatus = -2;
  int32_t nSuccesses = 0;
  for (; nStatus == -2 && nSuccesses < 50; ++nSuccesses) {
    EXPECT_EQ(listWritten, rig.GetWritten()) << nSuccesses;
    // The size in the record is that of the coefficients that there is room for.
    EXPECT_EQ(nSuccesses <= 1 ? 72U : 88U, rig.Process().GetCorrectionInfo().nCoefficientsSize) << nSuccesses;
    const CFailingNew failing(nSuccesses);
    nStatus = rig.Process().ExecuteCorrection();
  }
  EXPECT_EQ(0, nStatus);
  EXPECT_GE(nSuccesses, 7) << "coefficients, table, calculator, pixels, means, gains, quads";
  EXPECT_EQ(88U, rig.GetWritten().size());
}

TEST(VignettingGeometry, WithoutMemoryNothingIsInitialisedLoadedOrSaved)
{
  CVignettingRig rig;
  EXPECT_EQ(0, rig.Correct(100));
  const std::vector<uint8_t> listWritten = rig.GetWritten();
  const std::vector<uint32_t> listInfo = rig.GetInfo();
  {
    const CFailingNew failing;
    EXPECT_EQ(-2, rig.Process().LoadFromFlash());
    EXPECT_EQ(-2, rig.Process().SaveToFile());
    EXPECT_EQ(-2, rig.Process().InitProcess());
  }
  EXPECT_EQ(listWritten, rig.GetWritten());
  EXPECT_EQ(listInfo, rig.GetInfo());
  EXPECT_EQ(-3, rig.Process().ExecuteCorrection());
  EXPECT_EQ(0, rig.Process().InitProcess());
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
}
