// A camera that does not take its settings back.
#include <array>
#include <string>

#include <gtest/gtest.h>

#include "tests/reliability/modulerig.h"

using namespace ffc::test;

namespace {

const std::string RECOVERY_TEXT = "Recovery user param fail";

// A camera with frames and coefficients, in a host that lets it stream.
class CRestore {
public:
  explicit CRestore(EMode eMode, const char *pFormat = "Mono8") : m_rig(eMode, pFormat)
  {
    EXPECT_EQ(m_rig.Correct(), "");
  }

  CModuleRig &Rig() { return m_rig; }
  CTestCamera &Camera() { return m_rig.Camera(); }
  CRefusals &Refusals() { return m_rig.Fault().Refusals(); }
  std::string GetEntry(const char *pName) { return Camera().Enumeration(pName).PeekSymbolic(); }

  // What the user is told.
  std::string Do(EOperation eOperation)
  {
    const SOutcome stOutcome = m_rig.Do(eOperation);
    return stOutcome.listBoxes.empty() ? "" : stOutcome.listBoxes.front();
  }

  // From the n-th message of that code on.
  void RefuseAfter(int32_t nCode, int nCount, const std::string &strNode)
  {
    m_rig.SetMessageHook([=, nSeen = 0](int32_t nMessage) mutable {
      if (nMessage == nCode && ++nSeen == nCount) {
        Refusals().Refuse(strNode);
      }
    });
  }

  void Permit()
  {
    m_rig.SetMessageHook(nullptr);
    Refusals().Permit();
  }

  // A flat-field camera whose last acquisition could not be undone.
  void LeaveRestorePending()
  {
    RefuseAfter(PLUGIN_MSG_ACQUISITION_OFF, 2, "UserSetLoad");
    EXPECT_EQ(Do(EOperation::Bright), "");
    m_rig.SetMessageHook(nullptr);
  }

  Settings TakeUserSet()
  {
    auto &sets = static_cast<CCorrectingCamera &>(Camera()).UserSets();
    sets.Save("present");
    sets.Load("UserSet0");
    const Settings mapSet = m_rig.TakeSettings();
    sets.Load("present");
    return mapSet;
  }

private:
  CModuleRig m_rig;
};

bool IsRecoveryBox(const std::string &strBox)
{
  return strBox.compare(0, RECOVERY_TEXT.size(), RECOVERY_TEXT) == 0;
}

} // namespace

TEST(RestoredBalance, ThatNeverEndsLeavesTheRatiosOfTheUserAndHoldsNothingUp)
{
  CRestore restore(EMode::Host, "BayerRG8");
  CTestCamera &camera = restore.Camera();
  camera.SetWhiteBalanceReads(-1);
  for (int nRound = 0; nRound < 3; ++nRound) {
    camera.Enumeration("BalanceWhiteAuto").FromString("Continuous");
    camera.m_adBalanceRatio = {1.5, 1.0, 1.75};
    restore.Rig().SetFrame([&camera](const CTestCamera &, uint32_t nGray) {
      const auto lock = camera.Device().Lock();
      if (camera.Enumeration("BalanceWhiteAuto").PeekSymbolic() == "Once") {
        camera.m_adBalanceRatio = {9.0, 9.0, 9.0}; // what the balance finds
      }
      return camera.MakeFrame(nGray);
    });
    EXPECT_EQ(restore.Do(EOperation::Bright), "");
    restore.Rig().SetFrame(nullptr);
    EXPECT_EQ(restore.GetEntry("BalanceWhiteAuto"), "Off");
    EXPECT_EQ((std::array<double, 3>{1.5, 1.0, 1.75}), camera.m_adBalanceRatio);
    EXPECT_EQ(restore.Do(EOperation::Dark), "");
  }
}

