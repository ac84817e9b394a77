#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/hostrig.h"

using namespace ffc::test;
using ffc::genapi::SNodeAccess;

namespace {

constexpr int SETTLING_FRAMES = 7;
constexpr int FRAME_COUNT = 4;

[[noreturn]] void Refuse()
{
  throw GenICam::AccessException("refused", __FILE__, __LINE__);
}

// Everything that a bright acquisition may change and has to put back.
void ExpectUnchanged(CHostRig &rig, const std::map<std::string, std::string> &mapBefore)
{
  EXPECT_EQ(rig.TakeSnapshot(), mapBefore);
}

} // namespace

TEST(HostColour, TheSettingsArePutBackAfterABalanceFromOff)
{
  CHostRig rig("BayerRG8");
  rig.Camera().Enumeration("BalanceRatioSelector").Select("Blue");
  const auto mapBefore = rig.TakeSnapshot();
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
  ExpectUnchanged(rig, mapBefore);
}

TEST(HostColour, TheRatiosAndTheSelectorArePutBackAfterABalanceFromContinuous)
{
  CHostRig rig("BayerRG8");
  CTestCamera &camera = rig.Camera();
  camera.Enumeration("BalanceWhiteAuto").SetIntValue(2);
  camera.Enumeration("BalanceRatioSelector").Select("Blue");
  auto mapBefore = rig.TakeSnapshot();
  rig.Show([&](int nFrame) {
    if (nFrame == 0) {
      const auto lock = camera.Device().Lock();
      camera.m_adBalanceRatio = {9.0, 9.0, 9.0}; // what the balance found
    }
    return camera.MakeFrame(100);
  });
  EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_SUCCESS);
  // The mode stays off, for the ratios to hold.
  EXPECT_EQ(camera.Enumeration("BalanceWhiteAuto").PeekSymbolic(), "Off");
  mapBefore["BalanceWhiteAuto"] = "Off";
  ExpectUnchanged(rig, mapBefore);
}

TEST(HostColour, WhatTheBalanceFoundStaysAfterABalanceFromOff)
{
  CHostRig rig("BayerRG8");
  CTestCamera &camera = rig.Camera();
  rig.Show([&](int nFrame) {
    if (nFrame == 0) {
      const auto lock = camera.Device().Lock();
      camera.m_adBalanceRatio = {2.0, 1.0, 3.0};
    }
    return camera.MakeFrame(100);
  });
  EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ((std::array<double, 3>{2.0, 1.0, 3.0}), camera.m_adBalanceRatio);
}

TEST(HostColour, ACameraWithoutLampHouseBalancesToo)
{
  for (const GenApi::EAccessMode eAccess : {GenApi::NI, GenApi::NA, GenApi::RO}) {
    CHostRig rig("BayerRG8");
    rig.Camera().Enumeration("AWBLampHouse").Access(eAccess);
    const auto mapBefore = rig.TakeSnapshot();
    EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(rig.GetFrameCount(), 1 + SETTLING_FRAMES + FRAME_COUNT);
    ExpectUnchanged(rig, mapBefore);
  }
}

TEST(HostColour, AFailedAcquisitionDoesNotBringBackWhatAnEarlierOneSaved)
{
  CHostRig rig("BayerRG8");
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_SUCCESS);
  rig.Camera().Enumeration("AWBLampHouse").Select("Fluorescence");
  rig.Camera().Enumeration("BalanceWhiteAuto").SetIntValue(2);
  const auto mapBefore = rig.TakeSnapshot();
  rig.Camera().Float("ExposureTime").Access(GenApi::NA);
  EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_FEATURE_ERROR);
  rig.Camera().Float("ExposureTime").Access(GenApi::RW);
  ExpectUnchanged(rig, mapBefore);
}

TEST(HostColour, AFailingWhiteBalanceFeatureFailsTheAcquisition)
{
  for (const char *pFeature : {"BalanceWhiteAuto", "AWBLampHouse", "BalanceRatioSelector"}) {
    CHostRig rig("BayerRG8");
    rig.Camera().Enumeration("BalanceWhiteAuto").SetIntValue(2);
    const auto mapBefore = rig.TakeSnapshot();
    // The first entry is what the lamp house was set to: putting it back has to succeed.
    rig.Camera().Enumeration(pFeature).OnWrite([](int64_t nValue) {
      if (nValue != 0) {
        Refuse();
      }
    });
    EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_PIXEL_FORMAT_NOT_IMPLEMENTED) << pFeature;
    EXPECT_EQ(rig.GetFrameCount(), 0) << pFeature;
    ExpectUnchanged(rig, mapBefore);
  }
}

TEST(HostColour, AnUnreadableWhiteBalanceFeatureFailsTheAcquisition)
{
  for (const char *pFeature : {"BalanceRatioSelector", "BalanceRatio"}) {
    CHostRig rig("BayerRG8");
    rig.Camera().Enumeration("BalanceWhiteAuto").SetIntValue(2);
    rig.SetHook([pFeature](const SNodeAccess &stAccess) {
      if (stAccess.strNode == pFeature && stAccess.eKind != SNodeAccess::EKind::LookUp) {
        Refuse();
      }
    });
    EXPECT_EQ(rig.AcquireBright(100), PLUGIN_STATUS_PIXEL_FORMAT_NOT_IMPLEMENTED) << pFeature;
    EXPECT_EQ(rig.GetFrameCount(), 0) << pFeature;
  }
}
