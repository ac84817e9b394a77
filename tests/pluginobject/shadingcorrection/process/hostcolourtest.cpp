#include <gtest/gtest.h>

#include "tests/pluginobject/shadingcorrection/process/hostrig.h"

using namespace ffc::test;

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
  EXPECT_EQ(mapBefore, rig.TakeSnapshot());
}

} // namespace

TEST(HostColour, TheFramesOfTheBalanceComeOnTop)
{
  CHostRig rig("BayerRG8");
  for (const int nReads : {1, 2, 3, 4, 5}) {
    rig.Camera().SetWhiteBalanceReads(nReads);
    EXPECT_EQ(0, rig.AcquireBright(100));
    EXPECT_EQ(nReads + SETTLING_FRAMES + FRAME_COUNT, rig.GetFrameCount());
    EXPECT_EQ(258U, rig.Process().WaitImageRequest());
  }
}

TEST(HostColour, ABalanceThatNeverEndsIsGivenFiveFramesAndIsNoFailure)
{
  CHostRig rig("BayerRG8");
  rig.Camera().SetWhiteBalanceReads(-1);
  EXPECT_EQ(0, rig.AcquireBright(100));
  // A sixth frame may have been on its way when the last request was withdrawn.
  EXPECT_GE(rig.GetFrameCount(), 5 + SETTLING_FRAMES + FRAME_COUNT);
  EXPECT_LE(rig.GetFrameCount(), 6 + SETTLING_FRAMES + FRAME_COUNT);
}

TEST(HostColour, TheFramesOfTheBalanceAreNotAveraged)
{
  CHostRig rig("BayerRG8");
  rig.Camera().SetWhiteBalanceReads(3);
  rig.Process().SetExpectGray(100);
  rig.Show([&rig](int nFrame) { return rig.Camera().MakeFrame(nFrame < 3 + SETTLING_FRAMES ? 250 : 100); });
  EXPECT_EQ(0, rig.Process().AcquireBrightImage());
  EXPECT_EQ(0, rig.Process().ExecuteCorrection());
  std::vector<uint8_t> listCorrected;
  EXPECT_EQ(0, rig.Correct(rig.Camera().MakeFrame(73), listCorrected));
  EXPECT_EQ(rig.Camera().MakeFrame(73), listCorrected);
}

TEST(HostColour, TheFramesOfTheBalanceAreWipedFromTheBuffer)
{
  CHostRig rig("BayerRG8", 64, 64);
  rig.Show(
    [](int nFrame) { return nFrame == 0 ? std::vector<uint8_t>(64 * 64, 250) : std::vector<uint8_t>(64 * 32, 100); });
  EXPECT_EQ(0, rig.Process().AcquireBrightImage());
  EXPECT_EQ(100.0, rig.Process().GetImageMaxGray());
  EXPECT_EQ(100.0, rig.Process().GetImageGrayDiff());
}

TEST(HostColour, TheCameraBalancesInAdaptiveLightDuringTheAcquisition)
{
  CHostRig rig("BayerRG8");
  std::string strLampHouse;
  rig.Show([&](int nFrame) {
    if (nFrame == 0) {
      strLampHouse = rig.Camera().Enumeration("AWBLampHouse").PeekSymbolic();
    }
    return rig.Camera().MakeFrame(100);
  });
  EXPECT_EQ(0, rig.Process().AcquireBrightImage());
  EXPECT_EQ("Adaptive", strLampHouse);
  EXPECT_EQ("D65", rig.Camera().Enumeration("AWBLampHouse").PeekSymbolic());
}

TEST(HostColour, TheSettingsArePutBackAfterABalanceFromOff)
{
  CHostRig rig("BayerRG8");
  rig.Camera().Enumeration("BalanceRatioSelector").Select("Blue");
  const auto mapBefore = rig.TakeSnapshot();
  EXPECT_EQ(0, rig.AcquireBright(100));
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
  EXPECT_EQ(0, rig.Process().AcquireBrightImage());
  // The mode stays off, for the ratios to hold.
  EXPECT_EQ("Off", camera.Enumeration("BalanceWhiteAuto").PeekSymbolic());
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
  EXPECT_EQ(0, rig.Process().AcquireBrightImage());
  EXPECT_EQ((std::array<double, 3>{2.0, 1.0, 3.0}), camera.m_adBalanceRatio);
}

TEST(HostColour, ACameraWithoutLampHouseBalancesToo)
{
  for (const GenApi::EAccessMode eAccess : {GenApi::NI, GenApi::NA, GenApi::RO}) {
    CHostRig rig("BayerRG8");
    rig.Camera().Enumeration("AWBLampHouse").Access(eAccess);
    const auto mapBefore = rig.TakeSnapshot();
    EXPECT_EQ(0, rig.AcquireBright(100));
    EXPECT_EQ(1 + SETTLING_FRAMES + FRAME_COUNT, rig.GetFrameCount());
    ExpectUnchanged(rig, mapBefore);
  }
}

TEST(HostColour, AFailedAcquisitionDoesNotBringBackWhatAnEarlierOneSaved)
{
  CHostRig rig("BayerRG8");
  EXPECT_EQ(0, rig.AcquireBright(100));
  rig.Camera().Enumeration("AWBLampHouse").Select("Fluorescence");
  rig.Camera().Enumeration("BalanceWhiteAuto").SetIntValue(2);
  const auto mapBefore = rig.TakeSnapshot();
  rig.Camera().Float("ExposureTime").Access(GenApi::NA);
  EXPECT_EQ(-1002, rig.AcquireBright(100));
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
    EXPECT_EQ(-1018, rig.AcquireBright(100)) << pFeature;
    EXPECT_EQ(0, rig.GetFrameCount()) << pFeature;
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
    EXPECT_EQ(-1018, rig.AcquireBright(100)) << pFeature;
    EXPECT_EQ(0, rig.GetFrameCount()) << pFeature;
  }
}

TEST(HostColour, ACameraThatDoesNotTellWhetherItIsBalancedIsGivenFiveFrames)
{
  CHostRig rig("BayerRG8");
  bool bWritten = false;
  rig.SetHook([&bWritten](const SNodeAccess &stAccess) {
    const bool bBalance = stAccess.strNode == "BalanceWhiteAuto";
    if (bBalance && bWritten && stAccess.eKind == SNodeAccess::EKind::CurrentEntry) {
      Refuse();
    }
    bWritten = bWritten || (bBalance && stAccess.eKind == SNodeAccess::EKind::Write);
  });
  EXPECT_EQ(0, rig.AcquireBright(100));
  EXPECT_GE(rig.GetFrameCount(), 5 + SETTLING_FRAMES + FRAME_COUNT);
}

TEST(HostColour, WithoutFramesTheBalanceEndsAndTheAcquisitionTimesOut)
{
  CHostRig rig("BayerRG8");
  rig.ShowNothing();
  const auto mapBefore = rig.TakeSnapshot();
  rig.Camera().SetWhiteBalanceReads(-1);
  EXPECT_EQ(-1009, rig.Process().AcquireBrightImage());
  ExpectUnchanged(rig, mapBefore);
}

TEST(HostColour, ADarkFrameNeedsNoBalance)
{
  CHostRig rig("BayerRG8");
  rig.SetHook([](const SNodeAccess &stAccess) {
    EXPECT_EQ(std::string::npos, stAccess.strNode.find("Balance"));
    EXPECT_NE("AWBLampHouse", stAccess.strNode);
  });
  EXPECT_EQ(0, rig.AcquireDark(10));
  EXPECT_EQ(1, rig.GetFrameCount());
}
