// The whole workflow of the host, with the real module, on a camera behind a network.
#include <atomic>
#include <utility>

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "camera/icameralink.h"
#include "camera/realcameras.h"
#include "host/headless/headlessrun.h"
#include "host/headless/workflowsession.h"
#include "host/measurement/freshframes.h"
#include "host/viewer/featuretext.h"
#include "tests/camera/aravis/coverablecamera.h"
#include "tests/camera/aravis/gigecameraprocess.h"

using namespace ffc::host;
using namespace ffc::quality;
using ffc::camera::ISceneControl;
using ffc::camera::OpenRealCamera;
using ffc::test::CCoverableCamera;
using ffc::test::CGigeCameraProcess;

namespace {

class NetworkWorkflow : public testing::Test {
protected:
  NetworkWorkflow()
  {
    m_stOptions.stPlugin.strModule = PLUGIN_MODULE;
    m_stOptions.stWorkflow.strOutFolder = m_dir.path().toStdString();
    m_stOptions.stWorkflow.nFrames = 8;
  }

  /// Opens the process's camera through the network.
  static CameraFactory MakeFactory(CGigeCameraProcess &process, CCoverableCamera::SHooks stHooks = {})
  {
    stHooks.fnCover = [&process](bool bCovered) { process.SetLensCap(bCovered); };
    return [&process, stHooks = std::move(stHooks)](const SCameraOptions &) -> OpenedCamera {
      auto opened = OpenRealCamera(process.GetSerial());
      if (!opened) {
        return opened.GetFailure();
      }
      return std::make_unique<CCoverableCamera>(std::move(opened).GetValue(), stHooks);
    };
  }

  QTemporaryDir m_dir;
  SHeadlessOptions m_stOptions;
  CProgressLine m_progress{nullptr};
};

class NetworkWorkflowInFormat : public NetworkWorkflow,
                                public testing::WithParamInterface<std::pair<const char *, uint32_t>> {};

} // namespace

TEST_P(NetworkWorkflowInFormat, DarkBrightExecuteAndPreviewGiveAFlatImage)
{
  const auto [pName, nCode] = GetParam();
  CGigeCameraProcess::SOptions stCamera;
  stCamera.nPixelFormat = nCode;
  CGigeCameraProcess process(stCamera);
  CHeadlessRun run(m_stOptions, MakeFactory(process), m_progress);
  ASSERT_EQ(run.Run().GetError(), "");
  const SReport &stReport = run.GetReport();
  EXPECT_EQ(stReport.strPixelFormat.toStdString(), pName);
  EXPECT_EQ(stReport.nWidth, stCamera.nWidth);
  EXPECT_EQ(stReport.nHeight, stCamera.nHeight);
  EXPECT_EQ(stReport.nBrightFrames, MEASURED_FRAMES);
  EXPECT_EQ(stReport.nDarkFrames, MEASURED_FRAMES);
  const SUniformityFigures &stBefore = stReport.stBefore.stOverall;
  const SUniformityFigures &stAfter = stReport.stAfter.stOverall;
  EXPECT_GT(stBefore.dShadingPercent, 15.0);
  EXPECT_LT(stAfter.dShadingPercent, 1.0);
  EXPECT_GT(stBefore.dPrnuPercent, 5.0);
  EXPECT_LT(stAfter.dPrnuPercent, 0.6);
}

INSTANTIATE_TEST_SUITE_P(Formats, NetworkWorkflowInFormat,
                         testing::Values(std::pair("Mono8", 0x01080001U), std::pair("Mono16", 0x01100007U),
                                         std::pair("BayerRG8", 0x01080009U), std::pair("BayerRG16", 0x0110002FU)),
                         [](const auto &stInfo) { return std::string(stInfo.param.first); });

/// A camera that nobody here wrote, with an exposure time and a gain from before the present names and nothing else
/// that the plug-in asks for. Its picture, a ramp that moves, is black at a tenth of its exposure time.
TEST_F(NetworkWorkflow, TheStockCameraOfTheLibrarysToolsIsCorrected)
{
  if (!CGigeCameraProcess::IsStockThere()) {
    GTEST_SKIP() << "the camera library's tools (aravis-tools) are not installed";
  }
  CGigeCameraProcess::SOptions stCamera;
  stCamera.bStock = true;
  CGigeCameraProcess process(stCamera);
  const CameraFactory fnOpen = [&](const SCameraOptions &) -> OpenedCamera {
    auto opened = OpenRealCamera(process.GetSerial());
    for (int nTry = 0; nTry < 20 && !opened; ++nTry) { // it does not say when it is ready
      opened = OpenRealCamera(process.GetSerial());
    }
    if (!opened) {
      return opened.GetFailure();
    }
    GenApi::INodeMap *pNodeMap = opened.GetValue()->GetDeviceNodeMap();
    CCoverableCamera::SHooks stHooks;
    stHooks.fnCover = [pNodeMap](bool bCovered) {
      dynamic_cast<GenApi::IFloat &>(*pNodeMap->GetNode("ExposureTime")).SetValue(bCovered ? 1000 : 10000);
    };
    return std::make_unique<CCoverableCamera>(std::move(opened).GetValue(), stHooks);
  };
  CHeadlessRun run(m_stOptions, fnOpen, m_progress);
  ASSERT_EQ(run.Run().GetError(), "");
  const SReport &stReport = run.GetReport();
  EXPECT_EQ(stReport.strPixelFormat, "Mono8");
  EXPECT_EQ(stReport.nBrightFrames, MEASURED_FRAMES);
  // The ramp has moved on since the bright field, so that much of it is left.
  EXPECT_LT(stReport.stAfter.stOverall.dShadingPercent, 0.7 * stReport.stBefore.stOverall.dShadingPercent);
  EXPECT_LT(stReport.stAfter.stOverall.dPrnuPercent, 0.8 * stReport.stBefore.stOverall.dPrnuPercent);
  EXPECT_THAT(stReport.listNotes.join('\n').toStdString(),
              testing::AllOf(testing::HasSubstr("ExposureTime is the camera's ExposureTimeAbs."),
                             testing::HasSubstr("Gain is the camera's GainRaw in raw steps.")));
  EXPECT_TRUE(QFile::exists(m_dir.filePath("report.json")));
}

