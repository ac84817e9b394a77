#include <atomic>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/devicerig.h"

using namespace ffc::test;
using ffc::genapi::CSoftwareCommand;
using ffc::genapi::CSoftwareFloat;
using ffc::genapi::SNodeAccess;

namespace {

// A camera, idle or streaming, on which an acquisition has succeeded once, with another state in "UserSet0".
class DeviceRestore : public testing::TestWithParam<std::tuple<const char *, bool, bool>> {
protected:
  DeviceRestore() : m_rig(std::get<0>(GetParam()))
  {
    EXPECT_EQ(m_rig.Process().SetFrameCount("FFCFrameCount_2"), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(Acquire(100), PLUGIN_STATUS_SUCCESS);
    m_rig.ChangeSettings();
    m_rig.SetStreaming(IsStreaming());
    m_rig.TakeSignals();
    m_mapBefore = m_rig.TakeSettings();
  }

  static bool IsStreaming() { return std::get<1>(GetParam()); }
  static bool IsBright() { return std::get<2>(GetParam()); }

  int32_t Acquire() { return IsBright() ? m_rig.Process().AcquireBrightImage() : m_rig.Process().AcquireDarkImage(); }
  int32_t Acquire(uint32_t nGray)
  {
    m_rig.ShowGray(nGray);
    return Acquire();
  }

  void ExpectRestored()
  {
    EXPECT_EQ(DescribeChanges(m_mapBefore, m_rig.TakeSettings()), "");
    EXPECT_EQ(IsStreaming(), m_rig.IsStreaming());
    EXPECT_EQ(m_rig.Process().WaitImageRequest(), 258U);
  }

  CDeviceRig m_rig;
  Settings m_mapBefore;
};

} // namespace

TEST_P(DeviceRestore, AfterSuccess)
{
  EXPECT_EQ(Acquire(100), PLUGIN_STATUS_SUCCESS);
  ExpectRestored();
  EXPECT_EQ(Acquire(100), PLUGIN_STATUS_SUCCESS);
  ExpectRestored();
}

TEST_P(DeviceRestore, AfterATimeout)
{
  m_rig.Camera().Float("ExposureTime").Poke(-970000.0);
  m_mapBefore = m_rig.TakeSettings();
  m_rig.Show(nullptr);
  EXPECT_EQ(Acquire(), PLUGIN_STATUS_BUFFER_TIMEOUT);
  ExpectRestored();
}

TEST_P(DeviceRestore, AfterAStop)
{
  m_rig.Show([this](int) {
    m_rig.Process().SetStopFlag(true);
    return m_rig.Camera().MakeFrame(100);
  });
  EXPECT_EQ(Acquire(), PLUGIN_STATUS_NEED_BAYER_FORMAT);
  ExpectRestored();
  m_rig.Process().SetStopFlag(false);
  EXPECT_EQ(Acquire(100), PLUGIN_STATUS_SUCCESS);
}

TEST_P(DeviceRestore, AfterALossOfThePayload)
{
  std::atomic<bool> bChanged{false};
  m_rig.Camera().Integer("PayloadSize").OnRead([&bChanged] { return bChanged ? 64 * 64 - 1 : 64 * 64; });
  m_rig.Show([&bChanged](int) {
    bChanged = true;
    return std::vector<uint8_t>(64 * 64, 100);
  });
  EXPECT_EQ(Acquire(), PLUGIN_STATUS_BUFFER_SIZE_ERROR);
  bChanged = false;
  ExpectRestored();
}

TEST_P(DeviceRestore, AfterAPayloadThatCannotBeAllocated)
{
  std::atomic<bool> bHuge{true};
  m_rig.Camera().Integer("PayloadSize").OnRead([&bHuge] { return bHuge ? int64_t{1} << 62 : int64_t{64 * 64}; });
  EXPECT_EQ(Acquire(100), PLUGIN_STATUS_OUT_OF_MEMORY);
  bHuge = false;
  ExpectRestored();
}

TEST_P(DeviceRestore, AfterAFrameThatCannotBeAnalysed)
{
  // Only the factory set's frame has an odd side.
  m_rig.Camera().ChangeDefault([this] { m_rig.Camera().Integer("Width").Poke(65); });
  EXPECT_EQ(Acquire(100), PLUGIN_STATUS_INVALID_PARAM);
  ExpectRestored();
}

TEST_P(DeviceRestore, WhenTheUsersStateCannotBeKept)
{
  m_rig.Camera().Device().Find<CSoftwareCommand>("UserSetSave")->Access(GenApi::NA);
  EXPECT_EQ(Acquire(100), PLUGIN_STATUS_FEATURE_ERROR);
  ExpectRestored();
}

TEST_P(DeviceRestore, WhenAFeatureThatEveryCameraNeedsIsNotImplemented)
{
  m_rig.Camera().Integer("DigitalShift").Access(GenApi::NI);
  m_mapBefore = m_rig.TakeSettings();
  EXPECT_EQ(Acquire(100), PLUGIN_STATUS_FEATURE_ERROR);
  ExpectRestored();
}

TEST_P(DeviceRestore, WhenTheFactorySetRefusesAUsersValue)
{
  for (const char *pName : {"ExposureTime", "Gain", "BlackLevel"}) {
    CSoftwareFloat &node = *m_rig.Camera().Device().Find<CSoftwareFloat>(pName);
    node.Access(GenApi::RO);
    m_mapBefore = m_rig.TakeSettings();
    EXPECT_EQ(Acquire(100), PLUGIN_STATUS_FEATURE_ERROR) << pName;
    ExpectRestored();
    node.Access(GenApi::RW);
  }
}

INSTANTIATE_TEST_SUITE_P(Cameras, DeviceRestore,
                         testing::Combine(testing::Values("Mono8", "BayerGB8"), testing::Bool(), testing::Bool()),
                         [](const auto &stInfo) {
                           return std::string(std::get<0>(stInfo.param)) +
                                  (std::get<1>(stInfo.param) ? "Streaming" : "Idle") +
                                  (std::get<2>(stInfo.param) ? "Bright" : "Dark");
                         });

TEST(DeviceRestoreParts, AnOlderUserSetIsNotLoadedOverAStateThatWasNotSaved)
{
  for (const char *pFailing : {"UserSetSelector", "ExposureTime", "DigitalShift", "UserSetSave"}) {
    CDeviceRig rig;
    rig.ChangeSettings();
    const Settings mapBefore = rig.TakeSettings();
    bool bLoaded = false;
    rig.SetHook([&](const SNodeAccess &stAccess) {
      bLoaded = bLoaded || (stAccess.strNode == "UserSetLoad" && stAccess.eKind == SNodeAccess::EKind::Execute);
      if (stAccess.strNode == pFailing) {
        throw GenICam::TimeoutException("no answer", __FILE__, __LINE__);
      }
    });
    EXPECT_EQ(rig.AcquireDark(10), PLUGIN_STATUS_FEATURE_ERROR) << pFailing;
    EXPECT_EQ(rig.AcquireBright(120), PLUGIN_STATUS_FEATURE_ERROR) << pFailing;
    rig.SetHook(nullptr);
    EXPECT_FALSE(bLoaded) << pFailing;
    EXPECT_EQ(DescribeChanges(mapBefore, rig.TakeSettings()), "") << pFailing;
  }
}

TEST(DeviceRestoreParts, RestoringAloneLoadsTheKeptState)
{
  CDeviceRig rig;
  rig.ChangeSettings(); // a gain of 3 is kept
  EXPECT_EQ(rig.Process().SaveUserParam(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().RestoreDeviceParam(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Camera().Float("Gain").Peek(), 3.0);
  EXPECT_EQ(rig.Camera().Enumeration("UserSetSelector").PeekSymbolic(), "Default");
  EXPECT_EQ(rig.TakeSignals(), (std::vector<int32_t>{11}));
}

TEST(DeviceRestoreParts, RestoringAloneLoadsTheKeptStateAlsoAfterAFailedAcquisition)
{
  CDeviceRig rig;
  rig.ChangeSettings();
  rig.Camera().Device().Find<CSoftwareCommand>("UserSetSave")->Access(GenApi::NA);
  EXPECT_EQ(rig.AcquireDark(10), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_EQ(rig.Camera().Float("Gain").Peek(), 7.5);
  EXPECT_EQ(rig.Process().RestoreDeviceParam(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Camera().Float("Gain").Peek(), 3.0);
}

TEST(DeviceRestoreParts, PreparingLeavesTheUsersExposureOnTheFactoryState)
{
  CDeviceRig rig;
  rig.ChangeSettings();
  const Settings mapBefore = rig.TakeSettings();
  EXPECT_EQ(rig.Process().SaveUserParam(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().PrepareDeviceParam(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Camera().Float("Gain").Peek(), 7.5);
  EXPECT_EQ(rig.Camera().Float("ExposureTime").Peek(), 20000.0);
  EXPECT_EQ(rig.Camera().Enumeration("DeadPixelCorrect").PeekSymbolic(), "On");
  EXPECT_EQ(rig.Camera().Enumeration("TriggerMode").PeekSymbolic(), "Off"); // the factory's
  EXPECT_EQ(rig.Process().RestoreDeviceParam(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(DescribeChanges(mapBefore, rig.TakeSettings()), "");
}

TEST(DeviceRestoreParts, AFeatureThatIsMissingIsInvalid)
{
  CDeviceRig rig("Mono8", 64, 64, {"DigitalShift"});
  rig.ChangeSettings();
  const Settings mapBefore = rig.TakeSettings();
  EXPECT_EQ(rig.AcquireDark(10), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(rig.AcquireBright(120), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(DescribeChanges(mapBefore, rig.TakeSettings()), "");
}

TEST(DeviceRestoreParts, TheStreamComesBackAlsoWhenItsStateWasNotReadInTime)
{
  CDeviceRig rig;
  rig.SetStreaming(true);
  rig.Camera().Float("ExposureTime").Access(GenApi::NA); // fails before the stream's state is read
  EXPECT_EQ(rig.AcquireDark(10), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_TRUE(rig.IsStreaming());
  EXPECT_EQ(rig.TakeSignals(), (std::vector<int32_t>{11, 10}));
}

TEST(DeviceRestoreParts, AnIdleStreamIsNotStartedByWhatAnEarlierAcquisitionSaw)
{
  CDeviceRig rig;
  rig.SetStreaming(true);
  EXPECT_EQ(rig.AcquireDark(10), PLUGIN_STATUS_SUCCESS);
  rig.SetStreaming(false);
  rig.Camera().Float("ExposureTime").Access(GenApi::NA);
  EXPECT_EQ(rig.AcquireDark(10), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_FALSE(rig.IsStreaming());
}
