#include <gtest/gtest.h>

#include "pluginobject/shadingcorrection/process/processfactory.h"
#include "tests/pluginobject/shadingcorrection/process/hostrig.h"

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
  EXPECT_EQ(0, rig.Process().SetExpectGray(200));
  EXPECT_EQ(0, rig.Process().SetFrameCount("FFCFrameCount_16"));
  EXPECT_EQ(0, rig.Process().InitProcess());
  const FFCInfo stInfo = rig.Process().GetCorrectionInfo();
  EXPECT_EQ(4U, stInfo.nFrameCount);
  EXPECT_EQ(0U, stInfo.nExpectGray);
  EXPECT_EQ(0U, stInfo.nCoefficientsSize);
  EXPECT_EQ(0U, stInfo.nValid);
  EXPECT_EQ(0U, stInfo.nMode);
  EXPECT_EQ(0U, stInfo.nBlockSizeCode);
}

TEST(HostProcess, HasNeitherFrameNorGreyBeforeTheFirstAcquisition)
{
  CHostRig rig;
  EXPECT_EQ(0.0, rig.Process().GetImageMaxGray());
  EXPECT_EQ(0.0, rig.Process().GetImageGrayDiff());
  EXPECT_TRUE(rig.Process().IsBlackLevelDefault());
  EXPECT_EQ(258U, rig.Process().WaitImageRequest());
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
    EXPECT_EQ(0, rig.Process().SetFrameCount(pEntry));
    EXPECT_EQ(nFrameCount, rig.Process().GetCorrectionInfo().nFrameCount) << pEntry;
  }
  EXPECT_EQ(0, rig.Process().SetExpectGray(137));
  EXPECT_EQ(137U, rig.Process().GetCorrectionInfo().nExpectGray);
  EXPECT_EQ(0, nAccesses);
}

TEST(HostProcess, HasNoFlash)
{
  CHostRig rig;
  int nAccesses = 0;
  rig.SetHook([&nAccesses](const SNodeAccess &) { ++nAccesses; });
  EXPECT_EQ(0, rig.Process().LoadFromFlash());
  EXPECT_EQ(0, rig.Process().SaveToFlash());
  EXPECT_EQ(0, nAccesses);
  EXPECT_TRUE(rig.TakeSignals().empty());
}

TEST(HostProcess, TakesACameraWithAColourFilterForAColourCamera)
{
  EXPECT_FALSE(CHostRig("Mono8").Process().IsColorCamera());
  EXPECT_TRUE(CHostRig("BayerGB8").Process().IsColorCamera());
  CHostRig rig("BayerGB8");
  rig.Camera().Enumeration("PixelColorFilter").Access(GenApi::NI);
  EXPECT_EQ(0, rig.Process().InitProcess());
  EXPECT_FALSE(rig.Process().IsColorCamera());
}

TEST(HostProcess, InitFailsWhenAColourCameraDoesNotTellItsFormats)
{
  CTestCamera cameraWithoutList("BayerGB8");
  cameraWithoutList.Enumeration("PixelFormat").Access(GenApi::NA);
  EXPECT_EQ(-1002, InitOf(cameraWithoutList));
  CTestCamera cameraWithoutFilter("BayerGB8");
  cameraWithoutFilter.Enumeration("PixelColorFilter").Poke(99);
  EXPECT_EQ(-1002, InitOf(cameraWithoutFilter));
  CTestCamera monochrome("Mono8");
  monochrome.Enumeration("PixelFormat").Access(GenApi::NA);
  EXPECT_EQ(0, InitOf(monochrome));
}

