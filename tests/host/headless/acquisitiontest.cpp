/// \file
/// What the plug-in's acquisitions ask of the host and the camera: user sets that cannot be switched while
/// frames come, and a frame that is triggered as soon as the stream runs again.

#include <map>

#include <QApplication>
#include <QTest>

#include "host/dialogdriver/dialogdriver.h"
#include "tests/host/headless/deviceworkflowfixture.h"

using namespace ffc::host;
using ffc::genapi::FindSensorFormat;

namespace {

constexpr uint32_t MANY_FRAMES = 100000;

/// A camera whose user has chosen 12 bits; the factory's format is Mono8.
class Acquisition : public DeviceWorkflowFixture {
protected:
  Acquisition()
  {
    m_stOptions.stCamera.strPixelFormat = "Mono12";
    m_pViewer = std::make_unique<CViewer>(OpenFast(m_stOptions.stCamera).GetValue());
  }

  void SetUp() override
  {
    ASSERT_EQ(m_pViewer->Open(PLUGIN_MODULE, ELanguage::English).GetError(), "");
    m_pViewer->ShowDialog();
    QApplication::processEvents();
    QDialog *pDialog = CDialogDriver::FindDialog();
    ASSERT_NE(pDialog, nullptr);
    m_driver.emplace(*pDialog);
  }

  /// Frames by pixel format that come while fnAcquire runs.
  std::map<std::string, int> CountFrames(const std::function<SDialogAnswer()> &fnAcquire)
  {
    std::map<std::string, int> mapFrames;
    m_pViewer->GetPipeline().Request(MANY_FRAMES, CFramePipeline::EWanted::Any, [&](const SProcessedFrame &stFrame) {
      ++mapFrames[FindSensorFormat(stFrame.pRaw->nPixelFormat)->pName];
    });
    const SDialogAnswer stAnswer = fnAcquire();
    EXPECT_EQ(stAnswer.strBox.toStdString(), "");
    EXPECT_NE(stAnswer.strPrompt.toStdString(), "");
    m_pViewer->GetPipeline().CancelRequest();
    return mapFrames;
  }

  bool CanSwitchUserSets()
  {
    return GenApi::IsWritable(m_pViewer->GetCamera().GetDeviceNodeMap()->GetNode("UserSetLoad"));
  }
  bool IsStreaming() { return m_pViewer->GetCamera().IsStreaming(); }

  std::unique_ptr<CViewer> m_pViewer;
  std::optional<CDialogDriver> m_driver;
};

} // namespace

TEST_F(Acquisition, OfTheDarkFieldStopsTheStreamForTheUserSetsAndGetsItsOneTriggeredFrame)
{
  ASSERT_EQ(m_pViewer->StartStream().GetError(), "");
  ASSERT_FALSE(CanSwitchUserSets()) << "else this test shows nothing";
  auto mapFrames = CountFrames([this] { return m_driver->AcquireDark(); });
  EXPECT_EQ(mapFrames["Mono8"], 1) << "of the factory's set";
  EXPECT_TRUE(IsStreaming());
  EXPECT_FALSE(CanSwitchUserSets());
}

TEST_F(Acquisition, OfTheDarkFieldLeavesAStandingStreamStanding)
{
  ASSERT_TRUE(CanSwitchUserSets());
  auto mapFrames = CountFrames([this] { return m_driver->AcquireDark(); });
  EXPECT_EQ(mapFrames["Mono8"], 1);
  EXPECT_EQ(mapFrames.size(), 1U);
  EXPECT_FALSE(IsStreaming());
  EXPECT_TRUE(CanSwitchUserSets());
}

TEST_F(Acquisition, OfTheBrightFieldTakesFreeRunningFramesOfTheFactorysSet)
{
  ASSERT_EQ(m_pViewer->StartStream().GetError(), "");
  ASSERT_EQ(m_driver->SetFrameCount(8).strBox.toStdString(), "");
  auto mapFrames = CountFrames([this] { return m_driver->AcquireBright(); });
  EXPECT_GE(mapFrames["Mono8"], 8);
  EXPECT_TRUE(m_driver->IsExecuteEnabled());
  EXPECT_TRUE(IsStreaming());
  mapFrames = CountFrames([this] {
    QTest::qWait(100);
    return m_driver->ReadPrompt();
  });
  EXPECT_GT(mapFrames["Mono12"], 0) << "the user's format is back";
  EXPECT_EQ(mapFrames.count("Mono8"), 0U);
}
