#include "host/viewer/viewer.h"

#include <QApplication>

#include <gtest/gtest.h>

#include "camera/software/simulated/simulatedcamera.h"
#include "host/viewer/framecollector.h"

using namespace ffc::host;
using ffc::camera::CreateSimulatedCamera;
using ffc::camera::ICamera;
using ffc::camera::SSimulatedCameraOptions;

namespace {

class Viewer : public testing::Test {
protected:
  Viewer() { qApp->setProperty("fakePluginLog", QStringList()); }

  static std::unique_ptr<ICamera> MakeCamera()
  {
    SSimulatedCameraOptions stOptions;
    stOptions.strPixelFormat = "Mono8";
    stOptions.nWidth = 64;
    stOptions.nHeight = 48;
    stOptions.dFrameRate = 200;
    return CreateSimulatedCamera(stOptions).GetValue();
  }

  static QStringList GetLog() { return qApp->property("fakePluginLog").toStringList(); }
};

} // namespace

TEST_F(Viewer, BindsThePlugInAndTakesItApartInOrder)
{
  std::string strName;
  {
    CViewer viewer(MakeCamera());
    strName = viewer.GetCamera().GetDisplayName();
    ASSERT_EQ(viewer.Open(FAKE_MODULE, ELanguage::English).GetError(), "");
    ASSERT_EQ(viewer.Reopen().GetError(), "");
    viewer.ShowDialog();
    EXPECT_TRUE(viewer.GetCamera().IsStreaming());
  }
  const QString strBound = QStringLiteral("initialize %1 1").arg(QString::fromStdString(strName));
  EXPECT_EQ(GetLog(), QStringList({"create", strBound, "uninitialize", strBound, "uninitialize", "destroy"}));
}

TEST_F(Viewer, StartsAndStopsTheStreamAsThePlugInAsks)
{
  CViewer viewer(MakeCamera());
  ASSERT_EQ(viewer.Open(FAKE_MODULE, ELanguage::English).GetError(), "");
  viewer.ShowDialog();
  EXPECT_FALSE(viewer.IsDialogVisible()) << "as the plug-in says";
  EXPECT_EQ(viewer.GetStatusText(-4), "fake text");
  EXPECT_TRUE(viewer.GetCamera().IsStreaming()) << "directly, not through the event loop";
  viewer.HideDialog();
  EXPECT_FALSE(viewer.GetCamera().IsStreaming());
}

TEST_F(Viewer, FramesPassThroughThePlugIn)
{
  CViewer viewer(MakeCamera());
  ASSERT_EQ(viewer.Open(FAKE_MODULE, ELanguage::English).GetError(), "");
  ASSERT_EQ(viewer.StartStream().GetError(), "");
  CFrameCollector collector(viewer.GetPipeline());
  bool bInverted = false;
  EXPECT_EQ(collector
              .Collect(2, CFramePipeline::EWanted::Corrected,
                       [&](const SProcessedFrame &stFrame) {
                         const uint8_t nRaw = *static_cast<const uint8_t *>(stFrame.pRaw->pBuffer);
                         bInverted = *static_cast<const uint8_t *>(stFrame.pCorrected) == static_cast<uint8_t>(~nRaw);
                         return stFrame.pRaw->nSize == 64 * 48;
                       })
              .GetError(),
            "");
  EXPECT_TRUE(bInverted);
  viewer.StopStream();
}

TEST_F(Viewer, APlugInThatDoesNotInitialiseIsDestroyedWithoutUninitialize)
{
  CViewer viewer(MakeCamera());
  EXPECT_EQ(viewer.Open(FAKE_MODULE, ELanguage::Chinese).GetError(), "plug-in does not initialise: fake text (-4)");
  EXPECT_EQ(GetLog(), QStringList({"create", "destroy"}));
  viewer.ShowDialog();
  EXPECT_FALSE(viewer.IsDialogVisible());
  EXPECT_FALSE(viewer.GetCamera().IsStreaming());
}

TEST_F(Viewer, AMissingModuleLeavesTheCameraUsable)
{
  CViewer viewer(MakeCamera());
  EXPECT_NE(viewer.Open("/no/such.plx", ELanguage::English).GetError().find("no such file"), std::string::npos);
  EXPECT_EQ(viewer.GetStatusText(-4), "");
  EXPECT_FALSE(viewer.IsPluginInUse());
  EXPECT_EQ(viewer.StartStream().GetError(), "");
  viewer.StopStream();
}