TEST(HostProcess, SupportsTheBayerFormatsOfAColourCamera)
{
  EXPECT_TRUE(CHostRig("Mono12").Process().IsPixelFormatSupported());
  CHostRig rig("BayerBG12");
  EXPECT_TRUE(rig.Process().IsPixelFormatSupported());
  rig.Camera().Enumeration("PixelFormat").Entry("RGB8", 0x02180014);
  EXPECT_TRUE(rig.Process().IsPixelFormatSupported());
  rig.Camera().Enumeration("PixelFormat").Select("RGB8");
  EXPECT_FALSE(rig.Process().IsPixelFormatSupported());
  rig.Camera().Enumeration("PixelFormat").Access(GenApi::NA);
  EXPECT_FALSE(rig.Process().IsPixelFormatSupported());
}

TEST(HostProcess, WithoutADeviceIsInvalid)
{
  CTestCamera camera;
  CShadingCorrectionPro_PC process{CFeatureAccess(nullptr), CFeatureAccess(&camera.Stream())};
  EXPECT_EQ(-3, process.InitProcess());
  EXPECT_EQ(-3, process.PrepareDeviceParam());
  EXPECT_EQ(-3, process.AcquireDarkImage());
  EXPECT_EQ(-3, process.AcquireBrightImage());
  EXPECT_EQ(-3, process.ExecuteCorrection());
  EXPECT_EQ(-3, process.SaveToFile());
  EXPECT_EQ(0, process.RestoreDeviceParam());
}

TEST(HostProcess, WithoutAStreamCannotAcquire)
{
  CTestCamera camera;
  CShadingCorrectionPro_PC process{CFeatureAccess(&camera.Device()), CFeatureAccess(nullptr)};
  EXPECT_EQ(0, process.InitProcess());
  EXPECT_EQ(-3, process.PrepareDeviceParam());
  EXPECT_EQ(-3, process.AcquireDarkImage());
  EXPECT_EQ(-3, process.AcquireBrightImage());
  EXPECT_EQ(-1012, process.ExecuteCorrection());
  EXPECT_EQ(-3, process.SaveToFile());
  EXPECT_EQ(0, process.RestoreDeviceParam());
}

TEST(HostProcess, RestoringStopsTheStreamAlsoWhenNothingWasPrepared)
{
  CHostRig rig;
  const auto mapBefore = rig.TakeSnapshot();
  EXPECT_EQ(0, rig.Process().RestoreDeviceParam());
  EXPECT_EQ((std::vector<int32_t>{11}), rig.TakeSignals());
  EXPECT_EQ(mapBefore, rig.TakeSnapshot());
}

TEST(HostProcess, DropsAFrameThatNobodyAskedFor)
{
  CHostRig rig;
  const std::vector<uint8_t> listFrame = rig.Camera().MakeFrame(255);
  rig.Process().ReceiveImage(listFrame.data(), static_cast<uint32_t>(listFrame.size()));
  rig.Process().SetImageReady();
  EXPECT_EQ(0, rig.AcquireDark(10)); // the early signal is not taken for the dark frame
  EXPECT_EQ(1, rig.GetFrameCount());
  EXPECT_EQ(10.0, rig.Process().GetImageMaxGray());
}

TEST(HostProcess, HasAMetaObjectOfItsOwn)
{
  CHostRig rig;
  const QMetaObject *pMetaObject = rig.Process().metaObject();
  EXPECT_STREQ("CShadingCorrectionPro_PC", pMetaObject->className());
  EXPECT_STREQ("IShadingCorrectionProcess", pMetaObject->superClass()->className());
  EXPECT_GE(pMetaObject->indexOfSignal("SigAcquisitionStatusChanged(PLUGIN_MSG)"), 0);
}

TEST(ProcessFactory, MakesTheProcessOfACameraThatIsCorrectedOnTheHost)
{
  CTestCamera camera;
  std::unique_ptr<IShadingCorrectionProcess> pProcess;
  EXPECT_EQ(0, CreateShadingCorrectionProcess(EProcessKind::HostFlatField, CFeatureAccess(&camera.Device()),
                                              CFeatureAccess(&camera.Stream()), pProcess));
  EXPECT_NE(nullptr, dynamic_cast<CShadingCorrectionPro_PC *>(pProcess.get()));
}
