#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/hostrig.h"

using namespace ffc::test;

namespace {

constexpr uint32_t MONO_8 = 0x01080001;
constexpr uint32_t MONO_12 = 0x01100005;

// Coefficients with a dark frame, for 64 x 48 pixels.
void MakeCoefficients(CHostRig &rig)
{
  rig.Process().SetExpectGray(200);
  EXPECT_EQ(rig.AcquireDark(10), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.AcquireBright(110), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
}

int32_t CorrectAs(CHostRig &rig, uint32_t nWidth, int32_t nHeight, uint32_t nPixelFormat)
{
  std::vector<uint8_t> listSource(64 * 64 * 2, 60);
  std::vector<uint8_t> listDestination(listSource.size(), 1);
  const int32_t nStatus =
    rig.Process().CorrectImage(listSource.data(), listDestination.data(), nWidth, nHeight, nPixelFormat);
  if (nStatus != 0) {
    EXPECT_EQ(listDestination, std::vector<uint8_t>(listSource.size(), 1));
  }
  return nStatus;
}

} // namespace

TEST(HostCorrection, BeforeABrightAcquisitionIsRefused)
{
  CHostRig rig;
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_BUFFER_SIZE_ERROR);
  EXPECT_EQ(rig.AcquireDark(10), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_BUFFER_SIZE_ERROR);
  EXPECT_EQ(rig.Process().GetCorrectionInfo().nCoefficientsSize, 0U);
}

TEST(HostCorrection, BringsFramesToTheExpectedGrey)
{
  CHostRig rig;
  MakeCoefficients(rig);
  std::vector<uint8_t> listCorrected;
  EXPECT_EQ(rig.Correct(rig.Camera().MakeFrame(110), listCorrected), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Camera().MakeFrame(200), listCorrected);
  EXPECT_EQ(rig.Correct(rig.Camera().MakeFrame(60), listCorrected), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Camera().MakeFrame(100), listCorrected);
  EXPECT_EQ(rig.Correct(rig.Camera().MakeFrame(5), listCorrected), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Camera().MakeFrame(0), listCorrected);
}

TEST(HostCorrection, MayHappenInPlace)
{
  CHostRig rig;
  MakeCoefficients(rig);
  std::vector<uint8_t> listFrame = rig.Camera().MakeFrame(60);
  EXPECT_EQ(rig.Process().CorrectImage(listFrame.data(), listFrame.data(), 64, 48, MONO_8), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Camera().MakeFrame(100), listFrame);
}

TEST(HostCorrection, ExpectedGreyTwoHundredIsThirtyTwoHundredAtTwelveBits)
{
  CHostRig rig("Mono12");
  rig.Process().SetExpectGray(200);
  EXPECT_EQ(rig.AcquireBright(1600), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  std::vector<uint8_t> listCorrected;
  EXPECT_EQ(rig.Correct(rig.Camera().MakeFrame(1600), listCorrected), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Camera().MakeFrame(3200), listCorrected);
}

TEST(HostCorrection, ChangesWithTheExpectedGreyOnlyWhenItIsExecuted)
{
  CHostRig rig;
  MakeCoefficients(rig);
  rig.Process().SetExpectGray(100);
  std::vector<uint8_t> listCorrected;
  EXPECT_EQ(rig.Correct(rig.Camera().MakeFrame(110), listCorrected), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Camera().MakeFrame(200), listCorrected);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Correct(rig.Camera().MakeFrame(110), listCorrected), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Camera().MakeFrame(100), listCorrected);
}

TEST(HostCorrection, AnExpectedGreyBeyondTheScaleIsInvalidAndChangesNothing)
{
  CHostRig rig;
  MakeCoefficients(rig);
  for (const int64_t nExpectGray : {int64_t{256}, int64_t{-1}, int64_t{INT32_MAX}}) {
    rig.Process().SetExpectGray(nExpectGray);
    EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM) << nExpectGray;
  }
  std::vector<uint8_t> listCorrected;
  EXPECT_EQ(rig.Correct(rig.Camera().MakeFrame(110), listCorrected), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Camera().MakeFrame(200), listCorrected);
}

TEST(HostCorrection, TellsTheSizeOfItsCoefficients)
{
  CHostRig rig;
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().GetCorrectionInfo().nCoefficientsSize, 64U * 48U * 2U);
  MakeCoefficients(rig);
  EXPECT_EQ(rig.Process().GetCorrectionInfo().nCoefficientsSize, 64U * 48U * 4U);
}

TEST(HostCorrection, WithoutCoefficientsOrBuffersIsInvalid)
{
  CHostRig rig;
  std::vector<uint8_t> listFrame = rig.Camera().MakeFrame(60);
  EXPECT_EQ(rig.Process().CorrectImage(listFrame.data(), listFrame.data(), 64, 48, MONO_8),
            PLUGIN_STATUS_INVALID_PARAM);
  MakeCoefficients(rig);
  EXPECT_EQ(rig.Process().CorrectImage(nullptr, listFrame.data(), 64, 48, MONO_8), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(rig.Process().CorrectImage(listFrame.data(), nullptr, 64, 48, MONO_8), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(rig.Camera().MakeFrame(60), listFrame);
  // That is no changed format: the kept frames stay.
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.GetTableBytesPerPixel(), 4U);
}

TEST(HostCorrection, OfAnotherSizeOrDepthIsInvalid)
{
  CHostRig rig;
  MakeCoefficients(rig);
  EXPECT_EQ(CorrectAs(rig, 63, 48, MONO_8), -3);
  EXPECT_EQ(CorrectAs(rig, 64, 47, MONO_8), -3);
  EXPECT_EQ(CorrectAs(rig, 64, -48, MONO_8), -3);
  EXPECT_EQ(CorrectAs(rig, 0, 0, MONO_8), -3);
  EXPECT_EQ(CorrectAs(rig, UINT32_MAX, INT32_MIN, MONO_8), -3);
  EXPECT_EQ(CorrectAs(rig, 64, 48, MONO_12), -3);
  EXPECT_EQ(CorrectAs(rig, 64, 48, MONO_8), 0);
}

TEST(HostCorrection, OfAnotherSizeOrDepthDropsBothFrames)
{
  for (const auto &[nWidth, nHeight, nPixelFormat] :
       {std::tuple{66U, 48, MONO_8}, std::tuple{64U, 50, MONO_8}, std::tuple{64U, 48, MONO_12}}) {
    CHostRig rig;
    MakeCoefficients(rig);
    EXPECT_EQ(CorrectAs(rig, nWidth, nHeight, nPixelFormat), -3);
    EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_BUFFER_SIZE_ERROR);
    EXPECT_EQ(rig.AcquireBright(110), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(rig.GetTableBytesPerPixel(), 2U); // the dark one went too
  }
}

TEST(HostCorrection, OfATableThatDoesNotFitTheNewFramesIsInvalid)
{
  CHostRig rig;
  MakeCoefficients(rig);
  rig.Camera().Integer("Width").Poke(66);
  EXPECT_EQ(rig.AcquireBright(110), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(CorrectAs(rig, 66, 48, MONO_8), -3); // the old table
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(CorrectAs(rig, 66, 48, MONO_8), 0);
}
