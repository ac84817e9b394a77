#include "pluginobject/shadingcorrection/process/camerastate/savedsettings.h"

#include <gtest/gtest.h>

#include "genapi/softwarenodemap/observednodemap.h"
#include "tests/support/testcamera.h"

namespace {

// A camera that refuses the next few writes.
class SavedEntry : public testing::Test {
protected:
  SavedEntry()
  {
    m_map.AddHook([this](const SNodeAccess &stAccess) {
      if (stAccess.eKind == SNodeAccess::EKind::Write && m_nRefused > 0) {
        --m_nRefused;
        throw GenICam::TimeoutException("no answer", __FILE__, __LINE__);
      }
    });
    Mode().Select("On");
  }

  CSoftwareEnumeration &Mode() { return m_camera.Enumeration("TriggerMode"); }
  std::string GetMode() { return Mode().PeekSymbolic(); }
  CFeatureAccess Features() { return CFeatureAccess(&m_map); }
  void SaveAndReplace()
  {
    EXPECT_EQ(0, m_entry.Save(Features()));
    EXPECT_EQ(0, m_entry.Replace(Features(), "Off"));
  }

  CTestCamera m_camera;
  CObservedNodeMap m_map{m_camera.Device()};
  int m_nRefused = 0;
  ffc::process::CSavedEntry m_entry{"TriggerMode"};
};

} // namespace

TEST_F(SavedEntry, IsPutBack)
{
  SaveAndReplace();
  EXPECT_EQ("Off", GetMode());
  m_entry.Restore(Features());
  EXPECT_EQ("On", GetMode());
}

TEST_F(SavedEntry, IsPutBackAlsoWhenTheFirstWriteFails)
{
  SaveAndReplace();
  m_nRefused = 1;
  m_entry.Restore(Features());
  EXPECT_EQ("On", GetMode());
}

TEST_F(SavedEntry, ThatIsRefusedTwiceIsForgotten)
{
  SaveAndReplace();
  m_nRefused = 2;
  m_entry.Restore(Features());
  EXPECT_EQ(0, m_nRefused);
  EXPECT_EQ("Off", GetMode());
  m_entry.Restore(Features());
  EXPECT_EQ("Off", GetMode());
  EXPECT_EQ(0, m_entry.Save(Features())); // what the camera has now is the user's
  m_entry.Restore(Features());
  EXPECT_EQ("Off", GetMode());
}

TEST_F(SavedEntry, ThatTheUserChangesAfterItWasPutBackStays)
{
  SaveAndReplace();
  m_entry.Restore(Features());
  Mode().Select("Off");
  m_entry.Restore(Features());
  EXPECT_EQ("Off", GetMode());
}

TEST_F(SavedEntry, IsPutBackAgainWhenItIsReplacedAgain)
{
  SaveAndReplace();
  m_entry.Restore(Features());
  EXPECT_EQ("On", m_entry.Get());
  EXPECT_EQ(0, m_entry.Replace(Features(), "Off"));
  m_entry.Restore(Features());
  EXPECT_EQ("On", GetMode());
}

TEST_F(SavedEntry, CountsAsReplacedOnlyAfterTheWriteSucceeded)
{
  SaveAndReplace();
  m_entry.Restore(Features());
  m_nRefused = 1;
  EXPECT_EQ(-1002, m_entry.Replace(Features(), "Off"));
  Mode().Select("Off"); // the user's own doing
  m_entry.Restore(Features());
  EXPECT_EQ("Off", GetMode());
}

TEST_F(SavedEntry, ThatIsForgottenIsLeftAlone)
{
  SaveAndReplace();
  m_entry.Forget();
  EXPECT_EQ("", m_entry.Get());
  m_entry.Restore(Features());
  EXPECT_EQ("Off", GetMode());
}

TEST_F(SavedEntry, ThatWasNeverReadIsLeftAlone)
{
  m_entry.Restore(Features());
  EXPECT_EQ("On", GetMode());
}

TEST_F(SavedEntry, ThatCannotBeReadIsAFailure)
{
  Mode().Access(GenApi::NA);
  EXPECT_EQ(-1002, m_entry.Save(Features()));
  EXPECT_EQ("", m_entry.Get());
}

TEST_F(SavedEntry, OfTheTriggerIsSwitchedOffOnlyWhenItIsOn)
{
  EXPECT_EQ(0, ffc::process::SwitchTriggerOff(Features(), m_entry)); // nothing is known yet
  EXPECT_EQ("On", GetMode());
  EXPECT_EQ(0, m_entry.Save(Features()));
  EXPECT_EQ(0, ffc::process::SwitchTriggerOff(Features(), m_entry));
  EXPECT_EQ("Off", GetMode());
  EXPECT_EQ(0, m_entry.Save(Features()));
  Mode().Access(GenApi::RO);
  EXPECT_EQ(0, ffc::process::SwitchTriggerOff(Features(), m_entry)); // not written
}

