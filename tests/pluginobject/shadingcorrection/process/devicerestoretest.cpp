#include <atomic>

#include <gtest/gtest.h>

#include "tests/pluginobject/shadingcorrection/process/devicerig.h"

using namespace ffc::test;

namespace {

// A camera, idle or streaming, on which an acquisition has succeeded once, with another state in "UserSet0".
class DeviceRestore : public testing::TestWithParam<std::tuple<const char *, bool, bool>> {
protected:
  DeviceRestore() : m_rig(std::get<0>(GetParam()))
  {
    EXPECT_EQ(0, m_rig.Process().SetFrameCount("FFCFrameCount_2"));
    EXPECT_EQ(0, Acquire(100));
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
    EXPECT_EQ("", DescribeChanges(m_mapBefore, m_rig.TakeSettings()));
    EXPECT_EQ(IsStreaming(), m_rig.IsStreaming());
    EXPECT_EQ(258U, m_rig.Process().WaitImageRequest());
  }

  CDeviceRig m_rig;
  Settings m_mapBefore;
};

} // namespace

TEST_P(DeviceRestore, AfterSuccess)
{
  EXPECT_EQ(0, Acquire(100));
  ExpectRestored();
  EXPECT_EQ(0, Acquire(100));
  ExpectRestored();
}

TEST_P(DeviceRestore, AfterATimeout)
{
  m_rig.Camera().Float("ExposureTime").Poke(-970000.0);
  m_mapBefore = m_rig.TakeSettings();
  m_rig.Show(nullptr);
  EXPECT_EQ(-1009, Acquire());
  ExpectRestored();
}

TEST_P(DeviceRestore, AfterAStop)
{
  m_rig.Show([this](int) {
    m_rig.Process().SetStopFlag(true);
    return m_rig.Camera().MakeFrame(100);
  });
  EXPECT_EQ(-1017, Acquire());
  ExpectRestored();
  m_rig.Process().SetStopFlag(false);
  EXPECT_EQ(0, Acquire(100));
}

TEST_P(DeviceRestore, AfterALossOfThePayload)
{
  std::atomic<bool> bChanged{false};
  m_rig.Camera().Integer("PayloadSize").OnRead([&bChanged] { return bChanged ? 64 * 64 - 1 : 64 * 64; });
  m_rig.Show([&bChanged](int) {
    bChanged = true;
    return std::vector<uint8_t>(64 * 64, 100);
  });
  EXPECT_EQ(-1012, Acquire());
  bChanged = false;
  ExpectRestored();
}

TEST_P(DeviceRestore, AfterAPayloadThatCannotBeAllocated)
{
  std::atomic<bool> bHuge{true};
  m_rig.Camera().Integer("PayloadSize").OnRead([&bHuge] { return bHuge ? int64_t{1} << 62 : int64_t{64 * 64}; });
  EXPECT_EQ(-2, Acquire(100));
  bHuge = false;
  ExpectRestored();
}

TEST_P(DeviceRestore, AfterAFrameThatCannotBeAnalysed)
{
  // Only the factory set's frame has an odd side.
  m_rig.Camera().ChangeDefault([this] { m_rig.Camera().Integer("Width").Poke(65); });
  EXPECT_EQ(-3, Acquire(100));
  ExpectRestored();
}

TEST_P(DeviceRestore, WhenTheUsersStateCannotBeKept)
{
  m_rig.Camera().Device().Find<CSoftwareCommand>("UserSetSave")->Access(GenApi::NA);
  EXPECT_EQ(-1002, Acquire(100));
  ExpectRestored();
}

TEST_P(DeviceRestore, WhenAFeatureThatEveryCameraNeedsIsNotImplemented)
{
  m_rig.Camera().Integer("DigitalShift").Access(GenApi::NI);
  m_mapBefore = m_rig.TakeSettings();
  EXPECT_EQ(-1002, Acquire(100));
  ExpectRestored();
}