TEST_F(NetworkWorkflow, TheListOfCamerasNamesFeaturesThatDifferOnRequest)
{
  const CGigeCameraProcess process({});
  EXPECT_THAT(DescribeRealCameras(false), testing::HasSubstr("(" + process.GetSerial() + ")\n"));
  EXPECT_THAT(
    DescribeRealCameras(true),
    testing::HasSubstr("(" + process.GetSerial() + ")\n\tAll features that the plug-in needs follow the standard.\n"));
}

TEST_F(NetworkWorkflow, ACameraOpensWithTheFormatThatIsAskedForOrSaysWhichItHas)
{
  const CGigeCameraProcess process({});
  SCameraOptions stCamera;
  stCamera.strCameraId = process.GetSerial();
  stCamera.strPixelFormat = "Mono16";
  {
    const OpenedCamera opened = OpenCamera(stCamera);
    ASSERT_EQ(opened.GetError(), "");
    EXPECT_EQ(ReadFeature(*opened.GetValue()->GetDeviceNodeMap(), "PixelFormat"), "Mono16");
  }
  stCamera.strPixelFormat = "NoSuchFormat";
  EXPECT_THAT(OpenCamera(stCamera).GetError(),
              testing::AllOf(testing::StartsWith("camera: "), testing::HasSubstr("; the camera has "),
                             testing::HasSubstr("Mono8, "), testing::HasSubstr("Mono16")));
}

TEST_F(NetworkWorkflow, ACameraThatGoesWithinTheBrightFieldIsReportedAndTheWorkGoesOnWhenItIsBack)
{
  CGigeCameraProcess process({});
  bool bArmed = false;
  std::atomic<int> nFramesLeft{0};
  CCoverableCamera::SHooks stHooks;
  stHooks.fnStart = [&] { nFramesLeft = std::exchange(bArmed, false) ? 4 : 0; }; // of eight
  stHooks.fnFrame = [&] {
    if (nFramesLeft > 0 && --nFramesLeft == 0) {
      process.Kill();
    }
  };
  CWorkflowSession session(m_stOptions, MakeFactory(process, stHooks), m_progress);
  const auto fnPrepareBright = [&] {
    return ffc::RunUntilFailure([&] { return session.SetScene(false, ISceneControl::EPurpose::Acquisition); },
                                [&] { return session.ReadFormat(); }, [&] { return session.SelectFrameCount(); })
      .GetError();
  };
  ASSERT_EQ(session.Open().GetError(), "");
  ASSERT_EQ(session.OpenDialog().GetError(), "");
  ASSERT_EQ(fnPrepareBright(), "");

  bArmed = true;
  const SDialogAnswer stAnswer = session.GetDriver().AcquireBright();
  // As the plug-in was waiting for a frame or looking at the camera's payload size.
  EXPECT_THAT(stAnswer.strBox.toStdString(),
              testing::AnyOf("Get buffer time out", "Failure to operation device feature"));
  EXPECT_TRUE(session.GetViewer().GetCamera().GetLink()->IsLost());
  EXPECT_EQ(session.GetViewer().GetStreamState().GetError(), "The camera does not answer any more.");
  EXPECT_FALSE(session.GetViewer().GetCamera().IsStreaming());
  session.GetDriver().AcquireDark();
  EXPECT_FALSE(session.GetViewer().GetCamera().IsStreaming()) << "what is lost stays lost";

  process.Restart();
  ASSERT_EQ(session.PowerCycle().GetError(), "");
  ASSERT_EQ(session.OpenDialog().GetError(), "");
  ASSERT_EQ(fnPrepareBright(), "");
  EXPECT_EQ(session.AcquireBright().GetError(), "");
  EXPECT_TRUE(session.GetDriver().IsExecuteEnabled());
  EXPECT_FALSE(session.GetViewer().GetCamera().GetLink()->IsLost());
}
