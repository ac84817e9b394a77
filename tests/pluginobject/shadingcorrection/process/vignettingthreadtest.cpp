#include <functional>
#include <iterator>
#include <set>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/framehammer.h"
#include "tests/pluginobject/shadingcorrection/process/vignettingrig.h"

using namespace ffc::test;

namespace {

constexpr int32_t LONGEST_FRAME = 2 * 320 * 128;

// What the user-interface thread does.
const std::function<int32_t(CVignettingRig &)> OPERATIONS[] = {
  [](CVignettingRig &rig) { return rig.Process().AcquireBrightImage(); },
  [](CVignettingRig &rig) { return rig.Process().ExecuteCorrection(); },
  [](CVignettingRig &rig) { return rig.Process().LoadFromFlash(); },
  [](CVignettingRig &rig) { return rig.Process().SaveToFlash(); },
  [](CVignettingRig &rig) { return rig.Process().SetFrameCount("FFCFrameCount_2"); },
  [](CVignettingRig &rig) { return rig.Process().InitProcess(); },
  [](CVignettingRig &rig) { return rig.Process().AcquireDarkImage() + rig.Process().SetExpectGray(9); },
  [](CVignettingRig &rig) {
    const double dGrays = rig.Process().GetImageMaxGray() + rig.Process().GetImageGrayDiff();
    return dGrays >= 0.0 && rig.GetInfo().at(1) == 2 ? 0 : -1;
  },
  [](CVignettingRig &rig) {
    const int64_t nWidth = rig.Camera().Integer("Width").Peek();
    rig.Camera().Integer("Width").Poke(nWidth == 192 ? 320 : 192);
    return 0;
  },
};

constexpr auto LAST_OPERATION = static_cast<int32_t>(std::size(OPERATIONS) - 1);

} // namespace

TEST(VignettingThreads, EverythingAtOnceIsSafe)
{
  for (const char *pFormat : {"Mono12", "BayerRG8"}) {
    CVignettingRig rig(pFormat);
    rig.Show(nullptr); // the hammer delivers
    const CFrameHammer hammer(rig.Process(), LONGEST_FRAME);
    CTestRandom random(23);
    const std::set<int32_t> setExpected = {0, -3, PLUGIN_STATUS_BUFFER_TIMEOUT, PLUGIN_STATUS_ROI_MISMATCH};
    for (int i = 0; i < 300; ++i) {
      const auto nOperation = static_cast<std::size_t>(random.Between(0, LAST_OPERATION));
      EXPECT_EQ(setExpected.count(OPERATIONS[nOperation](rig)), 1U) << nOperation;
    }
    // In the end everything works.
    EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  }
}

TEST(VignettingThreads, AnOperationThatFailsLeavesNoBufferToAFrameThatComesLate)
{
  CVignettingRig rig("Mono8", 193, 128);
  rig.Show(nullptr);
  const CFrameHammer hammer(rig.Process(), LONGEST_FRAME);
  for (int i = 0; i < 50; ++i) {
    EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_INVALID_PARAM); // an odd side
  }
}
