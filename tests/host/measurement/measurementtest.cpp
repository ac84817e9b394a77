#include "host/measurement/measurement.h"

#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "camera/software/replay/replaycamera.h"
#include "tests/host/faultycamera.h"

using namespace ffc::host;
using ffc::camera::ECorrectionMode;
using ffc::camera::FindSceneControl;

namespace {

/// Arranges the scene of a camera by software, and gives up where a test wants it to.
class CGuide final : public IMeasurementGuide {
public:
  explicit CGuide(CViewer &viewer) : m_viewer(viewer) {}

  bool ArrangeScene(bool bCovered) override
  {
    if (ffc::camera::ISceneControl *pScene = FindSceneControl(m_viewer.GetCamera())) {
      pScene->SetLensCap(bCovered);
    }
    return !m_bRefuses;
  }
  void ShowProgress(const QString &strStep, uint32_t, uint32_t) override
  {
    m_bCancelled = m_bCancelled || (!m_strCancelAt.isEmpty() && strStep == m_strCancelAt);
  }
  bool IsCancelled() const override { return m_bCancelled; }

  bool m_bRefuses = false;
  QString m_strCancelAt; ///< a step; empty: none

private:
  CViewer &m_viewer;
  bool m_bCancelled = false;
};

/// A camera of 64 x 64 pixels under a plug-in that corrects every frame.
class Measurement : public testing::Test {
protected:
  void Open(std::unique_ptr<ffc::camera::ICamera> pCamera)
  {
    m_viewer.emplace(std::move(pCamera));
    ASSERT_EQ(m_viewer->Open(FAKE_MODULE, ELanguage::English).GetError(), "");
    ASSERT_EQ(m_viewer->StartStream().GetError(), "");
    m_guide.emplace(*m_viewer);
  }
  void OpenSimulated(const CFaultyCamera::SFaults &stFaults = {}, ECorrectionMode eMode = ECorrectionMode::None)
  {
    Open(std::make_unique<CFaultyCamera>("Mono8", stFaults, eMode));
  }
  void SetFeature(const char *pName, const char *pText)
  {
    auto *pValue = dynamic_cast<GenApi::IValue *>(m_viewer->GetCamera().GetDeviceNodeMap()->GetNode(pName));
    ASSERT_NE(pValue, nullptr);
    pValue->FromString(pText);
  }
  CMeasurement Make() { return {*m_viewer, *m_guide, m_stOrigin}; }

  std::optional<CViewer> m_viewer;
  std::optional<CGuide> m_guide;
  SCoefficientOrigin m_stOrigin;
};

} // namespace

TEST_F(Measurement, AStreamThatStandsIsToBeStartedFirst)
{
  OpenSimulated();
  m_viewer->StopStream();
  EXPECT_EQ(Make().Measure(false).GetError(), "Start the camera first.");
  EXPECT_EQ(Make().MeasureDrift(true).GetError(), "Start the camera first.");
  EXPECT_EQ(Make().MeasureDrift(false).GetError(),
            "No corrected frame came. Execute the correction and tick its Preview first.");
}

TEST_F(Measurement, WhoeverGivesUpGetsNeitherFiguresNorAnErrorWhereverItIs)
{
  for (const bool bDeliversNothing : {true, false}) {
    CFaultyCamera::SFaults stFaults;
    stFaults.bDeliversNothing = bDeliversNothing;
    OpenSimulated(stFaults);
    m_guide->m_strCancelAt = bDeliversNothing ? "Waiting for a frame" : "Computing the figures";
    const auto measured = Make().Measure(false);
    ASSERT_EQ(measured.GetError(), "") << bDeliversNothing;
    EXPECT_EQ(measured.GetValue(), nullptr) << bDeliversNothing;
  }
  m_guide.emplace(*m_viewer).m_bRefuses = true;
  EXPECT_EQ(Make().Measure(false).GetValue(), nullptr);
  const auto drift = Make().MeasureDrift(true);
  ASSERT_EQ(drift.GetError(), "");
  EXPECT_FALSE(drift.GetValue().has_value());
}

TEST_F(Measurement, FramesThatAreNoBrightFieldAreMeasuredWithARemark)
{
  OpenSimulated();
  FindSceneControl(m_viewer->GetCamera())->SetIllumination(2); // it is clipped
  m_stOrigin.eKind = SCoefficientOrigin::EKind::File;
  m_stOrigin.strFile = "gone.ffc";
  const auto measured = Make().Measure(true);
  ASSERT_EQ(measured.GetError(), "");
  ASSERT_NE(measured.GetValue(), nullptr);
  EXPECT_FALSE(measured.GetValue()->listBrightRemarks.isEmpty());
  EXPECT_FALSE(measured.GetValue()->stReport.listNotes.join(' ').contains("another camera's"))
    << "nobody knows of a file that is gone";
}

TEST_F(Measurement, ARecordingWithoutDarkFramesThatRepeatsItselfSaysBoth)
{
  const QTemporaryDir dir;
  for (int nFrame = 0; nFrame < 3; ++nFrame) {
    QImage imgFrame(64, 64, QImage::Format_Grayscale8);
    imgFrame.fill(120);
    imgFrame.scanLine(0)[nFrame] = 100;
    ASSERT_TRUE(imgFrame.save(dir.filePath(QStringLiteral("bright_%1.png").arg(nFrame))));
  }
  Open(ffc::camera::CreateReplayCamera({dir.path().toStdString(), "", 200.0}).GetValue());
  const auto measured = Make().Measure(false);
  ASSERT_EQ(measured.GetError(), "");
  ASSERT_NE(measured.GetValue(), nullptr);
  const QString strNotes = measured.GetValue()->stReport.listNotes.join('\n');
  EXPECT_TRUE(strNotes.contains("There are no dark frames")) << strNotes.toStdString();
  EXPECT_TRUE(strNotes.contains("different frames were measured")) << strNotes.toStdString();
}

TEST_F(Measurement, ACameraThatCorrectsIsMeasuredAsItIsSetAndLeftSo)
{
  for (const auto eMode : {ECorrectionMode::FlatField, ECorrectionMode::Vignetting}) {
    OpenSimulated({}, eMode);
    const auto off = Make().Measure(false);
    ASSERT_EQ(off.GetError(), "");
    EXPECT_EQ(off.GetValue()->stReport.eMode, eMode);
    EXPECT_TRUE(off.GetValue()->bSameExposures) << "there is only a before";
    const auto drift = Make().MeasureDrift(false);
    ASSERT_EQ(drift.GetError(), "");
    EXPECT_GT(*drift.GetValue(), 1) << "as it came";
    m_guide->m_bRefuses = true;
    EXPECT_FALSE(Make().MeasureDrift(false).GetValue().has_value());
  }
}
