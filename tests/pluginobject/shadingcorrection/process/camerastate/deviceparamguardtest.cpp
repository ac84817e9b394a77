#include "pluginobject/shadingcorrection/process/camerastate/deviceparamguard.h"

#include <functional>

#include <gtest/gtest.h>

#include "genapi/softwarenodemap/observednodemap.h"
#include "pluginobject/statuscode.h"
#include "tests/support/correctingcamera.h"
#include "tests/support/refusals.h"

using ffc::genapi::CObservedNodeMap;
using ffc::genapi::CSoftwareCommand;
using ffc::genapi::SNodeAccess;
using ffc::pluginobject::CFeatureAccess;
using namespace ffc::process;
using namespace ffc::test;

namespace {

class DeviceParamGuard : public testing::Test {
protected:
  DeviceParamGuard() { m_map.AddHook(std::ref(m_refusals)); }

  CFeatureAccess Features() { return CFeatureAccess(&m_map); }
  int32_t Save() { return m_guard.SaveUserParam(Features()); }
  int32_t Prepare() { return m_guard.Prepare(Features(), m_stFormat); }
  std::string GetEntry(const char *pName) { return m_camera.Enumeration(pName).PeekSymbolic(); }
  double GetGain() { return m_camera.Float("Gain").Peek(); }

  CCorrectingCamera m_camera{"Mono8", 64, 48};
  CObservedNodeMap m_map{m_camera.Device()};
  CRefusals m_refusals;
  ffc::process::CDeviceParamGuard m_guard;
  SFrameFormat m_stFormat;
};

} // namespace

