#include "tests/host/headless/deviceworkflowfixture.h"

using namespace ffc::host;
using namespace ffc::quality;
using ffc::camera::SSimulatedCameraOptions;
using ffc::genapi::CSoftwareEnumeration;
using ffc::genapi::CSoftwareFloat;
using ffc::genapi::CSoftwareNodeMap;
using ffc::genapi::CSoftwareRegister;
using ffc::genapi::CSoftwareString;

namespace {

class DeviceWorkflow : public DeviceWorkflowFixture {
protected:
  /// As a user who has moved the black level before.
  static void RaiseBlackLevel(CSoftwareNodeMap &map) { map.Find<CSoftwareFloat>("BlackLevel")->SetValue(2.0); }
};

/// Pixel format, block side, and the shading in percent that so few blocks leave at most.
using FlatFieldCase = std::tuple<const char *, uint32_t, double>;

class FlatFieldWorkflow : public DeviceWorkflowFixture, public testing::WithParamInterface<FlatFieldCase> {};

} // namespace

TEST_P(FlatFieldWorkflow, MakesTheCamerasOwnFramesFlatAndKeepsThemSo)
{
  const auto &[pFormat, nBlockSize, dLimit] = GetParam();
  m_stOptions.stCamera.strPixelFormat = pFormat;
  m_stOptions.stCamera.nBlockSize = nBlockSize;
  ASSERT_EQ(Run(), "");
  EXPECT_EQ(m_stReport.strPixelFormat.toStdString(), pFormat) << "the user's, not the factory's";
  EXPECT_EQ(m_stReport.nBlockSize, nBlockSize) << "after the power cycle";
  EXPECT_EQ(m_nPowerOns, 2);
  EXPECT_GT(GetShading(m_stReport.stBefore), 30);
  EXPECT_LE(GetShading(m_stReport.stAfter), dLimit);
  ASSERT_TRUE(m_stReport.stAfterReload.has_value());
  EXPECT_NEAR(GetShading(*m_stReport.stAfterReload), GetShading(m_stReport.stAfter), RELOAD_TOLERANCE_PERCENT);
  EXPECT_EQ(m_stReport.nBrightFrames, 16U);
  EXPECT_EQ(m_stReport.nDarkFrames, 16U);
  EXPECT_TRUE(m_stReport.listNotes.isEmpty()) << m_stReport.listNotes.join('\n').toStdString();
}

INSTANTIATE_TEST_SUITE_P(EveryDepthAndBlock, FlatFieldWorkflow,
                         testing::Values(FlatFieldCase{"Mono8", 32, 4.5}, FlatFieldCase{"Mono8", 16, 1.6},
                                         FlatFieldCase{"Mono12", 32, 4.5}, FlatFieldCase{"Mono12", 16, 1.6},
                                         FlatFieldCase{"BayerRG8", 32, 4.7}, FlatFieldCase{"BayerRG8", 16, 1.9},
                                         FlatFieldCase{"BayerGB12", 32, 4.7}, FlatFieldCase{"BayerGB12", 16, 1.9}),
                         [](const auto &stInfo) {
                           return std::string(std::get<0>(stInfo.param)) + "Block" +
                                  std::to_string(std::get<1>(stInfo.param));
                         });

TEST_F(DeviceWorkflow, LeavesPicturesFramesCoefficientsAndTheFlash)
{
  m_stOptions.stWorkflow.nSaveFrames = 2;
  ASSERT_EQ(Run(), "");
  for (const char *pFile : {"before.png", "after.png", "contrast_before.png", "contrast_after.png", "profile.png",
                            "dialog.png", "raw_001.png", "corrected_001.png", "report.json", "camera.flash"}) {
    EXPECT_TRUE(QFile::exists(GetPath(pFile))) << pFile;
  }
  EXPECT_FALSE(QFile::exists(GetPath("raw_002.png")));
  EXPECT_EQ(QFile(GetPath("coefficients.ffc")).size(), (8 + 2) * (6 + 2) * 8 + 24) << "8 x 6 blocks and a ring";
}

TEST_F(DeviceWorkflow, TheExpectedGreyIsTheCamerasUntilTheUserSaysOne)
{
  ASSERT_EQ(Run(), "");
  EXPECT_EQ(m_stReport.nExpectGray, 128) << "the factory's";
  EXPECT_NEAR(m_stReport.stAfter.stOverall.dMeanGray, 128, 2);
  m_stOptions.stWorkflow.nExpectGray = 90;
  ASSERT_EQ(Run(), "");
  EXPECT_NEAR(m_stReport.stAfter.stOverall.dMeanGray, 90, 2);
  EXPECT_NEAR(m_stReport.stAfterReload->stOverall.dMeanGray, 90, 2);
}

TEST_F(DeviceWorkflow, ADarkFieldAtAnotherBlackLevelIsNotUsedAndTheRunSaysSo)
{
  m_stOptions.stCamera.nBlockSize = 16;
  ASSERT_EQ(Run(), "");
  const double dDarkLevelUsed = m_stReport.stAfter.stOverall.dMeanGray;
  EXPECT_TRUE(m_stReport.listNotes.isEmpty());
  m_fnAdapt = [this](CSoftwareNodeMap &map) {
    if (IsFirstPowerOn()) {
      RaiseBlackLevel(map);
    }
  };
  ASSERT_EQ(Run(), "");
  ASSERT_EQ(m_stReport.listNotes.size(), 1);
  EXPECT_TRUE(m_stReport.listNotes.at(0).startsWith("The current black level is not the default value"));
  EXPECT_LE(GetShading(m_stReport.stAfter), 1.6) << "flat without the dark field too";
  EXPECT_NEAR(m_stReport.stAfter.stOverall.dMeanGray, dDarkLevelUsed, 2);
}

