#include <gtest/gtest.h>

#include "pluginobject/shadingcorrection/process/processfactory.h"
#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/hostrig.h"

using ffc::genapi::SNodeAccess;
using ffc::pluginobject::CFeatureAccess;
using namespace ffc::process;
using namespace ffc::test;

namespace {

int32_t InitOf(CTestCamera &camera)
{
  CShadingCorrectionPro_PC process{CFeatureAccess(&camera.Device()), CFeatureAccess(&camera.Stream())};
  return process.InitProcess();
}

} // namespace

TEST(HostProcess, StartsWithFourFramesAndExpectedGreyZero)
{
  CHostRig rig;
  EXPECT_EQ(rig.Process().SetExpectGray(200), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().SetFrameCount("FFCFrameCount_16"), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().InitProcess(), PLUGIN_STATUS_SUCCESS);
  const FFCInfo stInfo = rig.Process().GetCorrectionInfo();
  EXPECT_EQ(stInfo.nFrameCount, 4U);
  EXPECT_EQ(stInfo.nExpectGray, 0U);
  EXPECT_EQ(stInfo.nCoefficientsSize, 0U);
  EXPECT_EQ(stInfo.nValid, 0U);
  EXPECT_EQ(stInfo.nMode, 0U);
  EXPECT_EQ(stInfo.nBlockSizeCode, 0U);
}

TEST(HostProcess, KeepsFrameCountAndExpectedGreyWithoutTouchingTheCamera)
{
  CHostRig rig;
  int nAccesses = 0;
  rig.SetHook([&nAccesses](const SNodeAccess &) { ++nAccesses; });
  for (const auto &[pEntry, nFrameCount] : {std::pair{"FFCFrameCount_1", 1U},
                                            {"FFCFrameCount_2", 2U},
                                            {"FFCFrameCount_4", 4U},
                                            {"FFCFrameCount_8", 8U},
                                            {"FFCFrameCount_16", 16U},
                                            {"FFCFrameCount_5", 16U},
                                            {"", 16U}}) {
    EXPECT_EQ(rig.Process().SetFrameCount(pEntry), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(rig.Process().GetCorrectionInfo().nFrameCount, nFrameCount) << pEntry;
  }
  EXPECT_EQ(rig.Process().SetExpectGray(137), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().GetCorrectionInfo().nExpectGray, 137U);
  EXPECT_EQ(nAccesses, 0);
}

TEST(HostProcess, HasNoFlash)
{
  CHostRig rig;
  int nAccesses = 0;
  rig.SetHook([&nAccesses](const SNodeAccess &) { ++nAccesses; });
  EXPECT_EQ(rig.Process().LoadFromFlash(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().SaveToFlash(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(nAccesses, 0);
  EXPECT_TRUE(rig.TakeSignals().empty());
}

TEST(HostProcess, InitFailsWhenAColourCameraDoesNotTellItsFormats)
{
  CTestCamera cameraWithoutList("BayerGB8");
  cameraWithoutList.Enumeration("PixelFormat").Access(GenApi::NA);
  EXPECT_EQ(InitOf(cameraWithoutList), PLUGIN_STATUS_FEATURE_ERROR);
  CTestCamera cameraWithoutFilter("BayerGB8");
  cameraWithoutFilter.Enumeration("PixelColorFilter").Poke(99);
  EXPECT_EQ(InitOf(cameraWithoutFilter), PLUGIN_STATUS_FEATURE_ERROR);
  CTestCamera monochrome("Mono8");
  monochrome.Enumeration("PixelFormat").Access(GenApi::NA);
  EXPECT_EQ(InitOf(monochrome), PLUGIN_STATUS_SUCCESS);
}

TEST(HostProcess, WithoutADeviceIsInvalid)
{
  CTestCamera camera;
  CShadingCorrectionPro_PC process{CFeatureAccess(nullptr), CFeatureAccess(&camera.Stream())};
  EXPECT_EQ(process.InitProcess(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(process.PrepareDeviceParam(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(process.AcquireDarkImage(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(process.AcquireBrightImage(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(process.ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(process.SaveToFile(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(process.RestoreDeviceParam(), PLUGIN_STATUS_SUCCESS);
}

TEST(HostProcess, WithoutAStreamCannotAcquire)
{
  CTestCamera camera;
  CShadingCorrectionPro_PC process{CFeatureAccess(&camera.Device()), CFeatureAccess(nullptr)};
  EXPECT_EQ(process.InitProcess(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(process.PrepareDeviceParam(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(process.AcquireDarkImage(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(process.AcquireBrightImage(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(process.ExecuteCorrection(), PLUGIN_STATUS_BUFFER_SIZE_ERROR);
  EXPECT_EQ(process.SaveToFile(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(process.RestoreDeviceParam(), PLUGIN_STATUS_SUCCESS);
}

TEST(HostProcess, RestoringStopsTheStreamAlsoWhenNothingWasPrepared)
{
  CHostRig rig;
  const auto mapBefore = rig.TakeSnapshot();
  EXPECT_EQ(rig.Process().RestoreDeviceParam(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.TakeSignals(), (std::vector<int32_t>{11}));
  EXPECT_EQ(rig.TakeSnapshot(), mapBefore);
}

TEST(ProcessFactory, MakesTheProcessOfACameraThatIsCorrectedOnTheHost)
{
  CTestCamera camera;
  std::unique_ptr<IShadingCorrectionProcess> pProcess;
  EXPECT_EQ(CreateShadingCorrectionProcess(EProcessKind::HostFlatField, CFeatureAccess(&camera.Device()),
                                           CFeatureAccess(&camera.Stream()), pProcess),
            PLUGIN_STATUS_SUCCESS);
  EXPECT_NE(dynamic_cast<CShadingCorrectionPro_PC *>(pProcess.get()), nullptr);
}
