#include <gtest/gtest.h>

#include "tests/pluginobject/shadingcorrection/process/devicerig.h"

using namespace ffc::test;

TEST(DeviceProcess, TakesItsSettingsFromTheCamera)
{
  CDeviceRig rig("Mono8", 128, 96);
  rig.Camera().Enumeration("FFCFrameCount").Select("FFCFrameCount_8");
  rig.Camera().Enumeration("FFCBlockSize").Select("BlockSize_256");
  rig.Camera().Integer("FFCExpectGray").Poke(77);
  EXPECT_EQ(0, rig.Process().InitProcess());
  const FFCInfo stInfo = rig.Process().GetCorrectionInfo();
  EXPECT_EQ(0U, stInfo.nValid);
  EXPECT_EQ(0U, stInfo.nMode);
  EXPECT_EQ(8U, stInfo.nFrameCount);
  EXPECT_EQ(1U, stInfo.nBlockSizeCode);
  EXPECT_EQ(10U * 8U * 8U + 24U, stInfo.nCoefficientsSize); // 8 x 6 blocks and their ring
  EXPECT_EQ(77U, stInfo.nExpectGray);
}

TEST(DeviceProcess, AnUnknownBlockSizeOrFrameCountLeavesTheFormerOne)
{
  CDeviceRig rig;
  rig.Camera().Enumeration("FFCFrameCount").Select("FFCFrameCount_4");
  rig.Camera().Enumeration("FFCBlockSize").Select("BlockSize_256");
  EXPECT_EQ(0, rig.Process().InitProcess());
  rig.Camera().Enumeration("FFCFrameCount").Entry("FFCFrameCount_32", 5).Select("FFCFrameCount_32");
  rig.Camera().Enumeration("FFCBlockSize").Entry("BlockSize_64", 7).Select("BlockSize_64");
  EXPECT_EQ(0, rig.Process().InitProcess());
  EXPECT_EQ(4U, rig.Process().GetCorrectionInfo().nFrameCount);
  EXPECT_EQ(1U, rig.Process().GetCorrectionInfo().nBlockSizeCode);
}

TEST(DeviceProcess, WithABlockSizeThatWasNeverKnownNoFrameIsAnalysed)
{
  CCorrectingCamera camera;
  camera.Enumeration("FFCBlockSize").Entry("BlockSize_64", 7).Select("BlockSize_64");
  camera.SaveAsDefault();
  CShadingCorrectionPro_Dev process{CFeatureAccess(&camera.Device())};
  EXPECT_EQ(0, process.InitProcess());
  EXPECT_EQ(0U, process.GetCorrectionInfo().nBlockSizeCode);
  // The host delivers as soon as it is asked to stream.
  QObject::connect(&process, &IShadingCorrectionProcess::SigAcquisitionStatusChanged, [&](const PLUGIN_MSG &stMessage) {
    if (stMessage.nMsgCode == PLUGIN_MSG_ACQUISITION_ON) {
      const std::vector<uint8_t> listFrame = camera.MakeFrame(10);
      process.ReceiveImage(listFrame.data(), static_cast<uint32_t>(listFrame.size()));
      process.SetImageReady();
    }
  });
  EXPECT_EQ(-3, process.AcquireDarkImage());
  EXPECT_EQ(-3, process.ExecuteCorrection());
}

TEST(DeviceProcess, ACoefficientsSizeThatCannotBeAllocatedIsOutOfMemory)
{
  for (const int64_t nSize : {int64_t{-1}, INT64_MIN, INT64_MAX, int64_t{1} << 40}) {
    CDeviceRig rig;
    rig.Camera().Integer("FFCCoefficientsSize").OnRead([nSize] { return nSize; });
    EXPECT_EQ(-2, rig.Process().InitProcess()) << nSize;
    CShadingCorrectionPro_Dev process{CFeatureAccess(&rig.Camera().Device())};
    EXPECT_EQ(-2, process.InitProcess()) << nSize;
    EXPECT_EQ(-3, process.ExecuteCorrection()) << nSize;
  }
}