TEST(StreamingState, IsReadLateOnlyWhenItIsNotKnown)
{
  CTestCamera camera;
  const CFeatureAccess features(&camera.Device());
  ffc::process::CStreamingState streaming;
  EXPECT_FALSE(streaming.WasStreaming());
  camera.Integer("TLParamsLocked").Poke(1);
  streaming.SaveLate(features);
  EXPECT_TRUE(streaming.WasStreaming());
  camera.Integer("TLParamsLocked").Poke(0);
  streaming.SaveLate(features);
  EXPECT_TRUE(streaming.WasStreaming()); // as it was when it was saved first
  EXPECT_EQ(0, streaming.Save(features));
  EXPECT_FALSE(streaming.WasStreaming());
  EXPECT_EQ(-3, streaming.Save(CFeatureAccess(nullptr)));
}

namespace {

class SavedNumber : public testing::Test {
protected:
  CSoftwareFloat &Gain() { return m_camera.Float("Gain"); }
  CFeatureAccess Features() { return CFeatureAccess(&m_camera.Device()); }
  bool IsUnchanged()
  {
    bool bUnchanged = false;
    EXPECT_EQ(0, m_number.Compare(Features(), bUnchanged));
    return bUnchanged;
  }
  void SaveAndWrite(double dGain)
  {
    Gain().Poke(dGain);
    EXPECT_EQ(0, m_number.Save(Features()));
    Gain().Poke(0.0);
    EXPECT_EQ(0, m_number.Write(Features()));
  }

  CTestCamera m_camera;
  ffc::process::CSavedNumber<float> m_number{"Gain"};
};

} // namespace

TEST_F(SavedNumber, IsWrittenAndComparedWithWhatTheCameraHas)
{
  SaveAndWrite(7.3);
  EXPECT_FLOAT_EQ(7.3F, static_cast<float>(Gain().Peek()));
  EXPECT_TRUE(IsUnchanged());
  Gain().Poke(7.3); // the same to a float
  EXPECT_TRUE(IsUnchanged());
  Gain().Poke(7.31);
  EXPECT_FALSE(IsUnchanged());
}

TEST_F(SavedNumber, ThatWasNotWrittenIsUnchanged)
{
  EXPECT_EQ(0, m_number.Save(Features()));
  Gain().Poke(3.0);
  EXPECT_TRUE(IsUnchanged());
  Gain().Access(GenApi::RO);
  EXPECT_EQ(-1002, m_number.Write(Features()));
  EXPECT_TRUE(IsUnchanged());
}

TEST_F(SavedNumber, IsWhatTheCameraMadeOfIt)
{
  SaveAndWrite(7.3);
  Gain().Poke(7.0); // the next of its steps
  m_number.ReadBack(Features());
  EXPECT_TRUE(IsUnchanged());
  Gain().Poke(7.3);
  EXPECT_FALSE(IsUnchanged());
}

TEST_F(SavedNumber, ThatCannotBeReadIsAFailureAndKeepsWhatWasWritten)
{
  SaveAndWrite(7.3);
  Gain().Access(GenApi::NA);
  m_number.ReadBack(Features());
  bool bUnchanged = true;
  EXPECT_EQ(-1002, m_number.Compare(Features(), bUnchanged));
  Gain().Access(GenApi::RW);
  EXPECT_TRUE(IsUnchanged());
}

TEST_F(SavedNumber, AtAMaximumThatNoFloatHasIsThatMaximum)
{
  Gain().Range(0.0, 24.1);
  SaveAndWrite(24.1);
  EXPECT_EQ(24.1, Gain().Peek());
  EXPECT_TRUE(IsUnchanged());
}

TEST_F(SavedNumber, MayBeAWholeOne)
{
  auto &node = m_camera.Device().AddInteger("DigitalShift", 3).Range(0, 8);
  ffc::process::CSavedNumber<int64_t> shift{"DigitalShift"};
  EXPECT_EQ(0, shift.Save(Features()));
  node.Poke(0);
  EXPECT_EQ(0, shift.Write(Features()));
  EXPECT_EQ(3, node.Peek());
  node.Poke(4);
  bool bUnchanged = true;
  EXPECT_EQ(0, shift.Compare(Features(), bUnchanged));
  EXPECT_FALSE(bUnchanged);
}
