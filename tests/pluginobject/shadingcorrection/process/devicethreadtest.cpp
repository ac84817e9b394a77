#include <set>

#include <gtest/gtest.h>

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
    const std::set<int32_t> setExpected = {0, -3, -1009, -1012, -1015};
    const CFrameHammer hammer(rig.Process(), LONGEST_FRAME);
    CTestRandom random(17);
    for (int i = 0; i < OPERATIONS; ++i) {
      const int32_t nStatus = OperateOnce(rig, random);
      EXPECT_EQ(1U, setExpected.count(nStatus)) << nStatus;
    }
    // In the end everything works.
    rig.Camera().Integer("Width").Poke(64);
    rig.Camera().SaveAsDefault();
    EXPECT_EQ(0, rig.Process().InitProcess());
    EXPECT_EQ(0, rig.Process().AcquireDarkImage());
    EXPECT_EQ(0, rig.Process().AcquireBrightImage());
    EXPECT_EQ(0, rig.Process().ExecuteCorrection());
  }
}

TEST(DeviceThreads, AProcessMayBeDestroyedRightAfterItsFrameThreadEnded)
{
  for (int i = 0; i < 20; ++i) {
    CDeviceRig rig;
    rig.Show(nullptr);
    const CFrameHammer hammer(rig.Process(), LONGEST_FRAME);
    EXPECT_EQ(0, rig.Process().AcquireDarkImage());
  }
}
