#include <algorithm>
#include <chrono>
#include <thread>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/processkinds.h"

using namespace ffc::test;
using ffc::genapi::CSoftwareEnumeration;

TEST(HostDark, IsMeasuredOnAnEightBitScale)
{
  CHostRig rig("Mono12");
  EXPECT_EQ(rig.AcquireDark(12 * 16 + 15), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().GetImageMaxGray(), 12.0);
  EXPECT_EQ(rig.Process().GetImageGrayDiff(), 0.0);
  CHostRig unevenRig("Mono8", 64, 64);
  unevenRig.Show([](int) { return MakeUneven(10, 17); });
  EXPECT_EQ(unevenRig.Process().AcquireDarkImage(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(unevenRig.Process().GetImageMaxGray(), 17.0);
  EXPECT_EQ(unevenRig.Process().GetImageGrayDiff(), 7.0);
}

TEST(HostDark, OfADeepFormatIsUsedByItsGreyOnAnEightBitScale)
{
  CHostRig rig("Mono12");
  const auto isUsed = [&rig](uint32_t nGray) {
    return IsDarkUsed<SHost>(rig, [&rig, nGray](int) { return rig.Camera().MakeFrame(nGray); });
  };
  EXPECT_TRUE(isUsed(20 * 16 + 15));
  EXPECT_FALSE(isUsed(21 * 16));
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
