// The user-interface thread and a frame thread that keeps to no order, at once, for all processes alike.
#include <set>
#include <thread>

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "tests/pluginobject/shadingcorrection/process/framehammer.h"
#include "tests/pluginobject/shadingcorrection/process/processkinds.h"
#include "tests/pluginobject/shadingcorrection/process/scriptedchooser.h"

using namespace ffc::test;
using ffc::genapi::CSoftwareInteger;

namespace {

constexpr int OPERATIONS = 300;

bool AreGreysPossible(IShadingCorrectionProcess &process)
{
  return process.GetImageMaxGray() + process.GetImageGrayDiff() >= 0.0;
}

const char *PickFrameCount(CTestRandom &random)
{
  return random.Between(0, 1) == 0 ? "FFCFrameCount_1" : "FFCFrameCount_2";
}

// Of each kind OperateOnce is one random operation of the user-interface thread, and FinishWell shows in the end that
// everything works.

struct SHostThreads : SHost {
  static constexpr const char *FORMATS[] = {"Mono8"};
  static constexpr int32_t LONGEST_FRAME = 128 * 128;
  static std::set<int32_t> GetExpected()
  {
    return {PLUGIN_STATUS_SUCCESS,         PLUGIN_STATUS_INVALID_PARAM,  PLUGIN_STATUS_OPEN_FILE_ERROR,
            PLUGIN_STATUS_READ_FILE_ERROR, PLUGIN_STATUS_BUFFER_TIMEOUT, PLUGIN_STATUS_BUFFER_SIZE_ERROR};
  }
  static int32_t OperateOnce(Rig &rig, CTestRandom &random)
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
    case 7: return process.SetFrameCount(PickFrameCount(random));
    case 8: return AreGreysPossible(process) && process.GetCorrectionInfo().nExpectGray < 256 ? 0 : -1;
    default: rig.Camera().Integer("Width").Poke(random.Between(0, 4) == 0 ? 96 : 64); return 0;
    }
  }
  static void FinishWell(Rig &rig, CFrameHammer &hammer)
  {
    hammer.KeepUsualFormat();
    rig.Camera().Integer("Width").Poke(64);
    int32_t nExecuted = PLUGIN_STATUS_UNKNOWN_ERROR;
    for (int i = 0; i < 100 && nExecuted != PLUGIN_STATUS_SUCCESS; ++i) {
      // The last frame of another format may still drop the bright one.
      EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_SUCCESS);
      nExecuted = rig.Process().ExecuteCorrection();
    }
    ASSERT_EQ(nExecuted, PLUGIN_STATUS_SUCCESS);
    const int nCorrected = hammer.GetCorrectedCount();
    while (hammer.GetCorrectedCount() == nCorrected) {
      std::this_thread::yield();
    }
  }
};

struct SDeviceThreads : SDevice {
  static constexpr const char *FORMATS[] = {"Mono8", "BayerRG8"};
  static constexpr int32_t LONGEST_FRAME = 128 * 128;
  static std::set<int32_t> GetExpected()
  {
    return {PLUGIN_STATUS_SUCCESS, PLUGIN_STATUS_INVALID_PARAM, PLUGIN_STATUS_BUFFER_TIMEOUT,
            PLUGIN_STATUS_BUFFER_SIZE_ERROR, PLUGIN_STATUS_ROI_MISMATCH};
  }
  static void SetWidth(Rig &rig, int64_t nWidth)
  {
    rig.Camera().Integer("Width").Poke(nWidth);
    rig.Camera().SaveAsDefault();
  }
  static int32_t OperateOnce(Rig &rig, CTestRandom &random)
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
    case 7: return process.SetFrameCount(PickFrameCount(random));
    case 8: return AreGreysPossible(process) && process.GetCorrectionInfo().nValid <= 1 ? process.InitProcess() : -1;
    default: SetWidth(rig, random.Between(0, 4) == 0 ? 96 : 64); return 0;
    }
  }
  static void FinishWell(Rig &rig, CFrameHammer &)
  {
    SetWidth(rig, 64);
    EXPECT_EQ(rig.Process().InitProcess(), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(rig.Process().AcquireDarkImage(), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  }
};

struct SVignettingThreads : SVignetting {
  static constexpr const char *FORMATS[] = {"Mono12", "BayerRG8"};
  static constexpr int32_t LONGEST_FRAME = 2 * 320 * 128;
  static std::set<int32_t> GetExpected()
  {
    return {PLUGIN_STATUS_SUCCESS, PLUGIN_STATUS_INVALID_PARAM, PLUGIN_STATUS_BUFFER_TIMEOUT,
            PLUGIN_STATUS_ROI_MISMATCH};
  }
  static int32_t OperateOnce(Rig &rig, CTestRandom &random)
  {
    CVignettingCorrectionPro_Dev &process = rig.Process();
    CSoftwareInteger &width = rig.Camera().Integer("Width");
    switch (random.Between(0, 8)) {
    case 0: return process.AcquireBrightImage();
    case 1: return process.ExecuteCorrection();
    case 2: return process.LoadFromFlash();
    case 3: return process.SaveToFlash();
    case 4: return process.SetFrameCount("FFCFrameCount_2");
    case 5: return process.InitProcess();
    case 6: return process.AcquireDarkImage() + process.SetExpectGray(9);
    case 7: return AreGreysPossible(process) && process.GetCorrectionInfo().nMode == 2 ? 0 : -1;
    default: width.Poke(width.Peek() == 192 ? 320 : 192); return 0;
    }
  }
  static void FinishWell(Rig &rig, CFrameHammer &)
  {
    EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  }
};

} // namespace

template <class TKind>
class ProcessThreads : public testing::Test {
};

using Kinds = testing::Types<SHostThreads, SDeviceThreads, SVignettingThreads>;
TYPED_TEST_SUITE(ProcessThreads, Kinds, SKindName);

TYPED_TEST(ProcessThreads, DoEverythingAtOnceSafely)
{
  const QTemporaryDir folder;
  const std::set<int32_t> setExpected = TypeParam::GetExpected();
  for (const char *pFormat : TypeParam::FORMATS) {
    typename TypeParam::Rig rig(pFormat);
    rig.Show(nullptr); // the hammer delivers
    InstallChooser(rig.Process(), folder.filePath("a.ffc"));
    CFrameHammer hammer(rig.Process(), TypeParam::LONGEST_FRAME);
    CTestRandom random(17);
    for (int i = 0; i < OPERATIONS; ++i) {
      const int32_t nStatus = TypeParam::OperateOnce(rig, random);
      EXPECT_EQ(setExpected.count(nStatus), 1U) << nStatus;
    }
    TypeParam::FinishWell(rig, hammer);
  }
}

TYPED_TEST(ProcessThreads, LeaveNoBufferOfAFailedOperationToAFrameThatComesLate)
{
  typename TypeParam::Rig rig("Mono8", 193, 128); // an odd side, which has no blocks
  rig.Show(nullptr);
  const CFrameHammer hammer(rig.Process(), TypeParam::LONGEST_FRAME);
  for (int i = 0; i < 50; ++i) {
    EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_INVALID_PARAM);
  }
}
