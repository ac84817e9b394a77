#include "pluginobject/shadingcorrection/process/coefficients/devicecorrection.h"

#include <gtest/gtest.h>

#include "tests/support/correctingcamera.h"

using namespace ffc::process;

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
  EXPECT_EQ(0, Read());
  EXPECT_EQ("BayerGR", m_stSettings.strPixelColorFilter);
  EXPECT_EQ(3, m_stSettings.GetGrid().nBayerType);
  EXPECT_EQ(16, m_stSettings.stBlock.nWidth);
  EXPECT_EQ(16, m_stSettings.stBlock.nHeight);
  EXPECT_EQ(1U, m_stInfo.nBlockSizeCode);
  EXPECT_EQ(16U, m_stInfo.nFrameCount);
}

TEST_F(DeviceSettings, OfAMonochromeCameraHaveNoFilter)
{
  EXPECT_EQ(0, Read(false));
  EXPECT_EQ("", m_stSettings.strPixelColorFilter);
  EXPECT_EQ(0, m_stSettings.GetGrid().nBayerType);
}

TEST_F(DeviceSettings, OfACameraThatLostItsFilterHaveNoneAnyMore)
{
  EXPECT_EQ(0, Read());
  EXPECT_EQ(3, m_stSettings.GetGrid().nBayerType);
  EXPECT_EQ(0, Read(false));
  EXPECT_EQ("", m_stSettings.strPixelColorFilter);
  EXPECT_EQ(0, m_stSettings.GetGrid().nBayerType);
}

TEST_F(DeviceSettings, StopAtTheFirstThatCannotBeRead)
{
  m_camera.Enumeration("FFCFrameCount").Select("FFCFrameCount_8");
  m_camera.Enumeration("FFCBlockSize").Access(GenApi::NA);
  EXPECT_EQ(-1002, Read());
  EXPECT_EQ(0, m_stSettings.stBlock.nWidth);
  EXPECT_EQ(0U, m_stInfo.nFrameCount);
  EXPECT_EQ(-3, ReadDeviceSettings(CFeatureAccess(nullptr), true, ApplyFlatFieldBlockEntry, m_stSettings, m_stInfo));
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
  EXPECT_EQ(0, WriteFrameCount(Features(), "FFCFrameCount_4", m_stInfo));
  EXPECT_EQ(4U, m_stInfo.nFrameCount);
  EXPECT_EQ(-1002, WriteFrameCount(Features(), "FFCFrameCount_5", m_stInfo));
  EXPECT_EQ(-3, WriteFrameCount(CFeatureAccess(nullptr), "FFCFrameCount_8", m_stInfo));
  EXPECT_EQ(4U, m_stInfo.nFrameCount);
  m_camera.Enumeration("FFCFrameCount").Entry("FFCFrameCount_3", 9);
  EXPECT_EQ(0, WriteFrameCount(Features(), "FFCFrameCount_3", m_stInfo)); // only the camera knows it
  EXPECT_EQ(4U, m_stInfo.nFrameCount);
}
