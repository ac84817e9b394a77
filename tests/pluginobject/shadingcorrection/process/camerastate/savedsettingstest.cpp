#include "pluginobject/shadingcorrection/process/camerastate/savedsettings.h"

#include <gtest/gtest.h>

#include "genapi/softwarenodemap/observednodemap.h"
#include "pluginobject/statuscode.h"
#include "tests/support/testcamera.h"

using ffc::genapi::CObservedNodeMap;
using ffc::genapi::CSoftwareEnumeration;
using ffc::genapi::CSoftwareFloat;
using ffc::genapi::SNodeAccess;
using ffc::pluginobject::CFeatureAccess;
using namespace ffc::test;

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
    EXPECT_EQ(m_entry.Save(Features()), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(m_entry.Replace(Features(), "Off"), PLUGIN_STATUS_SUCCESS);
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
  EXPECT_EQ(GetMode(), "Off");
  m_entry.Restore(Features());
  EXPECT_EQ(GetMode(), "On");
}

TEST_F(SavedEntry, ThatWasReplacedWithoutBeingSavedStaysReplaced)
{
  EXPECT_EQ(m_entry.Replace(Features(), "Off"), PLUGIN_STATUS_SUCCESS);
  m_entry.Restore(Features());
  EXPECT_EQ(GetMode(), "Off");
}

TEST_F(SavedEntry, IsPutBackAlsoWhenTheFirstWriteFails)
{
  SaveAndReplace();
  m_nRefused = 1;
  m_entry.Restore(Features());
  EXPECT_EQ(GetMode(), "On");
}

TEST_F(SavedEntry, ThatIsRefusedTwiceIsForgotten)
{
  SaveAndReplace();
  m_nRefused = 2;
  m_entry.Restore(Features());
  EXPECT_EQ(m_nRefused, 0);
  EXPECT_EQ(GetMode(), "Off");
  m_entry.Restore(Features());
  EXPECT_EQ(GetMode(), "Off");
  EXPECT_EQ(m_entry.Save(Features()), PLUGIN_STATUS_SUCCESS); // what the camera has now is the user's
  m_entry.Restore(Features());
  EXPECT_EQ(GetMode(), "Off");
}

TEST_F(SavedEntry, ThatTheUserChangesAfterItWasPutBackStays)
{
  SaveAndReplace();
  m_entry.Restore(Features());
  Mode().Select("Off");
  m_entry.Restore(Features());
  EXPECT_EQ(GetMode(), "Off");
}

TEST_F(SavedEntry, IsPutBackAgainWhenItIsReplacedAgain)
{
  SaveAndReplace();
  m_entry.Restore(Features());
  EXPECT_EQ(m_entry.Get(), "On");
  EXPECT_EQ(m_entry.Replace(Features(), "Off"), PLUGIN_STATUS_SUCCESS);
  m_entry.Restore(Features());
  EXPECT_EQ(GetMode(), "On");
}

TEST_F(SavedEntry, CountsAsReplacedOnlyAfterTheWriteSucceeded)
{
  SaveAndReplace();
  m_entry.Restore(Features());
  m_nRefused = 1;
  EXPECT_EQ(m_entry.Replace(Features(), "Off"), PLUGIN_STATUS_FEATURE_ERROR);
  Mode().Select("Off"); // the user's own doing
  m_entry.Restore(Features());
  EXPECT_EQ(GetMode(), "Off");
}

TEST_F(SavedEntry, ThatIsForgottenIsLeftAlone)
{
  SaveAndReplace();
  m_entry.Forget();
  EXPECT_EQ(m_entry.Get(), "");
  m_entry.Restore(Features());
  EXPECT_EQ(GetMode(), "Off");
}

TEST_F(SavedEntry, ThatWasNeverReadIsLeftAlone)
{
  m_entry.Restore(Features());
  EXPECT_EQ(GetMode(), "On");
}

