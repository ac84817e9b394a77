#include "pluginobject/shadingcorrection/process/camerastate/savedentry.h"

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
  CSavedEntry m_entry{"TriggerMode"};
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

TEST_F(SavedEntry, ThatWasRefusedIsPutBackBeforeTheNextIsRead)
{
  SaveAndReplace();
  m_nRefused = 2;
  m_entry.Restore(Features());
  EXPECT_EQ("Off", GetMode());
  m_entry.Forget(); // what is owed is not forgotten
  EXPECT_EQ(0, m_entry.Save(Features()));
  EXPECT_EQ("On", GetMode());
  EXPECT_EQ("On", m_entry.Get());
  m_entry.Forget();
  EXPECT_EQ("", m_entry.Get());
}

TEST_F(SavedEntry, ThatIsStillRefusedIsNotReadAnew)
{
  SaveAndReplace();
  m_nRefused = 3;
  m_entry.Restore(Features());
  EXPECT_EQ(-1002, m_entry.Save(Features()));
  EXPECT_EQ("On", m_entry.Get());
  m_entry.Restore(Features());
  EXPECT_EQ("On", GetMode());
}

TEST_F(SavedEntry, ThatWasNotReplacedIsNeverOwed)
{
  EXPECT_EQ(0, m_entry.Save(Features()));
  m_nRefused = 2;
  m_entry.Restore(Features());
  Mode().Select("Off"); // the user's own doing
  EXPECT_EQ(0, m_entry.Save(Features()));
  EXPECT_EQ("Off", GetMode());
}

TEST_F(SavedEntry, ThatWasNeverReadIsLeftAlone)
{
  m_entry.Restore(Features());
  EXPECT_EQ("On", GetMode());
}