TEST(DeviceProcess, ACoefficientsSizeWithoutRoomForABodyIsInvalid)
{
  for (const int64_t nSize : {0, 1, 23, 24}) {
    CDeviceRig rig;
    rig.Camera().Integer("FFCCoefficientsSize").OnRead([nSize] { return nSize; });
    EXPECT_EQ(0, rig.Process().InitProcess()) << nSize;
    EXPECT_EQ(0, rig.AcquireBright(120)) << nSize;
    EXPECT_EQ(-3, rig.Process().ExecuteCorrection()) << nSize;
    EXPECT_EQ("Off", rig.Camera().Enumeration("FlatFieldCorrection").PeekSymbolic()) << nSize;
  }
}

TEST(DeviceProcess, InitStopsAtTheFirstFeatureThatCannotBeRead)
{
  for (const char *pName : {"PixelColorFilter", "FFCBlockSize", "FFCFrameCount"}) {
    CDeviceRig rig("BayerGR8");
    rig.Camera().Enumeration(pName).Access(GenApi::NA);
    EXPECT_EQ(-1002, rig.Process().InitProcess()) << pName;
  }
  for (const char *pName : {"FFCExpectGray", "FFCCoefficientsSize"}) {
    CDeviceRig rig;
    rig.Camera().Integer(pName).Access(GenApi::NA);
    EXPECT_EQ(-1002, rig.Process().InitProcess()) << pName;
  }
}

TEST(DeviceProcess, HasNeitherFrameNorGreyBeforeTheFirstAcquisition)
{
  CDeviceRig rig;
  EXPECT_EQ(0.0, rig.Process().GetImageMaxGray());
  EXPECT_EQ(0.0, rig.Process().GetImageGrayDiff());
  EXPECT_FALSE(rig.Process().IsBlackLevelDefault());
  EXPECT_EQ(258U, rig.Process().WaitImageRequest());
  EXPECT_EQ(-3, rig.Process().ExecuteCorrection());
  EXPECT_EQ(0U, rig.Process().GetCorrectionInfo().nValid);
}

TEST(DeviceProcess, AFrameCountThatTheCameraRefusesIsNotTaken)
{
  CDeviceRig rig;
  EXPECT_EQ(0, rig.Process().SetFrameCount("FFCFrameCount_2"));
  EXPECT_EQ(-1002, rig.Process().SetFrameCount("FFCFrameCount_3"));
  rig.Camera().Enumeration("FFCFrameCount").Access(GenApi::RO);
  EXPECT_EQ(-1002, rig.Process().SetFrameCount("FFCFrameCount_16"));
  EXPECT_EQ(2U, rig.Process().GetCorrectionInfo().nFrameCount);
  EXPECT_EQ("FFCFrameCount_2", rig.Camera().Enumeration("FFCFrameCount").PeekSymbolic());
}

TEST(DeviceProcess, TakesEachFrameCountThatTheCameraTakes)
{
  CDeviceRig rig;
  for (const auto &[pEntry, nCount] : {std::pair{"FFCFrameCount_1", 1U},
                                       {"FFCFrameCount_2", 2U},
                                       {"FFCFrameCount_4", 4U},
                                       {"FFCFrameCount_8", 8U},
                                       {"FFCFrameCount_16", 16U}}) {
    EXPECT_EQ(0, rig.Process().SetFrameCount(pEntry));
    EXPECT_EQ(nCount, rig.Process().GetCorrectionInfo().nFrameCount);
    EXPECT_EQ(pEntry, rig.Camera().Enumeration("FFCFrameCount").PeekSymbolic());
  }
}

TEST(DeviceProcess, AnExpectedGreyThatTheCameraRefusesIsNotTaken)
{
  CDeviceRig rig;
  EXPECT_EQ(0, rig.Process().SetExpectGray(137));
  EXPECT_EQ(-1002, rig.Process().SetExpectGray(256));
  EXPECT_EQ(137U, rig.Process().GetCorrectionInfo().nExpectGray);
  EXPECT_EQ(137, rig.Camera().Integer("FFCExpectGray").Peek());
  rig.Camera().Integer("FFCExpectGray").Range(0, INT64_MAX);
  EXPECT_EQ(0, rig.Process().SetExpectGray((int64_t{1} << 32) + 5)); // its low 32 bits are kept
  EXPECT_EQ(5U, rig.Process().GetCorrectionInfo().nExpectGray);
}

