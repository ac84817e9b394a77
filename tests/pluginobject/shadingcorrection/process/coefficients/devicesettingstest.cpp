#include "pluginobject/shadingcorrection/process/coefficients/devicecorrection.h"

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/support/correctingcamera.h"

using ffc::pluginobject::CFeatureAccess;
using namespace ffc::process;
using namespace ffc::test;

namespace {

class DeviceSettings : public testing::Test {
protected:
  explicit DeviceSettings(const char *pFormat = "BayerGR8") : m_camera(pFormat) {}

  CFeatureAccess Features() { return CFeatureAccess(&m_camera.Device()); }
  int32_t Read(bool bColour = true)
  {
    return ReadDeviceSettings(Features(), bColour, ApplyFlatFieldBlockEntry, m_stSettings, m_stInfo);
  }

  CCorrectingCamera m_camera;
  SDeviceSettings m_stSettings;
  FFCInfo m_stInfo;
};

} // namespace

TEST_F(DeviceSettings, AreReadFromTheCamera)
{
  m_camera.Enumeration("FFCBlockSize").Select("BlockSize_256");
  m_camera.Enumeration("FFCFrameCount").Select("FFCFrameCount_16");
  EXPECT_EQ(Read(), 0);
  EXPECT_EQ(m_stSettings.strPixelColorFilter, "BayerGR");
  EXPECT_EQ(m_stSettings.GetGrid().nBayerType, 3);
  EXPECT_EQ(m_stSettings.stBlock.nWidth, 16);
  EXPECT_EQ(m_stSettings.stBlock.nHeight, 16);
  EXPECT_EQ(m_stInfo.nBlockSizeCode, 1U);
  EXPECT_EQ(m_stInfo.nFrameCount, 16U);
}

TEST_F(DeviceSettings, OfAMonochromeCameraHaveNoFilter)
{
  EXPECT_EQ(Read(false), 0);
  EXPECT_EQ(m_stSettings.strPixelColorFilter, "");
  EXPECT_EQ(m_stSettings.GetGrid().nBayerType, 0);
}

TEST_F(DeviceSettings, OfACameraThatLostItsFilterHaveNoneAnyMore)
{
  EXPECT_EQ(Read(), 0);
  EXPECT_EQ(m_stSettings.GetGrid().nBayerType, 3);
  EXPECT_EQ(Read(false), 0);
  EXPECT_EQ(m_stSettings.strPixelColorFilter, "");
  EXPECT_EQ(m_stSettings.GetGrid().nBayerType, 0);
}

TEST_F(DeviceSettings, StopAtTheFirstThatCannotBeRead)
{
  m_camera.Enumeration("FFCFrameCount").Select("FFCFrameCount_8");
  m_camera.Enumeration("FFCBlockSize").Access(GenApi::NA);
  EXPECT_EQ(Read(), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_EQ(m_stSettings.stBlock.nWidth, 0);
  EXPECT_EQ(m_stInfo.nFrameCount, 0U);
  EXPECT_EQ(ReadDeviceSettings(CFeatureAccess(nullptr), true, ApplyFlatFieldBlockEntry, m_stSettings, m_stInfo),
            PLUGIN_STATUS_INVALID_PARAM);
}

TEST_F(DeviceSettings, ACameraWithAColourFilterIsAColourCamera)
{
  EXPECT_TRUE(ReadIsColorCamera(Features()));
  m_camera.Enumeration("PixelColorFilter").Access(GenApi::NA);
  EXPECT_TRUE(ReadIsColorCamera(Features())); // not available now, but there
  m_camera.Enumeration("PixelColorFilter").Access(GenApi::NI);
  EXPECT_FALSE(ReadIsColorCamera(Features()));
  EXPECT_FALSE(ReadIsColorCamera(CFeatureAccess(nullptr)));
  CCorrectingCamera monochrome("Mono8");
  EXPECT_FALSE(ReadIsColorCamera(CFeatureAccess(&monochrome.Device())));
}

TEST_F(DeviceSettings, AFrameCountIsTakenWhenTheCameraTookIt)
{
  EXPECT_EQ(WriteFrameCount(Features(), "FFCFrameCount_4", m_stInfo), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_stInfo.nFrameCount, 4U);
  EXPECT_EQ(WriteFrameCount(Features(), "FFCFrameCount_5", m_stInfo), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_EQ(WriteFrameCount(CFeatureAccess(nullptr), "FFCFrameCount_8", m_stInfo), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(m_stInfo.nFrameCount, 4U);
  m_camera.Enumeration("FFCFrameCount").Entry("FFCFrameCount_3", 9);
  EXPECT_EQ(WriteFrameCount(Features(), "FFCFrameCount_3", m_stInfo),
            PLUGIN_STATUS_SUCCESS); // only the camera knows it
  EXPECT_EQ(m_stInfo.nFrameCount, 4U);
}
