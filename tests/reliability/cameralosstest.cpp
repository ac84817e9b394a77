// A camera that goes away in every phase, and comes back.
#include <gtest/gtest.h>

#include "host/viewer/settingsrescue.h"
#include "tests/reliability/modulerig.h"
#include "tests/reliability/scale.h"

using namespace ffc::test;
using ffc::genapi::CSoftwareCommand;
using ffc::genapi::CSoftwareEnumeration;

namespace {

class CameraLoss : public testing::TestWithParam<EMode> {
protected:
  CameraLoss() : m_rig(GetParam()) {}

  // The n-th access and all after it fail, until the operation has ended.
  void LoseAndFind(EOperation eOperation, uint64_t nAccess)
  {
    SCOPED_TRACE("lost at access " + std::to_string(nAccess));
    m_rig.Prepare(eOperation);
    const Settings mapBefore = m_rig.TakeSettings();
    m_rig.Fault().Arm(nAccess, CAccessFault::FOR_EVER, EAccessFailure::Timeout);
    (void)m_rig.Do(eOperation);
    m_rig.Fault().Disarm();
    if (!m_rig.IsStreaming()) {
      m_rig.SetStreaming(true); // a camera that is opened again streams again
    }
    EXPECT_EQ(m_rig.FindTrouble(), "");
    if (GetParam() != EMode::FlatField) {
      RepairByHand(mapBefore);
    }
    // The next acquisition begins with the user's settings, whatever the lost one has left.
    const SOutcome stOutcome = m_rig.Do(EOperation::Bright);
    EXPECT_TRUE(stOutcome.listBoxes.empty()) << stOutcome.Describe();
    if (eOperation == EOperation::Dark || eOperation == EOperation::Bright) {
      EXPECT_EQ(DescribeChanges(mapBefore, m_rig.TakeSettings()), "");
    }
  }

  // What the lost camera did not take back, and is not kept for it.
  void RepairByHand(const Settings &mapBefore)
  {
    m_rig.Camera().Enumeration("TriggerMode").Select(mapBefore.at("TriggerMode"));
    m_rig.Camera()
      .Stream()
      .Find<CSoftwareEnumeration>("StreamBufferHandlingMode")
      ->Select(mapBefore.at("StreamBufferHandlingMode"));
  }

  void LoseInEveryPhase(EOperation eOperation)
  {
    SCOPED_TRACE(GetName(eOperation));
    m_rig.Prepare(eOperation);
    m_rig.Fault().Disarm();
    const SOutcome stOutcome = m_rig.Do(eOperation);
    ASSERT_TRUE(stOutcome.listBoxes.empty()) << stOutcome.Describe();
    const uint64_t nAccesses = m_rig.Fault().GetCount();
    const uint64_t nStep = IsSoak() ? 1 : 1 + GetStride();
    for (uint64_t nAccess = 1; nAccess <= nAccesses && !HasFailure(); nAccess += nStep) {
      LoseAndFind(eOperation, nAccess);
    }
  }

  CModuleRig m_rig;
};

} // namespace

TEST_P(CameraLoss, InEveryPhaseCostsNothingOnceItIsBack)
{
  ASSERT_EQ(m_rig.Correct(), "");
  for (const EOperation eOperation : ListOperations(GetParam())) {
    if (eOperation != EOperation::Reopen) {
      LoseInEveryPhase(eOperation);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Cameras, CameraLoss, testing::Values(EMode::Host, EMode::FlatField, EMode::Vignetting),
                         [](const auto &stInfo) { return std::string(GetName(stInfo.param)); });

TEST(LostCamera, ThatIsStillAwayKeepsTheUsersStateUntilItIsBack)
{
  CModuleRig rig(EMode::FlatField);
  ASSERT_EQ(rig.Correct(), "");
  const Settings mapBefore = rig.TakeSettings();
  // It goes when its frames begin, on its factory set.
  rig.SetMessageHook([&rig](int32_t nCode) {
    if (nCode == PLUGIN_MSG_ACQUISITION_ON) {
      rig.Fault().Arm(1, CAccessFault::FOR_EVER, EAccessFailure::Timeout);
    }
  });
  EXPECT_EQ(rig.Do(EOperation::Bright).listBoxes.size(), 1U);
  rig.SetMessageHook(nullptr);
  // Neither another acquisition nor a save may write over the only copy of the user's state.
  for (const EOperation eOperation : {EOperation::Bright, EOperation::SaveFlash}) {
    auto *pSave = rig.Camera().Device().Find<CSoftwareCommand>("UserSetSave");
    pSave->Access(GenApi::NA);
    rig.Camera().Device().Find<CSoftwareCommand>("UserSetLoad")->Access(GenApi::NA);
    rig.Fault().Disarm();
    EXPECT_EQ(rig.Do(eOperation).listBoxes.at(0).find("Recovery user param fail"), 0U) << GetName(eOperation);
  }
  for (const char *pName : {"UserSetSave", "UserSetLoad"}) {
    rig.Camera().Device().Find<CSoftwareCommand>(pName)->Access(GenApi::WO);
  }
  EXPECT_TRUE(rig.Do(EOperation::Bright).listBoxes.empty());
  EXPECT_EQ(DescribeChanges(mapBefore, rig.TakeSettings()), "");
}

TEST(LostHost, TheNextOneGivesTheUserHisSettingsWithOneClick)
{
  Settings mapBefore;
  CCorrectingCamera camera;
  camera.Float("Gain").Poke(7.5);
  camera.Enumeration("TriggerMode").Select("On");
  AddSettings(mapBefore, camera.Device());
  // What an acquisition does before its first frame; then the host is gone.
  camera.UserSets().Save("UserSet0");
  camera.UserSets().Load("Default");
  Settings mapLost;
  AddSettings(mapLost, camera.Device());
  EXPECT_NE(DescribeChanges(mapBefore, mapLost), "");
  ffc::host::CSettingsRescue rescue(camera.Device());
  EXPECT_TRUE(rescue.IsPossible());
  const ffc::Result<QStringList> changes = rescue.Restore();
  ASSERT_EQ(changes.GetError(), "");
  Settings mapAfter;
  AddSettings(mapAfter, camera.Device());
  EXPECT_EQ(DescribeChanges(mapBefore, mapAfter), "");
  EXPECT_FALSE(changes.GetValue().isEmpty());
}