TEST(DeviceProcess, ACorrectedFrameIsTheCamerasMatter)
{
  CDeviceRig rig;
  const std::vector<uint8_t> listSource(64 * 64, 9);
  std::vector<uint8_t> listDestination(64 * 64, 1);
  EXPECT_EQ(0, rig.Process().CorrectImage(listSource.data(), listDestination.data(), 64, 64, 0x01080001));
  EXPECT_EQ(std::vector<uint8_t>(64 * 64, 1), listDestination);
  EXPECT_EQ(0, rig.Process().CorrectImage(nullptr, nullptr, 0, 0, 0));
}

TEST(DeviceProcess, TakesACameraWithAColourFilterForAColourCamera)
{
  EXPECT_FALSE(CDeviceRig("Mono8").Process().IsColorCamera());
  CDeviceRig rig("BayerGB8");
  EXPECT_TRUE(rig.Process().IsColorCamera());
  rig.Camera().Enumeration("PixelColorFilter").Access(GenApi::NI);
  EXPECT_EQ(0, rig.Process().InitProcess());
  EXPECT_FALSE(rig.Process().IsColorCamera());
}

TEST(DeviceProcess, SupportsTheBayerFormatsOfAColourCamera)
{
  EXPECT_TRUE(CDeviceRig("Mono8").Process().IsPixelFormatSupported());
  CDeviceRig rig("BayerBG8");
  EXPECT_TRUE(rig.Process().IsPixelFormatSupported());
  rig.Camera().Enumeration("PixelFormat").Entry("RGB8", 0x02180014);
  EXPECT_TRUE(rig.Process().IsPixelFormatSupported());
  rig.Camera().Enumeration("PixelFormat").Select("RGB8");
  EXPECT_FALSE(rig.Process().IsPixelFormatSupported());
  rig.Camera().Enumeration("PixelFormat").Access(GenApi::NA);
  EXPECT_FALSE(rig.Process().IsPixelFormatSupported());
}

TEST(DeviceProcess, WithoutACameraIsInvalid)
{
  CShadingCorrectionPro_Dev process{CFeatureAccess(nullptr)};
  EXPECT_EQ(-3, process.InitProcess());
  EXPECT_EQ(-3, process.SaveUserParam());
  EXPECT_EQ(-3, process.PrepareDeviceParam());
  EXPECT_EQ(-3, process.AcquireDarkImage());
  EXPECT_EQ(-3, process.AcquireBrightImage());
  EXPECT_EQ(-3, process.ExecuteCorrection());
  EXPECT_EQ(-3, process.SetFrameCount("FFCFrameCount_4"));
  EXPECT_EQ(-3, process.SetExpectGray(100));
  EXPECT_EQ(-3, process.LoadFromFlash());
  EXPECT_EQ(-3, process.SaveToFlash());
  EXPECT_EQ(-3, process.SaveToFile());
  EXPECT_EQ(0, process.RestoreDeviceParam());
  EXPECT_EQ(0U, process.GetCorrectionInfo().nFrameCount);
  EXPECT_EQ(0U, process.GetCorrectionInfo().nExpectGray);
  EXPECT_FALSE(process.IsColorCamera());
  EXPECT_TRUE(process.IsPixelFormatSupported());
}

TEST(DeviceProcess, WithoutACameraNoAcquisitionTouchesTheStream)
{
  CShadingCorrectionPro_Dev process{CFeatureAccess(nullptr)};
  int nMessages = 0;
  QObject::connect(&process, &IShadingCorrectionProcess::SigAcquisitionStatusChanged,
                   [&nMessages](const PLUGIN_MSG &) { ++nMessages; });
  EXPECT_EQ(-3, process.AcquireDarkImage());
  EXPECT_EQ(-3, process.AcquireBrightImage());
  EXPECT_EQ(0, nMessages);
}

TEST(DeviceProcess, HasAMetaObjectOfItsOwn)
{
  CDeviceRig rig;
  const QMetaObject *pMetaObject = rig.Process().metaObject();
  EXPECT_STREQ("CShadingCorrectionPro_Dev", pMetaObject->className());
  EXPECT_STREQ("IShadingCorrectionProcess", pMetaObject->superClass()->className());
  EXPECT_GE(pMetaObject->indexOfSignal("SigAcquisitionStatusChanged(PLUGIN_MSG)"), 0);
}
