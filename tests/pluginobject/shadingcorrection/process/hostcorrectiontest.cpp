#include <gtest/gtest.h>

#include "tests/pluginobject/shadingcorrection/process/hostrig.h"

using namespace ffc::test;

namespace {

constexpr uint32_t MONO_8 = 0x01080001;
constexpr uint32_t MONO_12 = 0x01100005;

// Coefficients with a dark frame, for 64 x 48 pixels.
void MakeCoefficients(CHostRig &rig)
{
  rig.Process().SetExpectGray(200);
  EXPECT_EQ(0, rig.AcquireDark(10));
  EXPECT_EQ(0, rig.AcquireBright(110));
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
}

int32_t CorrectAs(CHostRig &rig, uint32_t nWidth, int32_t nHeight, uint32_t nPixelFormat)
{
  std::vector<uint8_t> listSource(64 * 64 * 2, 60);
  std::vector<uint8_t> listDestination(listSource.size(), 1);
  const int32_t nStatus =
    rig.Process().CorrectImage(listSource.data(), listDestination.data(), nWidth, nHeight, nPixelFormat);
  if (nStatus != 0) {
    EXPECT_EQ(std::vector<uint8_t>(listSource.size(), 1), listDestination);
  }
  return nStatus;
}

} // namespace

TEST(HostCorrection, BeforeABrightAcquisitionIsRefused)
{
  CHostRig rig;
  EXPECT_EQ(-1012, rig.Process().ExecuteCorrection());
  EXPECT_EQ(0, rig.AcquireDark(10));
  EXPECT_EQ(-1012, rig.Process().ExecuteCorrection());
  EXPECT_EQ(0U, rig.Process().GetCorrectionInfo().nCoefficientsSize);
}

TEST(HostCorrection, BringsFramesToTheExpectedGrey)
{
  CHostRig rig;
  MakeCoefficients(rig);
  std::vector<uint8_t> listCorrected;
  EXPECT_EQ(0, rig.Correct(rig.Camera().MakeFrame(110), listCorrected));
  EXPECT_EQ(rig.Camera().MakeFrame(200), listCorrected);
  EXPECT_EQ(0, rig.Correct(rig.Camera().MakeFrame(60), listCorrected));
  EXPECT_EQ(rig.Camera().MakeFrame(100), listCorrected);
  EXPECT_EQ(0, rig.Correct(rig.Camera().MakeFrame(5), listCorrected));
  EXPECT_EQ(rig.Camera().MakeFrame(0), listCorrected);
}

TEST(HostCorrection, MayHappenInPlace)
{
  CHostRig rig;
  MakeCoefficients(rig);
  std::vector<uint8_t> listFrame = rig.Camera().MakeFrame(60);
  EXPECT_EQ(0, rig.Process().CorrectImage(listFrame.data(), listFrame.data(), 64, 48, MONO_8));
  EXPECT_EQ(rig.Camera().MakeFrame(100), listFrame);
}

TEST(HostCorrection, ExpectedGreyTwoHundredIsThirtyTwoHundredAtTwelveBits)
{
  CHostRig rig("Mono12");
  rig.Process().SetExpectGray(200);
  EXPECT_EQ(0, rig.AcquireBright(1600));
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
  std::vector<uint8_t> listCorrected;
  EXPECT_EQ(0, rig.Correct(rig.Camera().MakeFrame(1600), listCorrected));
  EXPECT_EQ(rig.Camera().MakeFrame(3200), listCorrected);
}

TEST(HostCorrection, ChangesWithTheExpectedGreyOnlyWhenItIsExecuted)
{
  CHostRig rig;
  MakeCoefficients(rig);
  rig.Process().SetExpectGray(100);
  std::vector<uint8_t> listCorrected;
  EXPECT_EQ(0, rig.Correct(rig.Camera().MakeFrame(110), listCorrected));
  EXPECT_EQ(rig.Camera().MakeFrame(200), listCorrected);
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
  EXPECT_EQ(0, rig.Correct(rig.Camera().MakeFrame(110), listCorrected));
  EXPECT_EQ(rig.Camera().MakeFrame(100), listCorrected);
}