TEST(RestoredBalance, ThatIsRefusedForGoodHoldsNothingUp)
{
  for (const char *pRefused : {"BalanceRatio", "AWBLampHouse", "BalanceRatioSelector"}) {
    CRestore restore(EMode::Host, "BayerRG8");
    restore.Camera().Enumeration("BalanceWhiteAuto").FromString("Continuous");
    restore.RefuseAfter(PLUGIN_MSG_ACQUISITION_ON, 1, pRefused);
    EXPECT_EQ(restore.Do(EOperation::Bright), "") << pRefused;
    EXPECT_GE(restore.Refusals().TakeCount(), 2) << pRefused;
    restore.Rig().SetMessageHook(nullptr);
    EXPECT_EQ(restore.Do(EOperation::Dark), "") << pRefused;
    restore.Permit();
    EXPECT_EQ(restore.Do(EOperation::Bright), "") << pRefused;
  }
}

class RestoredEntry : public testing::TestWithParam<EMode> {};

TEST_P(RestoredEntry, ATriggerModeThatIsRefusedForGoodHoldsNothingUp)
{
  CRestore restore(GetParam());
  restore.Camera().Enumeration("TriggerMode").Select("On");
  restore.Refusals().Refuse("TriggerMode", "On");
  for (int nRound = 0; nRound < 3; ++nRound) {
    EXPECT_EQ(restore.Do(EOperation::Bright), "");
    EXPECT_EQ(restore.GetEntry("TriggerMode"), "Off");
  }
  EXPECT_EQ(restore.Rig().FindTrouble(), "");
}

TEST_P(RestoredEntry, WhatTheUserChoosesAfterARefusalStays)
{
  CRestore restore(GetParam());
  restore.Camera().Enumeration("TriggerMode").Select("On");
  restore.Refusals().Refuse("TriggerMode");
  EXPECT_EQ(restore.Do(EOperation::Bright), "Failure to operation device feature"); // not even switched off
  EXPECT_EQ(restore.GetEntry("TriggerMode"), "On");
  restore.Permit();
  restore.Camera().Enumeration("TriggerMode").Select("Off"); // by the user
  EXPECT_EQ(restore.Do(EOperation::Bright), "");
  EXPECT_EQ(restore.GetEntry("TriggerMode"), "Off");
}

INSTANTIATE_TEST_SUITE_P(Cameras, RestoredEntry, testing::Values(EMode::Host, EMode::Vignetting),
                         [](const auto &stInfo) { return std::string(GetName(stInfo.param)); });

TEST(RestoredEntry, EntriesThatAreLockedWhileTheCameraStreamsAreBackAfterAHostsAcquisition)
{
  CRestore restore(EMode::Host);
  restore.Camera().LockWhileStreaming("TriggerMode");
  const Settings mapBefore = restore.Rig().TakeSettings();
  for (const EOperation eOperation : {EOperation::Dark, EOperation::Bright}) {
    EXPECT_EQ(restore.Do(eOperation), "");
    EXPECT_EQ(DescribeChanges(mapBefore, restore.Rig().TakeSettings()), "");
  }
}

TEST(RestoredUserSet, ASelectorThatIsRefusedIsNoReasonToLoadTheSetAgain)
{
  CRestore restore(EMode::FlatField);
  restore.Camera().Enumeration("UserSetSelector").Entry("UserSet1", 2).Select("UserSet1");
  restore.Refusals().Refuse("UserSetSelector", "UserSet1");
  EXPECT_EQ(restore.Do(EOperation::Bright), "");
  EXPECT_EQ(restore.Refusals().TakeCount(), 2);
  restore.Camera().Float("Gain").Poke(3.0); // the user's newer settings
  EXPECT_EQ(restore.Do(EOperation::SaveFlash), "");
  EXPECT_EQ(restore.Camera().Float("Gain").Peek(), 3.0);
  EXPECT_EQ(restore.TakeUserSet()["Gain"], "3");
}

TEST(RestoredUserSet, ASelectorThatWasRefusedIsWrittenBackAlone)
{
  CRestore restore(EMode::FlatField);
  restore.Camera().Enumeration("UserSetSelector").Entry("UserSet1", 2).Select("UserSet1");
  restore.Refusals().Refuse("UserSetSelector", "UserSet1");
  EXPECT_EQ(restore.Do(EOperation::Bright), "");
  EXPECT_EQ(restore.GetEntry("UserSetSelector"), "UserSet0");
  restore.Permit();
  restore.Camera().Float("Gain").Poke(3.0);
  EXPECT_EQ(restore.Do(EOperation::Dark), "");
  EXPECT_EQ(restore.GetEntry("UserSetSelector"), "UserSet1");
  EXPECT_EQ(restore.Camera().Float("Gain").Peek(), 3.0);
}