TEST_F(DeviceWorkflow, TheFlashOfAnEarlierRunInTheFolderIsReplaced)
{
  ASSERT_EQ(Run(), "");
  m_stOptions.stCamera.nWidth = 320; // a flash of another sensor would be refused
  EXPECT_EQ(Run(), "");
}

TEST_F(DeviceWorkflow, AFlashThatTheUserNamesIsKeptAndUsedAgain)
{
  const QString strFlash = m_dir.filePath("my.flash");
  m_stOptions.stCamera.strFlashFile = strFlash.toStdString();
  ASSERT_EQ(Run(), "");
  EXPECT_TRUE(QFile::exists(strFlash));
  EXPECT_FALSE(QFile::exists(GetPath("camera.flash")));
  bool bStartsCorrecting = false;
  m_fnAdapt = [&](CSoftwareNodeMap &map) {
    bStartsCorrecting =
      bStartsCorrecting ||
      (IsFirstPowerOn() && map.Find<CSoftwareEnumeration>("FlatFieldCorrection")->PeekSymbolic() == "On");
  };
  EXPECT_EQ(Run(), "");
  EXPECT_TRUE(bStartsCorrecting);
  EXPECT_GT(GetShading(m_stReport.stBefore), 30) << "measured with the correction off all the same";
}

TEST_F(DeviceWorkflow, AFeatureThatAnAcquisitionLeavesChangedIsNamed)
{
  m_fnAdapt = [](CSoftwareNodeMap &map) {
    CSoftwareString *pUserID = map.Find<CSoftwareString>("DeviceUserID");
    map.Find<CSoftwareEnumeration>("TriggerSource")->OnWrite([pUserID](int64_t) { pUserID->Poke("changed"); });
  };
  EXPECT_EQ(Run(), "dark acquisition: the camera is not as it was before: DeviceUserID");
  EXPECT_FALSE(QFile::exists(GetPath("report.json")));
}

TEST_F(DeviceWorkflow, ACorrectionThatCannotBeSwitchedOffIsTold)
{
  m_fnAdapt = [](CSoftwareNodeMap &map) {
    map.Find<CSoftwareEnumeration>("FlatFieldCorrection")->OnWrite([](int64_t nValue) {
      if (nValue == 0) {
        throw GenICam::RuntimeException("stuck", __FILE__, __LINE__);
      }
    });
  };
  EXPECT_EQ(Run().rfind("measurement before: ", 0), 0U);
}

TEST_F(DeviceWorkflow, ACameraThatLosesItsStartSetIsTold)
{
  m_fnBuild = [this](SSimulatedCameraOptions &stCamera) {
    if (!IsFirstPowerOn()) {
      stCamera.strFlashFile.clear();
    }
  };
  EXPECT_EQ(Run(), "power cycle: the camera starts with the user set \"Default\"");
}

TEST_F(DeviceWorkflow, ACameraThatStartsOtherwiseThanItWasSavedIsToldByItsFeatures)
{
  m_fnAdapt = [this](CSoftwareNodeMap &map) {
    if (!IsFirstPowerOn()) {
      map.Find<CSoftwareFloat>("Gain")->SetValue(1.0);
    }
  };
  EXPECT_EQ(Run(), "power cycle: the camera does not start as UserSet0 was saved: Gain");
}

TEST_F(DeviceWorkflow, ACameraThatDoesNotComeBackIsTold)
{
  m_fnBuild = [this](SSimulatedCameraOptions &stCamera) {
    if (!IsFirstPowerOn()) {
      stCamera.dFrameRate = -1;
    }
  };
  EXPECT_EQ(Run().rfind("power cycle: The frame rate", 0), 0U);
}

TEST_F(DeviceWorkflow, CoefficientsThatNoLongerFitTheLensAreTold)
{
  m_fnBuild = [this](SSimulatedCameraOptions &stCamera) {
    if (!IsFirstPowerOn()) {
      stCamera.dCornerFalloff = 0.8;
    }
  };
  EXPECT_EQ(Run().rfind("loading from flash: the reloaded coefficients leave a shading of ", 0), 0U);
}

TEST_F(DeviceWorkflow, ARegisterThatRefusesIsTold)
{
  m_fnAdapt = [](CSoftwareNodeMap &map) {
    map.Find<CSoftwareRegister>("FFCValueAll")->OnWrite([](const std::vector<uint8_t> &) {
      throw GenICam::RuntimeException("worn out", __FILE__, __LINE__);
    });
  };
  EXPECT_EQ(Run().rfind("execute: ", 0), 0U);
  const auto adapt = m_fnAdapt;
  m_fnAdapt = [this, adapt](CSoftwareNodeMap &map) {
    if (!IsFirstPowerOn()) {
      adapt(map);
    }
  };
  const std::string strError = Run();
  EXPECT_EQ(strError.rfind("loading from flash: ", 0), 0U) << strError;
  EXPECT_NE(strError.find("worn out"), std::string::npos) << strError;
}

TEST_F(DeviceWorkflow, AFlashThatCannotBeWrittenIsTold)
{
  m_stOptions.stCamera.strFlashFile = m_dir.filePath("no/such/folder/my.flash").toStdString();
  const std::string strError = Run();
  EXPECT_EQ(strError.rfind("dark acquisition: ", 0), 0U) << "UserSet0 is parked in it: " << strError;
}

TEST_F(DeviceWorkflow, TheSummaryIsTheTableWithTheReloadedFigures)
{
  ASSERT_EQ(Run(), "");
  EXPECT_TRUE(m_strSummary.contains("reloaded"));
  EXPECT_TRUE(m_strSummary.contains("blocks of 32 x 32"));
}