TEST_F(SavedEntry, ThatCannotBeReadIsAFailure)
{
  Mode().Access(GenApi::NA);
  EXPECT_EQ(m_entry.Save(Features()), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_EQ(m_entry.Get(), "");
}

TEST_F(SavedEntry, OfTheTriggerIsSwitchedOffOnlyWhenItIsOn)
{
  EXPECT_EQ(ffc::process::SwitchTriggerOff(Features(), m_entry), PLUGIN_STATUS_SUCCESS); // nothing is known yet
  EXPECT_EQ(GetMode(), "On");
  EXPECT_EQ(m_entry.Save(Features()), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(ffc::process::SwitchTriggerOff(Features(), m_entry), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(GetMode(), "Off");
  EXPECT_EQ(m_entry.Save(Features()), PLUGIN_STATUS_SUCCESS);
  Mode().Access(GenApi::RO);
  EXPECT_EQ(ffc::process::SwitchTriggerOff(Features(), m_entry), PLUGIN_STATUS_SUCCESS); // not written
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
  EXPECT_EQ(streaming.Save(features), PLUGIN_STATUS_SUCCESS);
  EXPECT_FALSE(streaming.WasStreaming());
  EXPECT_EQ(streaming.Save(CFeatureAccess(nullptr)), PLUGIN_STATUS_INVALID_PARAM);
}

namespace {

class SavedNumber : public testing::Test {
protected:
  CSoftwareFloat &Gain() { return m_camera.Float("Gain"); }
  CFeatureAccess Features() { return CFeatureAccess(&m_camera.Device()); }
  bool IsUnchanged()
  {
    bool bUnchanged = false;
    EXPECT_EQ(m_number.Compare(Features(), bUnchanged), 0);
    return bUnchanged;
  }
  void SaveAndWrite(double dGain)
  {
    Gain().Poke(dGain);
    EXPECT_EQ(m_number.Save(Features()), PLUGIN_STATUS_SUCCESS);
    Gain().Poke(0.0);
    EXPECT_EQ(m_number.Write(Features()), 0);
  }

  CTestCamera m_camera;
  ffc::process::CSavedNumber<float> m_number{"Gain"};
};

} // namespace

TEST_F(SavedNumber, IsWrittenAndComparedWithWhatTheCameraHas)
{
  SaveAndWrite(7.3);
  EXPECT_FLOAT_EQ(static_cast<float>(Gain().Peek()), 7.3F);
  EXPECT_TRUE(IsUnchanged());
  Gain().Poke(7.3); // the same to a float
  EXPECT_TRUE(IsUnchanged());
  Gain().Poke(7.31);
  EXPECT_FALSE(IsUnchanged());
}

TEST_F(SavedNumber, IsUnchangedWithinItsOwnLastBitsHoweverLargeItIs)
{
  Gain().Range(0.0, 1e6);
  SaveAndWrite(40000.0);
  Gain().Poke(40000.02); // five steps of a float
  EXPECT_TRUE(IsUnchanged());
  Gain().Poke(40000.1);
  EXPECT_FALSE(IsUnchanged());
  SaveAndWrite(0.001);
  Gain().Poke(0.0011);
  EXPECT_FALSE(IsUnchanged());
}

TEST_F(SavedNumber, ThatWasNotWrittenIsUnchanged)
{
  EXPECT_EQ(m_number.Save(Features()), PLUGIN_STATUS_SUCCESS);
  Gain().Poke(3.0);
  EXPECT_TRUE(IsUnchanged());
  Gain().Access(GenApi::RO);
  EXPECT_EQ(m_number.Write(Features()), PLUGIN_STATUS_FEATURE_ERROR);
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
  EXPECT_EQ(m_number.Compare(Features(), bUnchanged), PLUGIN_STATUS_FEATURE_ERROR);
  Gain().Access(GenApi::RW);
  EXPECT_TRUE(IsUnchanged());
}

TEST_F(SavedNumber, AtAMaximumThatNoFloatHasIsThatMaximum)
{
  Gain().Range(0.0, 24.1);
  SaveAndWrite(24.1);
  EXPECT_EQ(Gain().Peek(), 24.1);
  EXPECT_TRUE(IsUnchanged());
}

TEST_F(SavedNumber, MayBeAWholeOne)
{
  auto &node = m_camera.Device().AddInteger("DigitalShift", 3).Range(0, 8);
  ffc::process::CSavedNumber<int64_t> shift{"DigitalShift"};
  EXPECT_EQ(shift.Save(Features()), PLUGIN_STATUS_SUCCESS);
  node.Poke(0);
  EXPECT_EQ(shift.Write(Features()), 0);
  EXPECT_EQ(node.Peek(), 3);
  node.Poke(4);
  bool bUnchanged = true;
  EXPECT_EQ(shift.Compare(Features(), bUnchanged), 0);
  EXPECT_FALSE(bUnchanged);
}