TEST(RestoredUserSet, ThatIsNotLoadedIsNeverOverwritten)
{
  CRestore restore(EMode::FlatField);
  restore.Camera().Integer("FFCExpectGray").Poke(77); // no acquisition writes it
  restore.Camera().Enumeration("TriggerMode").Select("On");
  const Settings mapUser = restore.Rig().TakeSettings();
  restore.LeaveRestorePending();
  const Settings mapPending = restore.Rig().TakeSettings();
  EXPECT_NE(DescribeChanges(mapUser, mapPending), "");
  const Settings mapSet = restore.TakeUserSet();
  for (const EOperation eOperation : {EOperation::Dark, EOperation::Bright, EOperation::SaveFlash, EOperation::Dark}) {
    EXPECT_TRUE(IsRecoveryBox(restore.Do(eOperation))) << GetName(eOperation);
    EXPECT_EQ(DescribeChanges(mapPending, restore.Rig().TakeSettings()), "") << GetName(eOperation);
    EXPECT_EQ(DescribeChanges(mapSet, restore.TakeUserSet()), "") << GetName(eOperation);
    EXPECT_EQ(restore.Rig().FindTrouble(), "");
  }
  restore.Permit();
  EXPECT_EQ(restore.Do(EOperation::Bright), "");
  EXPECT_EQ(DescribeChanges(mapUser, restore.Rig().TakeSettings()), "");
}

TEST(RestoredUserSet, IsLoadedBeforeItIsSavedToFlash)
{
  CRestore restore(EMode::FlatField);
  restore.Camera().Integer("FFCExpectGray").Poke(77);
  restore.Camera().Enumeration("DeadPixelCorrect").Select("On");
  restore.LeaveRestorePending();
  restore.Permit();
  EXPECT_EQ(restore.Do(EOperation::SaveFlash), "");
  EXPECT_EQ(restore.TakeUserSet()["FFCExpectGray"], "77");
  EXPECT_EQ(restore.TakeUserSet()["DeadPixelCorrect"], "On");
}

class TakenOver : public testing::TestWithParam<const char *> {};

TEST_P(TakenOver, TheCameraStaysAsTheUserHasSetItSince)
{
  for (const EOperation eOperation : {EOperation::SaveFlash, EOperation::Bright, EOperation::Dark}) {
    CRestore restore(EMode::FlatField);
    restore.Camera().Integer("FFCExpectGray").Poke(77);
    restore.LeaveRestorePending();
    auto *pNode = dynamic_cast<GenApi::IValue *>(restore.Camera().Device().GetNode(GetParam()));
    pNode->FromString("2");
    restore.Camera().Integer("FFCExpectGray").Poke(99);
    restore.Permit();
    EXPECT_EQ(restore.Do(eOperation), "") << GetName(eOperation);
    EXPECT_EQ(std::string(pNode->ToString().c_str()), "2") << GetName(eOperation);
    EXPECT_EQ(restore.TakeUserSet()["FFCExpectGray"], "99") << GetName(eOperation);
  }
}

INSTANTIATE_TEST_SUITE_P(Settings, TakenOver, testing::Values("ExposureTime", "Gain", "BlackLevel", "DigitalShift"),
                         [](const auto &stInfo) { return std::string(stInfo.param); });

TEST(RestoredNumber, AtAMaximumThatNoFloatHasIsThatMaximum)
{
  CRestore restore(EMode::FlatField);
  restore.Camera().Float("Gain").Range(0.0, 24.1).Poke(24.1);
  restore.Camera().Float("BlackLevel").Range(0.0, 0.1).Poke(0.1);
  for (const EOperation eOperation : {EOperation::Dark, EOperation::Bright}) {
    EXPECT_EQ(restore.Do(eOperation), "");
    EXPECT_EQ(restore.Camera().Float("Gain").Peek(), 24.1);
    EXPECT_EQ(restore.Camera().Float("BlackLevel").Peek(), 0.1);
  }
}