TEST_P(DeviceRestore, WhenTheFactorySetRefusesAUsersValue)
{
  for (const char *pName : {"ExposureTime", "Gain", "BlackLevel"}) {
    CSoftwareFloat &node = *m_rig.Camera().Device().Find<CSoftwareFloat>(pName);
    node.Access(GenApi::RO);
    m_mapBefore = m_rig.TakeSettings();
    EXPECT_EQ(-1002, Acquire(100)) << pName;
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
    EXPECT_EQ(-1002, rig.AcquireDark(10)) << pFailing;
    EXPECT_EQ(-1002, rig.AcquireBright(120)) << pFailing;
    rig.SetHook(nullptr);
    EXPECT_FALSE(bLoaded) << pFailing;
    EXPECT_EQ("", DescribeChanges(mapBefore, rig.TakeSettings())) << pFailing;
  }
}

TEST(DeviceRestoreParts, RestoringAloneLoadsTheKeptState)
{
  CDeviceRig rig;
  rig.ChangeSettings(); // a gain of 3 is kept
  EXPECT_EQ(0, rig.Process().SaveUserParam());
  EXPECT_EQ(0, rig.Process().RestoreDeviceParam());
  EXPECT_EQ(3.0, rig.Camera().Float("Gain").Peek());
  EXPECT_EQ("Default", rig.Camera().Enumeration("UserSetSelector").PeekSymbolic());
  EXPECT_EQ((std::vector<int32_t>{11}), rig.TakeSignals());
}

TEST(DeviceRestoreParts, RestoringAloneLoadsTheKeptStateAlsoAfterAFailedAcquisition)
{
  CDeviceRig rig;
  rig.ChangeSettings();
  rig.Camera().Device().Find<CSoftwareCommand>("UserSetSave")->Access(GenApi::NA);
  EXPECT_EQ(-1002, rig.AcquireDark(10));
  EXPECT_EQ(7.5, rig.Camera().Float("Gain").Peek());
  EXPECT_EQ(0, rig.Process().RestoreDeviceParam());
  EXPECT_EQ(3.0, rig.Camera().Float("Gain").Peek());
}

TEST(DeviceRestoreParts, PreparingLeavesTheUsersExposureOnTheFactoryState)
{
  CDeviceRig rig;
  rig.ChangeSettings();
  const Settings mapBefore = rig.TakeSettings();
  EXPECT_EQ(0, rig.Process().SaveUserParam());
  EXPECT_EQ(0, rig.Process().PrepareDeviceParam());
  EXPECT_EQ(7.5, rig.Camera().Float("Gain").Peek());
  EXPECT_EQ(20000.0, rig.Camera().Float("ExposureTime").Peek());
  EXPECT_EQ("On", rig.Camera().Enumeration("DeadPixelCorrect").PeekSymbolic());
  EXPECT_EQ("Off", rig.Camera().Enumeration("TriggerMode").PeekSymbolic()); // the factory's
  EXPECT_EQ(0, rig.Process().RestoreDeviceParam());
  EXPECT_EQ("", DescribeChanges(mapBefore, rig.TakeSettings()));
}

TEST(DeviceRestoreParts, AFeatureThatIsMissingIsInvalid)
{
  CDeviceRig rig("Mono8", 64, 64, {"DigitalShift"});
  rig.ChangeSettings();
  const Settings mapBefore = rig.TakeSettings();
  EXPECT_EQ(-3, rig.AcquireDark(10));
  EXPECT_EQ(-3, rig.AcquireBright(120));
  EXPECT_EQ("", DescribeChanges(mapBefore, rig.TakeSettings()));
}

TEST(DeviceRestoreParts, TheStreamComesBackAlsoWhenItsStateWasNotReadInTime)
{
  CDeviceRig rig;
  rig.SetStreaming(true);
  rig.Camera().Float("ExposureTime").Access(GenApi::NA); // fails before the stream's state is read
  EXPECT_EQ(-1002, rig.AcquireDark(10));
  EXPECT_TRUE(rig.IsStreaming());
  EXPECT_EQ((std::vector<int32_t>{11, 10}), rig.TakeSignals());
}

TEST(DeviceRestoreParts, AnIdleStreamIsNotStartedByWhatAnEarlierAcquisitionSaw)
{
  CDeviceRig rig;
  rig.SetStreaming(true);
  EXPECT_EQ(0, rig.AcquireDark(10));
  rig.SetStreaming(false);
  rig.Camera().Float("ExposureTime").Access(GenApi::NA);
  EXPECT_EQ(-1002, rig.AcquireDark(10));
  EXPECT_FALSE(rig.IsStreaming());
}
