#include <set>
#include <thread>

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/framehammer.h"
#include "tests/pluginobject/shadingcorrection/process/hostrig.h"
#include "tests/pluginobject/shadingcorrection/process/scriptedchooser.h"

using namespace ffc::test;

namespace {

constexpr int OPERATIONS = 300;
constexpr int32_t LONGEST_FRAME = 128 * 128;

// One random operation of the user-interface thread.
int32_t OperateOnce(CHostRig &rig, CTestRandom &random)
{
  CShadingCorrectionPro_PC &process = rig.Process();
  switch (random.Between(0, 9)) {
  case 0: return process.AcquireDarkImage();
  case 1: return process.AcquireBrightImage();
  case 2:
  case 3: return process.ExecuteCorrection();
  case 4: return process.LoadFromFile();
  case 5: return process.SaveToFile();
  case 6: return process.SetExpectGray(random.Between(0, 255));
  case 7: return process.SetFrameCount(random.Between(0, 1) == 0 ? "FFCFrameCount_1" : "FFCFrameCount_2");
  case 8: {
    const double dGrays = process.GetImageMaxGray() + process.GetImageGrayDiff();
    return dGrays >= 0.0 && process.GetCorrectionInfo().nExpectGray < 256 ? 0 : -1;
  }
  default: rig.Camera().Integer("Width").Poke(random.Between(0, 4) == 0 ? 96 : 64); return 0;
  }
}

} // namespace

TEST(HostThreads, EverythingAtOnceIsSafe)
{
  const QTemporaryDir folder;
  CHostRig rig;
  rig.Show(nullptr); // the hammer delivers
  InstallChooser(rig.Process(), folder.filePath("a.ffc"));
  const std::set<int32_t> setExpected = {0,
                                         -3,
                                         PLUGIN_STATUS_OPEN_FILE_ERROR,
                                         PLUGIN_STATUS_READ_FILE_ERROR,
                                         PLUGIN_STATUS_BUFFER_TIMEOUT,
                                         PLUGIN_STATUS_BUFFER_SIZE_ERROR};
  CFrameHammer hammer(rig.Process(), LONGEST_FRAME);
  CTestRandom random(17);
  for (int i = 0; i < OPERATIONS; ++i) {
    const int32_t nStatus = OperateOnce(rig, random);
    EXPECT_EQ(setExpected.count(nStatus), 1U) << nStatus;
  }
  // In the end there is a table, and frames are corrected with it.
  hammer.BePolite();
  rig.Camera().Integer("Width").Poke(64);
  int32_t nExecuted = -1;
  for (int i = 0; i < 100 && nExecuted != 0; ++i) { // the last rude frame may still drop the bright one
    EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_SUCCESS);
    nExecuted = rig.Process().ExecuteCorrection();
  }
  ASSERT_EQ(nExecuted, PLUGIN_STATUS_SUCCESS);
  const int nCorrected = hammer.GetCorrectedCount();
  while (hammer.GetCorrectedCount() == nCorrected) {
    std::this_thread::yield();
  }
}
