// A camera that does not take the user's state back at the end of an acquisition.
#include <functional>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/devicerig.h"
#include "tests/support/refusals.h"

using namespace ffc::test;
using ffc::genapi::SNodeAccess;

namespace {

// A camera with both frames, whose second one has left a restore pending.
class DevicePendingRestore : public testing::TestWithParam<bool> {
protected:
  DevicePendingRestore()
  {
    m_rig.ChangeSettings();
    m_rig.Camera().Float("BlackLevel").Poke(0.4); // the factory's, for the dark frame to count
    m_rig.SetStreaming(GetParam());
    m_mapUser = m_rig.TakeSettings();
    EXPECT_EQ(m_rig.AcquireDark(10), PLUGIN_STATUS_SUCCESS);
    RefuseLoadAtTheEnd();
    EXPECT_EQ(m_rig.AcquireBright(120), PLUGIN_STATUS_SUCCESS); // restoring never fails
    m_rig.SetMessageHook(nullptr);
    m_mapPending = m_rig.TakeSettings();
    EXPECT_NE(DescribeChanges(m_mapUser, m_mapPending), "");
    m_rig.TakeSignals();
  }

  void RefuseLoadAtTheEnd()
  {
    m_rig.SetHook(std::ref(m_refusals));
    m_rig.SetMessageHook([this, bStarted = false](int32_t nCode) mutable {
      if (nCode == PLUGIN_MSG_ACQUISITION_OFF && bStarted) {
        m_refusals.Refuse("UserSetLoad");
      }
      bStarted = bStarted || nCode == PLUGIN_MSG_ACQUISITION_ON;
    });
  }

  // In "UserSet0".
  double GetKeptGain()
  {
    auto &sets = m_rig.Camera().UserSets();
    sets.Save("present");
    sets.Load("UserSet0");
    const double dGain = m_rig.Camera().Float("Gain").Peek();
    sets.Load("present");
    return dGain;
  }

  CDeviceRig m_rig;
  CRefusals m_refusals;
  Settings m_mapUser;
  Settings m_mapPending;
};

} // namespace

