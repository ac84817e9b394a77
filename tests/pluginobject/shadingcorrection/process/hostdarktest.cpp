#include <algorithm>
#include <chrono>
#include <thread>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/hostrig.h"

using namespace ffc::test;
using ffc::genapi::CSoftwareEnumeration;

namespace {

// Takes the given dark frame and a bright one, and tells whether the coefficients use the dark one.
bool IsDarkUsed(CHostRig &rig, CHostRig::FnFrame fnDark)
{
  rig.Show(std::move(fnDark));
  EXPECT_EQ(rig.Process().AcquireDarkImage(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  const uint32_t nBytesPerPixel = rig.GetTableBytesPerPixel();
  EXPECT_TRUE(nBytesPerPixel == 2 || nBytesPerPixel == 4) << nBytesPerPixel;
  return nBytesPerPixel == 4;
}

bool IsDarkUsed(CHostRig &rig, uint32_t nGray)
{
  return IsDarkUsed(rig, [&rig, nGray](int) { return rig.Camera().MakeFrame(nGray); });
}

// 8-bit frame of 64 x 64, one 32 x 32 block of another value.
CHostRig::FnFrame MakeUneven(uint8_t nGray, uint8_t nBlockGray)
{
  return [=](int) {
    std::vector<uint8_t> listFrame(64 * 64, nGray);
    for (std::size_t y = 0; y < 32; ++y) {
      std::fill_n(listFrame.begin() + static_cast<std::ptrdiff_t>(y * 64), 32, nBlockGray);
    }
    return listFrame;
  };
}

} // namespace

TEST(HostDark, TakesExactlyOneFrame)
{
  CHostRig rig;
  EXPECT_EQ(rig.AcquireDark(10), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.GetFrameCount(), 1);
  EXPECT_EQ(rig.Process().WaitImageRequest(), 258U);
}

TEST(HostDark, IsMeasuredOnAnEightBitScale)
{
  CHostRig rig("Mono12");
  EXPECT_EQ(rig.AcquireDark(12 * 16 + 15), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().GetImageMaxGray(), 12.0);
  EXPECT_EQ(rig.Process().GetImageGrayDiff(), 0.0);
  CHostRig unevenRig("Mono8", 64, 64);
  unevenRig.Show(MakeUneven(10, 17));
  EXPECT_EQ(unevenRig.Process().AcquireDarkImage(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(unevenRig.Process().GetImageMaxGray(), 17.0);
  EXPECT_EQ(unevenRig.Process().GetImageGrayDiff(), 7.0);
}

TEST(HostDark, UpToGreyTwentyIsUsed)
{
  CHostRig rig;
  EXPECT_TRUE(IsDarkUsed(rig, 0));
  EXPECT_TRUE(IsDarkUsed(rig, 20));
  CHostRig deepRig("Mono12");
  EXPECT_TRUE(IsDarkUsed(deepRig, 20 * 16 + 15));
}

TEST(HostDark, OfGreyTwentyOneIsKeptButNotUsed)
{
  CHostRig rig;
  EXPECT_FALSE(IsDarkUsed(rig, 21));
  EXPECT_FALSE(IsDarkUsed(rig, 255));
  EXPECT_TRUE(IsDarkUsed(rig, 20));
  CHostRig deepRig("Mono12");
  EXPECT_FALSE(IsDarkUsed(deepRig, 21 * 16));
}

TEST(HostDark, ThatIsUnevenByFiveIsKeptButNotUsed)
{
  CHostRig rig("Mono8", 64, 64);
  EXPECT_TRUE(IsDarkUsed(rig, MakeUneven(16, 20)));
  EXPECT_FALSE(IsDarkUsed(rig, MakeUneven(15, 20)));
  EXPECT_FALSE(IsDarkUsed(rig, MakeUneven(5, 0)));
  EXPECT_TRUE(IsDarkUsed(rig, MakeUneven(4, 0)));
}

TEST(HostDark, AFailedOneDoesNotBringBackWhatAnEarlierOneSaved)
{
  CHostRig rig;
  rig.Camera().Enumeration("TriggerMode").Select("On");
  rig.SetStreaming(true);
  EXPECT_EQ(rig.AcquireDark(10), PLUGIN_STATUS_SUCCESS);
  rig.Camera().Enumeration("TriggerMode").Select("Off");
  rig.Camera().Stream().Find<CSoftwareEnumeration>("StreamBufferHandlingMode")->Select("OldestFirstOverwrite");
  rig.SetStreaming(false);
  const auto mapBefore = rig.TakeSnapshot();
  rig.Camera().Float("ExposureTime").Access(GenApi::NA);
  EXPECT_EQ(rig.AcquireDark(10), PLUGIN_STATUS_FEATURE_ERROR);
  rig.Camera().Float("ExposureTime").Access(GenApi::RW);
  EXPECT_EQ(rig.TakeSnapshot(), mapBefore);
}

TEST(HostDark, WaitsAsLongAsTheExposureNeeds)
{
  CHostRig rig;
  // No wait at all: the exposure takes the second away that every wait has.
  rig.Camera().Float("ExposureTime").Poke(-1000000.0);
  rig.Show(nullptr);
  EXPECT_EQ(rig.Process().AcquireDarkImage(), PLUGIN_STATUS_BUFFER_TIMEOUT);
  // A frame that comes late enough to miss a shorter wait.
  rig.Camera().Float("ExposureTime").Poke(1000000.0);
  rig.Show([&rig](int) {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    return rig.Camera().MakeFrame(10);
  });
  EXPECT_EQ(rig.Process().AcquireDarkImage(), PLUGIN_STATUS_SUCCESS);
}