TEST_F(DeviceParamGuard, WaitsASecondMoreThanTheExposure)
{
  m_camera.Float("ExposureTime").Range(-1e9, 1e10);
  for (const auto &[dExposure, nTimeout] : {std::pair{0.0, 1000U},
                                            {1000000.0, 2000U},
                                            {10000.0, 1010U},
                                            {999.0, 1000U},
                                            {1000.0, 1001U},
                                            {-970000.0, 30U},
                                            {-2000000.0, 0U}}) {
    m_camera.Float("ExposureTime").Poke(dExposure);
    EXPECT_EQ(Save(), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(m_guard.GetTimeout(), nTimeout) << dExposure;
  }
}

TEST_F(DeviceParamGuard, TellsWhetherTheStreamRan)
{
  EXPECT_EQ(Save(), PLUGIN_STATUS_SUCCESS);
  EXPECT_FALSE(m_guard.WasStreaming());
  m_camera.Integer("TLParamsLocked").Poke(1);
  EXPECT_EQ(Save(), PLUGIN_STATUS_SUCCESS);
  EXPECT_TRUE(m_guard.WasStreaming());
  m_guard.BeginAcquisition();
  EXPECT_FALSE(m_guard.WasStreaming());
}

TEST_F(DeviceParamGuard, TellsThatTheStreamRanAlsoAfterAFailedSave)
{
  m_camera.Integer("TLParamsLocked").Poke(1);
  m_camera.Float("ExposureTime").Access(GenApi::NA);
  EXPECT_EQ(Save(), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_TRUE(m_guard.WasStreaming());
}

TEST_F(DeviceParamGuard, ASaveStopsAtTheFirstFeatureThatIsMissing)
{
  EXPECT_EQ(m_guard.SaveUserParam(CFeatureAccess(nullptr)), PLUGIN_STATUS_INVALID_PARAM);
  CCorrectingCamera camera("Mono8", 64, 48, {"DigitalShift"});
  EXPECT_EQ(m_guard.SaveUserParam(CFeatureAccess(&camera.Device())), PLUGIN_STATUS_INVALID_PARAM);
}

TEST_F(DeviceParamGuard, PreparesTheFactoryStateWithTheUsersExposureAndCorrections)
{
  m_camera.Float("Gain").Poke(5.0);
  m_camera.Float("ExposureTime").Poke(1234.5);
  m_camera.Float("BlackLevel").Poke(2.0);
  m_camera.Integer("DigitalShift").Poke(3);
  m_camera.Enumeration("RemoveParameterLimit").Select("On");
  m_camera.Enumeration("FixedPatternNoiseCorrectMode").Select("On");
  m_camera.Enumeration("DeadPixelCorrect").Select("On");
  m_camera.Enumeration("TriggerMode").Select("On");
  EXPECT_EQ(Save(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(Prepare(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(GetGain(), 5.0);
  EXPECT_EQ(m_camera.Float("ExposureTime").Peek(), 1234.5);
  EXPECT_EQ(m_camera.Float("BlackLevel").Peek(), 2.0);
  EXPECT_EQ(m_camera.Integer("DigitalShift").Peek(), 3);
  for (const char *pName : {"RemoveParameterLimit", "FixedPatternNoiseCorrectMode", "DeadPixelCorrect"}) {
    EXPECT_EQ(GetEntry(pName), "On") << pName;
  }
  EXPECT_EQ(GetEntry("TriggerMode"), "Off");
  m_guard.Restore(Features());
  EXPECT_EQ(GetEntry("TriggerMode"), "On");
}

TEST_F(DeviceParamGuard, ReadsTheFormatOfTheFactoryState)
{
  m_camera.Integer("Width").Poke(32);
  EXPECT_EQ(Save(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(Prepare(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_stFormat.nWidth, 64);
  EXPECT_EQ(m_stFormat.nHeight, 48);
  EXPECT_EQ(m_stFormat.nPixelFormat, 0x01080001U);
  EXPECT_EQ(m_stFormat.nFrameSize, 64U * 48U);
}

TEST_F(DeviceParamGuard, APackedFrameIsAsLargeAsTheGeometryBeforeSays)
{
  m_camera.Enumeration("PixelFormat").Entry("Mono12Packed", 0x010C0006).Select("Mono12Packed");
  m_camera.SaveAsDefault();
  EXPECT_EQ(Save(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(Prepare(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_stFormat.nFrameSize, 64U * 48U * 3U / 2U); // as read: there was no geometry yet
  EXPECT_EQ(Prepare(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_stFormat.nFrameSize, 64U * 48U * 2U);
  m_camera.ChangeDefault([this] { m_camera.Integer("Width").Poke(128); });
  EXPECT_EQ(Prepare(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_stFormat.nFrameSize, 64U * 48U * 2U);
  EXPECT_EQ(m_stFormat.nWidth, 128);
}

TEST_F(DeviceParamGuard, ComparesTheBlackLevelsOfTheUserAndTheFactory)
{
  EXPECT_EQ(Save(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(Prepare(), PLUGIN_STATUS_SUCCESS);
  EXPECT_TRUE(m_guard.IsBlackLevelDefault());
  m_camera.Float("BlackLevel").Poke(0.41);
  EXPECT_EQ(Save(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(Prepare(), PLUGIN_STATUS_SUCCESS);
  EXPECT_FALSE(m_guard.IsBlackLevelDefault());
}

TEST_F(DeviceParamGuard, RestoresTheKeptState)
{
  m_camera.Float("Gain").Poke(5.0);
  EXPECT_EQ(Save(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(Prepare(), PLUGIN_STATUS_SUCCESS);
  m_camera.Float("Gain").Poke(1.0);
  m_guard.Restore(Features());
  EXPECT_EQ(GetGain(), 5.0);
  EXPECT_EQ(GetEntry("UserSetSelector"), "Default");
}

TEST_F(DeviceParamGuard, DoesNotRestoreAnOlderStateWhenAnAcquisitionKeptNone)
{
  m_camera.Float("Gain").Poke(3.0);
  m_camera.UserSets().Save("UserSet0");
  m_camera.Float("Gain").Poke(5.0);
  m_guard.BeginAcquisition();
  m_guard.Restore(Features()); // nothing was read
  EXPECT_EQ(GetGain(), 5.0);
  EXPECT_EQ(GetEntry("UserSetSelector"), "Default");
  m_guard.BeginAcquisition();
  EXPECT_EQ(Save(), PLUGIN_STATUS_SUCCESS);
  m_guard.Restore(Features()); // nothing was kept
  EXPECT_EQ(GetGain(), 5.0);
  EXPECT_EQ(GetEntry("UserSetSelector"), "Default");
  m_guard.Restore(Features()); // of no acquisition
  EXPECT_EQ(GetGain(), 3.0);
}

TEST_F(DeviceParamGuard, RestoresAStateThatWasKeptBeforeThePreparationFailed)
{
  m_camera.Float("Gain").Poke(5.0);
  m_guard.BeginAcquisition();
  EXPECT_EQ(Save(), PLUGIN_STATUS_SUCCESS);
  m_camera.Device().Find<CSoftwareCommand>("UserSetLoad")->Access(GenApi::NA);
  EXPECT_EQ(Prepare(), PLUGIN_STATUS_FEATURE_ERROR);
  m_camera.Device().Find<CSoftwareCommand>("UserSetLoad")->Access(GenApi::WO);
  m_camera.Float("Gain").Poke(1.0);
  m_guard.Restore(Features());
  EXPECT_EQ(GetGain(), 5.0);
}

TEST_F(DeviceParamGuard, ReviewsAPendingRestore)
{
  m_camera.Float("Gain").Poke(5.0);
  for (const bool bChanged : {false, true}) {
    m_guard.BeginAcquisition();
    EXPECT_EQ(Save(), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(Prepare(), PLUGIN_STATUS_SUCCESS);
    m_camera.Device().Find<CSoftwareCommand>("UserSetLoad")->Access(GenApi::NA);
    m_guard.Restore(Features());
    EXPECT_TRUE(m_guard.IsRestorePending());
    m_camera.Integer("DigitalShift").Access(GenApi::NA);
    EXPECT_EQ(m_guard.ReviewPendingRestore(Features()), PLUGIN_STATUS_RESTORE_USER_PARAM_FAILED);
    m_camera.Integer("DigitalShift").Access(GenApi::RW).Poke(bChanged ? 1 : 0);
    EXPECT_EQ(m_guard.ReviewPendingRestore(Features()), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(m_guard.IsRestorePending(), !bChanged);
    m_camera.Device().Find<CSoftwareCommand>("UserSetLoad")->Access(GenApi::WO);
    if (!bChanged) {
      m_guard.Restore(Features());
    }
    EXPECT_FALSE(m_guard.IsRestorePending());
    EXPECT_EQ(GetGain(), 5.0);
  }
}

TEST_F(DeviceParamGuard, WritesARefusedSelectorBackOnlyWhenItKnowsThatItIsStillItsOwn)
{
  auto &selector = m_camera.Enumeration("UserSetSelector");
  const auto acquireRefused = [&] {
    selector.Select("UserSet1");
    m_guard.BeginAcquisition();
    EXPECT_EQ(Save(), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(Prepare(), PLUGIN_STATUS_SUCCESS);
    m_refusals.Refuse("UserSetSelector", "UserSet1");
    m_guard.Restore(Features());
    m_refusals.Permit();
    EXPECT_EQ(selector.PeekSymbolic(), "UserSet0");
  };
  selector.Entry("UserSet1", 2);
  acquireRefused();
  bool bDumb = true;
  m_map.AddHook([&bDumb](const SNodeAccess &stAccess) {
    if (bDumb && stAccess.eKind == SNodeAccess::EKind::CurrentEntry) {
      throw GenICam::TimeoutException("no answer", __FILE__, __LINE__);
    }
  });
  m_guard.RestoreSelector(Features());
  bDumb = false;
  EXPECT_EQ(selector.PeekSymbolic(), "UserSet0") << "nobody knows whose it is";
  m_guard.RestoreSelector(Features());
  EXPECT_EQ(selector.PeekSymbolic(), "UserSet1");
  selector.Select("Default"); // the user, later
  m_guard.RestoreSelector(Features());
  EXPECT_EQ(selector.PeekSymbolic(), "Default");
}
