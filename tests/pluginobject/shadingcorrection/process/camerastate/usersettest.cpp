#include "pluginobject/shadingcorrection/process/camerastate/userset.h"

#include <functional>

#include <gtest/gtest.h>

#include "genapi/softwarenodemap/observednodemap.h"
#include "pluginobject/statuscode.h"
#include "tests/support/correctingcamera.h"
#include "tests/support/refusals.h"

using ffc::genapi::CObservedNodeMap;
using ffc::genapi::CSoftwareEnumeration;
using ffc::pluginobject::CFeatureAccess;
using ffc::process::SaveUserSet;
using namespace ffc::test;

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
    EXPECT_EQ(m_guard.SaveSelector(Features()), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(m_guard.SwitchToDefault(Features()), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(GetGain(), 0.0);
  }

  CCorrectingCamera m_camera;
  CObservedNodeMap m_map{m_camera.Device()};
  CRefusals m_refusals;
  ffc::process::CUserSetGuard m_guard;
};

} // namespace

TEST_F(UserSet, IsSelectedAndSaved)
{
  EXPECT_EQ(SaveUserSet(Features(), "UserSet0"), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(Selector().PeekSymbolic(), "UserSet0");
  SetGain(1.0);
  m_camera.UserSets().Load("UserSet0");
  EXPECT_EQ(GetGain(), 5.0);
}

TEST_F(UserSet, ThatCannotBeSelectedIsNotSaved)
{
  EXPECT_EQ(SaveUserSet(Features(), "UserSet7"), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_EQ(SaveUserSet(Features(), "Default"), PLUGIN_STATUS_FEATURE_ERROR); // the factory's
  EXPECT_EQ(SaveUserSet(CFeatureAccess(nullptr), "UserSet0"), PLUGIN_STATUS_INVALID_PARAM);
  m_camera.UserSets().Load("UserSet0");
  EXPECT_EQ(GetGain(), 3.0);
}

TEST_F(UserSet, IsLoadedAfterAnAcquisitionAndTheSelectorWrittenBack)
{
  Acquire();
  m_guard.Restore(Features());
  EXPECT_EQ(GetGain(), 5.0);
  EXPECT_EQ(Selector().PeekSymbolic(), "UserSet1");
  EXPECT_FALSE(m_guard.IsRestorePending());
  EXPECT_FALSE(m_guard.IsSelectorMoved());
}

TEST_F(UserSet, ThatWasNotSavedIsNotLoaded)
{
  m_refusals.Refuse("UserSetSave");
  m_guard.BeginAcquisition();
  EXPECT_EQ(m_guard.SaveSelector(Features()), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_guard.SwitchToDefault(Features()), PLUGIN_STATUS_FEATURE_ERROR);
  m_guard.Restore(Features());
  EXPECT_EQ(GetGain(), 5.0);
  EXPECT_EQ(Selector().PeekSymbolic(), "UserSet1");
  EXPECT_FALSE(m_guard.IsRestorePending());
}

TEST_F(UserSet, OfAnEarlierPreparationIsNotLoadedWhenThisOneCouldNotBeSaved)
{
  Acquire();
  m_guard.Restore(Features());
  SetGain(7.0);
  m_refusals.Refuse("UserSetSave");
  EXPECT_EQ(m_guard.SwitchToDefault(Features()), PLUGIN_STATUS_FEATURE_ERROR);
  m_guard.Restore(Features());
  EXPECT_EQ(GetGain(), 7.0) << "as the user has set it since";
}

TEST_F(UserSet, ThatCannotBeLoadedIsPendingAndNotOverwritten)
{
  Acquire();
  m_refusals.Refuse("UserSetLoad");
  m_guard.Restore(Features());
  EXPECT_EQ(m_refusals.TakeCount(), 2);
  EXPECT_TRUE(m_guard.IsRestorePending());
  EXPECT_EQ(Selector().PeekSymbolic(), "UserSet1");
  SetGain(1.0);
  EXPECT_EQ(m_guard.SwitchToDefault(Features()), PLUGIN_STATUS_RESTORE_USER_PARAM_FAILED);
  m_guard.Restore(Features());
  EXPECT_TRUE(m_guard.IsRestorePending());
  m_refusals.Permit();
  m_guard.Restore(Features());
  EXPECT_FALSE(m_guard.IsRestorePending());
  EXPECT_EQ(GetGain(), 5.0);
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
  EXPECT_EQ(GetGain(), 3.0);
  EXPECT_EQ(Selector().PeekSymbolic(), "UserSet0"); // an empty selector is not written
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
  EXPECT_EQ(m_guard.RefreshSelector(Features()), PLUGIN_STATUS_SUCCESS);
  m_guard.RestoreSelector(Features());
  EXPECT_EQ(Selector().PeekSymbolic(), "UserSet1");
  EXPECT_EQ(GetGain(), 1.0);
  EXPECT_FALSE(m_guard.IsSelectorMoved());
}

TEST_F(UserSet, ASelectorThatTheUserHasSetSinceStays)
{
  Acquire();
  m_refusals.Refuse("UserSetSelector", "UserSet1");
  m_guard.Restore(Features());
  m_refusals.Permit();
  Selector().Select("Default");
  EXPECT_EQ(m_guard.RefreshSelector(Features()), PLUGIN_STATUS_SUCCESS);
  m_guard.RestoreSelector(Features());
  EXPECT_EQ(Selector().PeekSymbolic(), "Default");
}

TEST_F(UserSet, ASelectorThatCannotBeReadIsWrittenBackAsItWas)
{
  Acquire();
  m_refusals.Refuse("UserSetSelector", "UserSet1");
  m_guard.Restore(Features());
  m_refusals.Permit();
  Selector().Access(GenApi::NA);
  EXPECT_EQ(m_guard.RefreshSelector(Features()), PLUGIN_STATUS_FEATURE_ERROR);
  Selector().Access(GenApi::RW);
  m_guard.RestoreSelector(Features());
  EXPECT_EQ(Selector().PeekSymbolic(), "UserSet1");
}