TEST(HostCorrection, AnExpectedGreyBeyondTheScaleIsInvalidAndChangesNothing)
{
  CHostRig rig;
  MakeCoefficients(rig);
  for (const int64_t nExpectGray : {int64_t{256}, int64_t{-1}, int64_t{INT32_MAX}}) {
    rig.Process().SetExpectGray(nExpectGray);
    EXPECT_EQ(-3, rig.Process().ExecuteCorrection()) << nExpectGray;
  }
  std::vector<uint8_t> listCorrected;
  EXPECT_EQ(0, rig.Correct(rig.Camera().MakeFrame(110), listCorrected));
  EXPECT_EQ(rig.Camera().MakeFrame(200), listCorrected);
}

TEST(HostCorrection, TellsTheSizeOfItsCoefficients)
{
  CHostRig rig;
  EXPECT_EQ(0, rig.AcquireBright(100));
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
  EXPECT_EQ(64U * 48U * 2U, rig.Process().GetCorrectionInfo().nCoefficientsSize);
  MakeCoefficients(rig);
  EXPECT_EQ(64U * 48U * 4U, rig.Process().GetCorrectionInfo().nCoefficientsSize);
}

TEST(HostCorrection, WithoutCoefficientsOrBuffersIsInvalid)
{
  CHostRig rig;
  std::vector<uint8_t> listFrame = rig.Camera().MakeFrame(60);
  EXPECT_EQ(-3, rig.Process().CorrectImage(listFrame.data(), listFrame.data(), 64, 48, MONO_8));
  MakeCoefficients(rig);
  EXPECT_EQ(-3, rig.Process().CorrectImage(nullptr, listFrame.data(), 64, 48, MONO_8));
  EXPECT_EQ(-3, rig.Process().CorrectImage(listFrame.data(), nullptr, 64, 48, MONO_8));
  EXPECT_EQ(rig.Camera().MakeFrame(60), listFrame);
  // That is no changed format: the kept frames stay.
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
  EXPECT_EQ(4U, rig.GetTableBytesPerPixel());
}

TEST(HostCorrection, OfAnotherSizeOrDepthIsInvalid)
{
  CHostRig rig;
  MakeCoefficients(rig);
  EXPECT_EQ(-3, CorrectAs(rig, 63, 48, MONO_8));
  EXPECT_EQ(-3, CorrectAs(rig, 64, 47, MONO_8));
  EXPECT_EQ(-3, CorrectAs(rig, 64, -48, MONO_8));
  EXPECT_EQ(-3, CorrectAs(rig, 0, 0, MONO_8));
  EXPECT_EQ(-3, CorrectAs(rig, UINT32_MAX, INT32_MIN, MONO_8));
  EXPECT_EQ(-3, CorrectAs(rig, 64, 48, MONO_12));
  EXPECT_EQ(0, CorrectAs(rig, 64, 48, MONO_8));
}

TEST(HostCorrection, OfAnotherSizeOrDepthDropsBothFrames)
{
  for (const auto &[nWidth, nHeight, nPixelFormat] :
       {std::tuple{66U, 48, MONO_8}, std::tuple{64U, 50, MONO_8}, std::tuple{64U, 48, MONO_12}}) {
    CHostRig rig;
    MakeCoefficients(rig);
    EXPECT_EQ(-3, CorrectAs(rig, nWidth, nHeight, nPixelFormat));
    EXPECT_EQ(-1012, rig.Process().ExecuteCorrection());
    EXPECT_EQ(0, rig.AcquireBright(110));
    EXPECT_EQ(0, rig.Process().ExecuteCorrection());
    EXPECT_EQ(2U, rig.GetTableBytesPerPixel()); // the dark one went too
  }
}

TEST(HostCorrection, OfATableThatDoesNotFitTheNewFramesIsInvalid)
{
  CHostRig rig;
  MakeCoefficients(rig);
  rig.Camera().Integer("Width").Poke(66);
  EXPECT_EQ(0, rig.AcquireBright(110));
  EXPECT_EQ(-3, CorrectAs(rig, 66, 48, MONO_8)); // the old table
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
  EXPECT_EQ(0, CorrectAs(rig, 66, 48, MONO_8));
}
