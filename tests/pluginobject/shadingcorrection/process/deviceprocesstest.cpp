#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/devicerig.h"

using ffc::pluginobject::CFeatureAccess;
using namespace ffc::test;

TEST(DeviceProcess, TakesItsSettingsFromTheCamera)
{
  CDeviceRig rig("Mono8", 128, 96);
  rig.Camera().Enumeration("FFCFrameCount").Select("FFCFrameCount_8");
  rig.Camera().Enumeration("FFCBlockSize").Select("BlockSize_256");
  rig.Camera().Integer("FFCExpectGray").Poke(77);
  EXPECT_EQ(rig.Process().InitProcess(), PLUGIN_STATUS_SUCCESS);
  const FFCInfo stInfo = rig.Process().GetCorrectionInfo();
  EXPECT_EQ(stInfo.nValid, 0U);
  EXPECT_EQ(stInfo.nMode, 0U);
  EXPECT_EQ(stInfo.nFrameCount, 8U);
  EXPECT_EQ(stInfo.nBlockSizeCode, 1U);
  EXPECT_EQ(stInfo.nCoefficientsSize, 10U * 8U * 8U + 24U); // 8 x 6 blocks and their ring
  EXPECT_EQ(stInfo.nExpectGray, 77U);
}

TEST(DeviceProcess, AnUnknownBlockSizeOrFrameCountLeavesTheFormerOne)
{
  CDeviceRig rig;
  rig.Camera().Enumeration("FFCFrameCount").Select("FFCFrameCount_4");
  rig.Camera().Enumeration("FFCBlockSize").Select("BlockSize_256");
  EXPECT_EQ(rig.Process().InitProcess(), PLUGIN_STATUS_SUCCESS);
  rig.Camera().Enumeration("FFCFrameCount").Entry("FFCFrameCount_32", 5).Select("FFCFrameCount_32");
  rig.Camera().Enumeration("FFCBlockSize").Entry("BlockSize_64", 7).Select("BlockSize_64");
  EXPECT_EQ(rig.Process().InitProcess(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().GetCorrectionInfo().nFrameCount, 4U);
  EXPECT_EQ(rig.Process().GetCorrectionInfo().nBlockSizeCode, 1U);
}

TEST(DeviceProcess, WithABlockSizeThatWasNeverKnownNoFrameIsAnalysed)
{
  CCorrectingCamera camera;
  camera.Enumeration("FFCBlockSize").Entry("BlockSize_64", 7).Select("BlockSize_64");
  camera.SaveAsDefault();
  CShadingCorrectionPro_Dev process{CFeatureAccess(&camera.Device())};
  EXPECT_EQ(process.InitProcess(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(process.GetCorrectionInfo().nBlockSizeCode, 0U);
  // The host delivers as soon as it is asked to stream.
  QObject::connect(&process, &IShadingCorrectionProcess::SigAcquisitionStatusChanged, [&](const PLUGIN_MSG &stMessage) {
    if (stMessage.nMsgCode == PLUGIN_MSG_ACQUISITION_ON) {
      const std::vector<uint8_t> listFrame = camera.MakeFrame(10);
      process.ReceiveImage(listFrame.data(), static_cast<uint32_t>(listFrame.size()));
      process.SetImageReady();
    }
  });
  EXPECT_EQ(process.AcquireDarkImage(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(process.ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM);
}

TEST(DeviceProcess, ACoefficientsSizeThatCannotBeAllocatedIsOutOfMemory)
{
  for (const int64_t nSize : {int64_t{-1}, INT64_MIN, INT64_MAX, int64_t{1} << 40}) {
    CDeviceRig rig;
    rig.Camera().Integer("FFCCoefficientsSize").OnRead([nSize] { return nSize; });
    EXPECT_EQ(rig.Process().InitProcess(), PLUGIN_STATUS_OUT_OF_MEMORY) << nSize;
    CShadingCorrectionPro_Dev process{CFeatureAccess(&rig.Camera().Device())};
    EXPECT_EQ(process.InitProcess(), PLUGIN_STATUS_OUT_OF_MEMORY) << nSize;
    EXPECT_EQ(process.ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM) << nSize;
  }
}

TEST(DeviceProcess, ACoefficientsSizeWithoutRoomForABodyIsInvalid)
{
  for (const int64_t nSize : {0, 1, 23, 24}) {
    CDeviceRig rig;
    rig.Camera().Integer("FFCCoefficientsSize").OnRead([nSize] { return nSize; });
    EXPECT_EQ(rig.Process().InitProcess(), PLUGIN_STATUS_SUCCESS) << nSize;
    EXPECT_EQ(rig.AcquireBright(120), PLUGIN_STATUS_SUCCESS) << nSize;
    EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM) << nSize;
    EXPECT_EQ(rig.Camera().Enumeration("FlatFieldCorrection").PeekSymbolic(), "Off") << nSize;
  }
}

TEST(DeviceProcess, InitStopsAtTheFirstFeatureThatCannotBeRead)
{
  for (const char *pName : {"PixelColorFilter", "FFCBlockSize", "FFCFrameCount"}) {
    CDeviceRig rig("BayerGR8");
    rig.Camera().Enumeration(pName).Access(GenApi::NA);
    EXPECT_EQ(rig.Process().InitProcess(), PLUGIN_STATUS_FEATURE_ERROR) << pName;
  }
  for (const char *pName : {"FFCExpectGray", "FFCCoefficientsSize"}) {
    CDeviceRig rig;
    rig.Camera().Integer(pName).Access(GenApi::NA);
    EXPECT_EQ(rig.Process().InitProcess(), PLUGIN_STATUS_FEATURE_ERROR) << pName;
  }
}

TEST(DeviceProcess, AnExpectedGreyThatTheCameraRefusesIsNotTaken)
{
  CDeviceRig rig;
  EXPECT_EQ(rig.Process().SetExpectGray(137), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().SetExpectGray(256), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_EQ(rig.Process().GetCorrectionInfo().nExpectGray, 137U);
  EXPECT_EQ(rig.Camera().Integer("FFCExpectGray").Peek(), 137);
  rig.Camera().Integer("FFCExpectGray").Range(0, INT64_MAX);
  EXPECT_EQ(rig.Process().SetExpectGray((int64_t{1} << 32) + 5), PLUGIN_STATUS_SUCCESS); // its low 32 bits are kept
  EXPECT_EQ(rig.Process().GetCorrectionInfo().nExpectGray, 5U);
}

TEST(DeviceProcess, ACorrectedFrameIsTheCamerasMatter)
{
  CDeviceRig rig;
  const std::vector<uint8_t> listSource(64 * 64, 9);
  std::vector<uint8_t> listDestination(64 * 64, 1);
  EXPECT_EQ(rig.Process().CorrectImage(listSource.data(), listDestination.data(), 64, 64, 0x01080001),
            PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(listDestination, std::vector<uint8_t>(64 * 64, 1));
  EXPECT_EQ(rig.Process().CorrectImage(nullptr, nullptr, 0, 0, 0), PLUGIN_STATUS_SUCCESS);
}

TEST(DeviceProcess, WithoutACameraIsInvalid)
{
  CShadingCorrectionPro_Dev process{CFeatureAccess(nullptr)};
  EXPECT_EQ(process.InitProcess(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(process.SaveUserParam(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(process.PrepareDeviceParam(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(process.AcquireDarkImage(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(process.AcquireBrightImage(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(process.ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(process.SetFrameCount("FFCFrameCount_4"), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(process.SetExpectGray(100), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(process.LoadFromFlash(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(process.SaveToFlash(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(process.SaveToFile(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(process.RestoreDeviceParam(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(process.GetCorrectionInfo().nFrameCount, 0U);
  EXPECT_EQ(process.GetCorrectionInfo().nExpectGray, 0U);
  EXPECT_FALSE(process.IsColorCamera());
  EXPECT_TRUE(process.IsPixelFormatSupported());
}

TEST(DeviceProcess, WithoutACameraNoAcquisitionTouchesTheStream)
{
  CShadingCorrectionPro_Dev process{CFeatureAccess(nullptr)};
  int nMessages = 0;
  QObject::connect(&process, &IShadingCorrectionProcess::SigAcquisitionStatusChanged,
                   [&nMessages](const PLUGIN_MSG &) { ++nMessages; });
  EXPECT_EQ(process.AcquireDarkImage(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(process.AcquireBrightImage(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(nMessages, 0);
}
