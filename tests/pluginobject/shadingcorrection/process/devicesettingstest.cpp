#include "pluginobject/shadingcorrection/process/coefficients/devicesettings.h"

#include <gtest/gtest.h>

#include "pluginobject/shadingcorrection/process/camerastate/streamingstate.h"
#include "pluginobject/shadingcorrection/process/camerastate/triggerguard.h"
#include "pluginobject/shadingcorrection/process/camerastate/userset.h"
#include "tests/support/correctingcamera.h"

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
  EXPECT_EQ(3, m_stSettings.GetBayerType());
  EXPECT_EQ(16, m_stSettings.stBlock.nWidth);
  EXPECT_EQ(16, m_stSettings.stBlock.nHeight);
  EXPECT_EQ(1U, m_stInfo.nBlockSizeCode);
  EXPECT_EQ(16U, m_stInfo.nFrameCount);
}

TEST_F(DeviceSettings, OfAMonochromeCameraHaveNoFilter)
{
  EXPECT_EQ(0, Read(false));
  EXPECT_EQ("", m_stSettings.strPixelColorFilter);
  EXPECT_EQ(0, m_stSettings.GetBayerType());
}

TEST_F(DeviceSettings, OfACameraThatLostItsFilterHaveNoneAnyMore)
{
  EXPECT_EQ(0, Read());
  EXPECT_EQ(3, m_stSettings.GetBayerType());
  EXPECT_EQ(0, Read(false));
  EXPECT_EQ("", m_stSettings.strPixelColorFilter);
  EXPECT_EQ(0, m_stSettings.GetBayerType());
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

TEST_F(DeviceSettings, AUserSetIsSelectedAndSavedOrLoaded)
{
  m_camera.Float("Gain").Poke(5.0);
  EXPECT_EQ(0, SaveUserSet(Features(), "UserSet0"));
  EXPECT_EQ("UserSet0", m_camera.Enumeration("UserSetSelector").PeekSymbolic());
  EXPECT_EQ(0, LoadUserSet(Features(), "Default"));
  EXPECT_EQ(0.0, m_camera.Float("Gain").Peek());
  EXPECT_EQ(0, LoadUserSet(Features(), "UserSet0"));
  EXPECT_EQ(5.0, m_camera.Float("Gain").Peek());
}

TEST_F(DeviceSettings, AUserSetThatCannotBeSelectedIsNeitherSavedNorLoaded)
{
  m_camera.Float("Gain").Poke(5.0);
  m_camera.Enumeration("UserSetSelector").Select("UserSet0");
  EXPECT_EQ(-1002, SaveUserSet(Features(), "UserSet7"));
  EXPECT_EQ(-1002, LoadUserSet(Features(), "UserSet7"));
  EXPECT_EQ(5.0, m_camera.Float("Gain").Peek());
  EXPECT_EQ(-1002, SaveUserSet(Features(), "Default")); // the factory's
  EXPECT_EQ(-3, SaveUserSet(CFeatureAccess(nullptr), "UserSet0"));
}

TEST_F(DeviceSettings, TheTriggerIsSwitchedOffOnlyWhenItIsOn)
{
  CTriggerGuard guard;
  EXPECT_EQ(0, guard.SwitchOff(Features())); // nothing is known yet
  m_camera.Enumeration("TriggerMode").Select("On");
  EXPECT_EQ(0, guard.Save(Features()));
  EXPECT_EQ(0, guard.SwitchOff(Features()));
  EXPECT_EQ("Off", m_camera.Enumeration("TriggerMode").PeekSymbolic());
  guard.Restore(Features());
  EXPECT_EQ("On", m_camera.Enumeration("TriggerMode").PeekSymbolic());
  m_camera.Enumeration("TriggerMode").Select("Off");
  EXPECT_EQ(0, guard.Save(Features()));
  m_camera.Enumeration("TriggerMode").Access(GenApi::RO);
  EXPECT_EQ(0, guard.SwitchOff(Features())); // not written
}

TEST_F(DeviceSettings, ATriggerModeThatWasNeverReadIsLeftAlone)
{
  CTriggerGuard guard;
  m_camera.Enumeration("TriggerMode").Select("On");
  guard.Restore(Features());
  EXPECT_EQ("On", m_camera.Enumeration("TriggerMode").PeekSymbolic());
  m_camera.Enumeration("TriggerMode").Access(GenApi::NA);
  EXPECT_EQ(-1002, guard.Save(Features()));
}

TEST_F(DeviceSettings, TheStateOfTheStreamIsReadLateOnlyWhenItIsNotKnown)
{
  CStreamingState streaming;
  EXPECT_FALSE(streaming.WasStreaming());
  m_camera.Integer("TLParamsLocked").Poke(1);
  streaming.SaveLate(Features());
  EXPECT_TRUE(streaming.WasStreaming());
  m_camera.Integer("TLParamsLocked").Poke(0);
  streaming.SaveLate(Features());
  EXPECT_TRUE(streaming.WasStreaming()); // as it was when it was saved first
  EXPECT_EQ(0, streaming.Save(Features()));
  EXPECT_FALSE(streaming.WasStreaming());
  EXPECT_EQ(-3, streaming.Save(CFeatureAccess(nullptr)));
}
