#include <set>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/devicerig.h"
#include "tests/pluginobject/shadingcorrection/process/framehammer.h"

using namespace ffc::test;

namespace {

constexpr int OPERATIONS = 300;
constexpr int32_t LONGEST_FRAME = 128 * 128;

// One random operation of the user-interface thread.
int32_t OperateOnce(CDeviceRig &rig, CTestRandom &random)
{
  CShadingCorrectionPro_Dev &process = rig.Process();
  switch (random.Between(0, 9)) {
  case 0: return process.AcquireDarkImage();
  case 1: return process.AcquireBrightImage();
  case 2:
  case 3: return process.ExecuteCorrection();
  case 4: return process.LoadFromFlash();
  case 5: return process.SaveToFlash();
  case 6: return process.SetExpectGray(random.Between(0, 255));
  case 7: return process.SetFrameCount(random.Between(0, 1) == 0 ? "FFCFrameCount_1" : "FFCFrameCount_2");
  case 8: {
    const double dGrays = process.GetImageMaxGray() + process.GetImageGrayDiff();
    return dGrays >= 0.0 && process.GetCorrectionInfo().nValid <= 1 ? process.InitProcess() : -1;
  }
  default:
    rig.Camera().Integer("Width").Poke(random.Between(0, 4) == 0 ? 96 : 64);
    rig.Camera().SaveAsDefault();
    return 0;
  }
}

} // namespace

TEST(DeviceThreads, EverythingAtOnceIsSafe)
{
  for (const char *pFormat : {"Mono8", "BayerRG8"}) {
    CDeviceRig rig(pFormat);
    rig.Show(nullptr); // the hammer delivers
    const std::set<int32_t> setExpected = {0, -3, PLUGIN_STATUS_BUFFER_TIMEOUT, PLUGIN_STATUS_BUFFER_SIZE_ERROR,
                                           PLUGIN_STATUS_ROI_MISMATCH};
    const CFrameHammer hammer(rig.Process(), LONGEST_FRAME);
    CTestRandom random(17);
    for (int i = 0; i < OPERATIONS; ++i) {
      const int32_t nStatus = OperateOnce(rig, random);
      EXPECT_EQ(setExpected.count(nStatus), 1U) << nStatus;
    }
    // In the end everything works.
    rig.Camera().Integer("Width").Poke(64);
    rig.Camera().SaveAsDefault();
    EXPECT_EQ(rig.Process().InitProcess(), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(rig.Process().AcquireDarkImage(), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  }
}
