#include "tests/host/headless/deviceworkflowfixture.h"

using namespace ffc::host;
using namespace ffc::quality;
using ffc::camera::ECorrectionMode;
using ffc::genapi::CSoftwareEnumeration;
using ffc::genapi::CSoftwareNodeMap;
using ffc::genapi::CSoftwareString;

namespace {

/// Pixel format, block side, and the shading in percent that so few blocks leave at most.
using VignettingCase = std::tuple<const char *, uint32_t, double>;

class VignettingWorkflow : public DeviceWorkflowFixture, public testing::WithParamInterface<VignettingCase> {
protected:
  VignettingWorkflow()
  {
    m_stOptions.stCamera.eMode = ECorrectionMode::Vignetting;
    m_stOptions.stCamera.nWidth = 640;
    m_stOptions.stCamera.nHeight = 480;
  }
};

} // namespace

TEST_P(VignettingWorkflow, MakesTheCamerasOwnFramesFlatAndKeepsThemSo)
{
  const auto &[pFormat, nBlockSize, dLimit] = GetParam();
  m_stOptions.stCamera.strPixelFormat = pFormat;
  m_stOptions.stCamera.nBlockSize = nBlockSize;
  ASSERT_EQ(Run(), "");
  EXPECT_EQ(m_stReport.strPixelFormat.toStdString(), pFormat);
  EXPECT_EQ(m_stReport.nBlockSize, nBlockSize);
  EXPECT_EQ(m_nPowerOns, 2);
  EXPECT_GT(GetShading(m_stReport.stBefore), 30);
  EXPECT_LE(GetShading(m_stReport.stAfter), dLimit);
  ASSERT_TRUE(m_stReport.stAfterReload.has_value());
  EXPECT_NEAR(GetShading(*m_stReport.stAfterReload), GetShading(m_stReport.stAfter), RELOAD_TOLERANCE_PERCENT);
  EXPECT_FALSE(m_strSummary.contains("Expected grey"));
}

INSTANTIATE_TEST_SUITE_P(EveryDepthAndBlock, VignettingWorkflow,
                         testing::Values(VignettingCase{"Mono8", 128, 7.0}, VignettingCase{"Mono8", 64, 2.5},
                                         VignettingCase{"Mono12", 128, 7.0}, VignettingCase{"Mono12", 64, 2.5},
                                         VignettingCase{"BayerRG8", 128, 7.2}, VignettingCase{"BayerRG8", 64, 2.7},
                                         VignettingCase{"BayerGR12", 128, 7.2}, VignettingCase{"BayerGR12", 64, 2.7}),
                         [](const auto &stInfo) {
                           return std::string(std::get<0>(stInfo.param)) + "Block" +
                                  std::to_string(std::get<1>(stInfo.param));
                         });

namespace {

class VignettingWorkflowFaults : public DeviceWorkflowFixture {
protected:
  VignettingWorkflowFaults() { m_stOptions.stCamera.eMode = ECorrectionMode::Vignetting; }
};

} // namespace

TEST_F(VignettingWorkflowFaults, AFeatureThatTheAcquisitionLeavesChangedIsNamedButNotTheCorrection)
{
  m_fnAdapt = [](CSoftwareNodeMap &map) {
    CSoftwareString *pUserID = map.Find<CSoftwareString>("DeviceUserID");
    CSoftwareEnumeration *pCorrection = map.Find<CSoftwareEnumeration>("FlatFieldCorrection");
    pCorrection->Select("On");
    pCorrection->OnWrite([pUserID](int64_t) { pUserID->Poke("changed"); });
  };
  EXPECT_EQ(Run(), "bright acquisition: the camera is not as it was before: DeviceUserID");
}
