#include "pluginobject/shadingcorrection/process/camerastate/userset.h"

#include <functional>

#include <gtest/gtest.h>

#include "genapi/softwarenodemap/observednodemap.h"
#include "tests/support/correctingcamera.h"
#include "tests/support/refusals.h"

using ffc::process::SaveUserSet;

namespace {

// A camera with a gain of 5, and one of 3 in "UserSet0".
class UserSet : public testing::Test {
protected:
  UserSet()
  {
    m_map.AddHook(std::ref(m_refusals));
    SetGain(3.0);
    m_camera.UserSets().Save("UserSet0");
    SetGain(5.0);
    Selector().Entry("UserSet1", 2).Select("UserSet1");
  }

  CFeatureAccess Features() { return CFeatureAccess(&m_map); }
  CSoftwareEnumeration &Selector() { return m_camera.Enumeration("UserSetSelector"); }
  void SetGain(double dGain) { m_camera.Float("Gain").Poke(dGain); }
  double GetGain() { return m_camera.Float("Gain").Peek(); }
  void Acquire()
  {
    m_guard.BeginAcquisition();
    EXPECT_EQ(0, m_guard.SaveSelector(Features()));
    EXPECT_EQ(0, m_guard.SwitchToDefault(Features()));
    EXPECT_EQ(0.0, GetGain());
  }

  CCorrectingCamera m_camera;
  CObservedNodeMap m_map{m_camera.Device()};
  CRefusals m_refusals;
  ffc::process::CUserSetGuard m_guard;
};

} // namespace

TEST_F(UserSet, IsSelectedAndSaved)
{
  EXPECT_EQ(0, SaveUserSet(Features(), "UserSet0"));
  EXPECT_EQ("UserSet0", Selector().PeekSymbolic());
  SetGain(1.0);
  m_camera.UserSets().Load("UserSet0");
  EXPECT_EQ(5.0, GetGain());
}

TEST_F(UserSet, ThatCannotBeSelectedIsNotSaved)
{
  EXPECT_EQ(-1002, SaveUserSet(Features(), "UserSet7"));
  EXPECT_EQ(-1002, SaveUserSet(Features(), "Default")); // the factory's
  EXPECT_EQ(-3, SaveUserSet(CFeatureAccess(nullptr), "UserSet0"));
  m_camera.UserSets().Load("UserSet0");
  EXPECT_EQ(3.0, GetGain());
}

TEST_F(UserSet, IsLoadedAfterAnAcquisitionAndTheSelectorWrittenBack)
{
  Acquire();
  m_guard.Restore(Features());
  EXPECT_EQ(5.0, GetGain());
  EXPECT_EQ("UserSet1", Selector().PeekSymbolic());
  EXPECT_FALSE(m_guard.IsRestorePending());
  EXPECT_FALSE(m_guard.IsSelectorMoved());
}

TEST_F(UserSet, ThatWasNotSavedIsNotLoaded)
{
  m_refusals.Refuse("UserSetSave");
  m_guard.BeginAcquisition();
  EXPECT_EQ(0, m_guard.SaveSelector(Features()));
  EXPECT_EQ(-1002, m_guard.SwitchToDefault(Features()));
  m_guard.Restore(Features());
  EXPECT_EQ(5.0, GetGain());
  EXPECT_EQ("UserSet1", Selector().PeekSymbolic());
  EXPECT_FALSE(m_guard.IsRestorePending());
}

TEST_F(UserSet, ThatCannotBeLoadedIsPendingAndNotOverwritten)
{
  Acquire();
  m_refusals.Refuse("UserSetLoad");
  m_guard.Restore(Features());
  EXPECT_EQ(2, m_refusals.TakeCount());
  EXPECT_TRUE(m_guard.IsRestorePending());
  EXPECT_EQ("UserSet1", Selector().PeekSymbolic());
  SetGain(1.0);
  EXPECT_EQ(-1013, m_guard.SwitchToDefault(Features()));
  m_guard.Restore(Features());
  EXPECT_TRUE(m_guard.IsRestorePending());
  m_refusals.Permit();
  m_guard.Restore(Features());
  EXPECT_FALSE(m_guard.IsRestorePending());
  EXPECT_EQ(5.0, GetGain());
}

TEST_F(UserSet, ThatCannotBeSelectedAtTheEndIsPendingToo)
{
  Acquire();
  m_refusals.Refuse("UserSetSelector", "UserSet0");
  m_guard.Restore(Features());
  EXPECT_TRUE(m_guard.IsRestorePending());
  m_guard.DropPendingRestore();
  EXPECT_FALSE(m_guard.IsRestorePending());
}

TEST_F(UserSet, OfAFreshGuardIsLoadedAndLeavesNothingPending)
{
  m_guard.Restore(Features());
  EXPECT_EQ(3.0, GetGain());
  EXPECT_EQ("UserSet0", Selector().PeekSymbolic()); // an empty selector is not written
  EXPECT_FALSE(m_guard.IsSelectorMoved());
  m_refusals.Refuse("UserSetLoad");
  m_guard.Restore(Features());
  EXPECT_FALSE(m_guard.IsRestorePending());
}

TEST_F(UserSet, ASelectorThatIsRefusedIsWrittenBackLaterAlone)
{
  Acquire();
  m_refusals.Refuse("UserSetSelector", "UserSet1");
  m_guard.Restore(Features());
  EXPECT_FALSE(m_guard.IsRestorePending());
  EXPECT_TRUE(m_guard.IsSelectorMoved());
  m_refusals.Permit();
  SetGain(1.0);
  EXPECT_EQ(0, m_guard.RefreshSelector(Features()));
  m_guard.RestoreSelector(Features());
  EXPECT_EQ("UserSet1", Selector().PeekSymbolic());
  EXPECT_EQ(1.0, GetGain());
  EXPECT_FALSE(m_guard.IsSelectorMoved());
}

TEST_F(UserSet, ASelectorThatTheUserHasSetSinceStays)
{
  Acquire();
  m_refusals.Refuse("UserSetSelector", "UserSet1");
  m_guard.Restore(Features());
  m_refusals.Permit();
  Selector().Select("Default");
  EXPECT_EQ(0, m_guard.RefreshSelector(Features()));
  m_guard.RestoreSelector(Features());
  EXPECT_EQ("Default", Selector().PeekSymbolic());
}