TEST_P(DevicePendingRestore, IsTriedByWhateverWouldSaveIntoTheUserSetWhichElseChangesNothing)
{
  const std::vector<uint8_t> listFlash = m_rig.Camera().Correction().GetFlash();
  const std::function<int32_t()> aOperations[] = {[this] { return m_rig.AcquireDark(10); },
                                                  [this] { return m_rig.Process().SaveToFlash(); },
                                                  [this] { return m_rig.AcquireBright(120); }};
  for (const auto &fnRun : aOperations) {
    m_refusals.TakeCount();
    EXPECT_EQ(fnRun(), PLUGIN_STATUS_RESTORE_USER_PARAM_FAILED);
    EXPECT_EQ(m_refusals.TakeCount(), 2);
    EXPECT_EQ(DescribeChanges(m_mapPending, m_rig.TakeSettings()), "");
    EXPECT_EQ(GetKeptGain(), 7.5);
    EXPECT_EQ(GetParam(), m_rig.IsStreaming());
  }
  EXPECT_EQ(m_rig.Process().PrepareDeviceParam(), PLUGIN_STATUS_RESTORE_USER_PARAM_FAILED);
  EXPECT_EQ(m_rig.Camera().Correction().GetFlash(), listFlash);
  m_rig.SetStreaming(GetParam());
  m_refusals.Permit();
  EXPECT_EQ(m_rig.AcquireDark(10), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(DescribeChanges(m_mapUser, m_rig.TakeSettings()), "");
}

TEST_P(DevicePendingRestore, ThatIsRefusedLeavesNoFrameOfTheAcquisitionThatCouldNotBegin)
{
  EXPECT_EQ(m_rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  EXPECT_TRUE(m_rig.IsDarkInForce());
  EXPECT_EQ(m_rig.AcquireDark(10), PLUGIN_STATUS_RESTORE_USER_PARAM_FAILED);
  EXPECT_FALSE(m_rig.Process().IsBlackLevelDefault());
  EXPECT_EQ(m_rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  EXPECT_FALSE(m_rig.IsDarkInForce());
  EXPECT_EQ(m_rig.AcquireBright(120), PLUGIN_STATUS_RESTORE_USER_PARAM_FAILED);
  EXPECT_EQ(m_rig.Process().ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM);
}

TEST_P(DevicePendingRestore, OfACameraThatDoesNotAnswerIsNotTried)
{
  m_rig.SetHook([](const SNodeAccess &) { throw GenICam::TimeoutException("no answer", __FILE__, __LINE__); });
  EXPECT_EQ(m_rig.AcquireDark(10), PLUGIN_STATUS_RESTORE_USER_PARAM_FAILED);
  EXPECT_EQ(m_rig.Process().SaveToFlash(), PLUGIN_STATUS_RESTORE_USER_PARAM_FAILED);
  m_rig.SetHook(nullptr);
  EXPECT_TRUE(m_rig.TakeSignals().empty());
  EXPECT_EQ(DescribeChanges(m_mapPending, m_rig.TakeSettings()), "");
  EXPECT_EQ(m_rig.AcquireDark(10), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(DescribeChanges(m_mapUser, m_rig.TakeSettings()), "");
}

TEST_P(DevicePendingRestore, IsDroppedWhenTheUserHasTakenOver)
{
  m_rig.Camera().Float("Gain").Poke(2.0);
  m_rig.Camera().Integer("FFCExpectGray").Poke(99);
  const Settings mapNow = m_rig.TakeSettings();
  m_refusals.Permit();
  EXPECT_EQ(m_rig.AcquireDark(10), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(DescribeChanges(mapNow, m_rig.TakeSettings()), "");
  EXPECT_EQ(GetKeptGain(), 2.0);
}

TEST_P(DevicePendingRestore, IsKeptWhenOnlyWhatNoAcquisitionWritesIsAnother)
{
  m_rig.Camera().Enumeration("TriggerMode").Select("On");
  m_refusals.Permit();
  EXPECT_EQ(m_rig.AcquireDark(10), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(DescribeChanges(m_mapUser, m_rig.TakeSettings()), "");
}

TEST_P(DevicePendingRestore, LeavesTheUserSetSelectedThatTheUserHasSelectedSince)
{
  m_rig.Camera().Enumeration("UserSetSelector").Entry("UserSet1", 2).Select("UserSet1");
  EXPECT_EQ(m_rig.AcquireDark(10), PLUGIN_STATUS_RESTORE_USER_PARAM_FAILED);
  EXPECT_EQ(m_rig.Camera().Enumeration("UserSetSelector").PeekSymbolic(), "UserSet1");
  m_refusals.Permit();
  EXPECT_EQ(m_rig.AcquireDark(10), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_rig.Camera().Enumeration("UserSetSelector").PeekSymbolic(), "UserSet1");
  EXPECT_EQ(m_rig.Camera().Float("Gain").Peek(), 7.5);
}

INSTANTIATE_TEST_SUITE_P(Streams, DevicePendingRestore, testing::Bool(),
                         [](const auto &stInfo) { return stInfo.param ? "Streaming" : "Idle"; });

TEST(DevicePendingRestoreParts, RestoringAFreshProcessBlocksNothing)
{
  CDeviceRig rig;
  rig.ChangeSettings(); // a gain of 3 is kept
  CRefusals refusals;
  refusals.Refuse("UserSetLoad");
  rig.SetHook(std::ref(refusals));
  EXPECT_EQ(rig.Process().RestoreDeviceParam(), PLUGIN_STATUS_SUCCESS);
  refusals.Permit();
  const Settings mapBefore = rig.TakeSettings();
  EXPECT_EQ(rig.AcquireDark(10), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.AcquireBright(120), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(DescribeChanges(mapBefore, rig.TakeSettings()), "");
  EXPECT_EQ(rig.Camera().Float("Gain").Peek(), 7.5);
}

TEST(DevicePendingRestoreParts, AUserSetThatCouldNotBeSavedIsNoneToRestore)
{
  CDeviceRig rig;
  rig.ChangeSettings();
  CRefusals refusals;
  refusals.Refuse("UserSetSave");
  refusals.Refuse("UserSetLoad");
  rig.SetHook(std::ref(refusals));
  EXPECT_EQ(rig.AcquireDark(10), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_EQ(rig.AcquireDark(10), PLUGIN_STATUS_FEATURE_ERROR);
  refusals.Permit();
  rig.Camera().Float("Gain").Poke(2.0);
  EXPECT_EQ(rig.AcquireDark(10), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Camera().Float("Gain").Peek(), 2.0);
}

TEST(DevicePendingRestoreParts, ASelectorThatTheCameraRefusedComesBackWithTheNextAcquisition)
{
  CDeviceRig rig;
  auto &selector = rig.Camera().Enumeration("UserSetSelector").Entry("UserSet1", 2).Select("UserSet1");
  CRefusals refusals;
  refusals.Refuse("UserSetSelector", "UserSet1");
  rig.SetHook(std::ref(refusals));
  EXPECT_EQ(rig.AcquireDark(10), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(selector.PeekSymbolic(), "UserSet0");
  refusals.Permit();
  EXPECT_EQ(rig.AcquireBright(120), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(selector.PeekSymbolic(), "UserSet1");
}

TEST(DevicePendingRestoreParts, ACameraThatChangedANumberItselfIsNotTakenForAUser)
{
  struct SNumber {
    const char *pName;
    double dUser;
    double dCamera; // what the camera makes of the number that was written
  };
  for (const SNumber &stNumber : {SNumber{"ExposureTime", 20000.4, 20000.0}, SNumber{"Gain", 7.4, 7.0}}) {
    CDeviceRig rig;
    rig.ChangeSettings();
    rig.Camera().Float(stNumber.pName).Poke(stNumber.dUser);
    const Settings mapUser = rig.TakeSettings();
    CRefusals refusals;
    rig.SetHook(std::ref(refusals));
    rig.SetMessageHook([&](int32_t nCode) {
      if (nCode == PLUGIN_MSG_ACQUISITION_OFF) {
        rig.Camera().Float(stNumber.pName).Poke(stNumber.dCamera);
        refusals.Refuse("UserSetLoad");
      }
    });
    EXPECT_EQ(rig.AcquireBright(120), PLUGIN_STATUS_SUCCESS);
    rig.SetMessageHook(nullptr);
    refusals.Permit();
    EXPECT_EQ(rig.AcquireDark(10), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(DescribeChanges(mapUser, rig.TakeSettings()), "") << stNumber.pName;
  }
}
