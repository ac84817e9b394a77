// The window of the host on cameras behind a network.
#include <QComboBox>
#include <QDoubleSpinBox>

#include "camera/icameralink.h"
#include "tests/camera/aravis/eventgaps.h"
#include "tests/camera/aravis/gigecameraprocess.h"
#include "tests/host/window/boxpresser.h"
#include "tests/host/window/windowfixture.h"

using namespace ffc::host;
using ffc::test::CEventGaps;
using ffc::test::CGigeCameraProcess;

namespace {

#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
constexpr int64_t LONGEST_GAP_MS = 500; ///< everything takes longer there
#else
constexpr int64_t LONGEST_GAP_MS = 200; ///< a call that waits for a camera which is gone takes 500 and more
#endif

class NetworkWindow : public WindowFixture {
protected:
  void ShowCamera(const CGigeCameraProcess &process)
  {
    m_stCamera.strCameraId = process.GetSerial();
    m_stCamera.strPixelFormat.clear();
    ShowWindow([this](const SCameraOptions &stOptions) {
      return stOptions.strCameraId.empty() ? OpenSimulated(stOptions) : OpenCamera(stOptions);
    });
    ASSERT_TRUE(WaitText("Shape", "128 x 96 Mono8"));
  }
  bool WaitStreaming() const
  {
    return QTest::qWaitFor(
      [this] {
        CViewer *pViewer = m_pWindow->GetViewer();
        return pViewer != nullptr && pViewer->GetCamera().IsStreaming() && !pViewer->GetCamera().GetLink()->IsLost() &&
               Find<QLabel>("Shape")->text().startsWith(QLatin1String("128 x 96"));
      },
      60000);
  }
  static GenApi::IFloat &FindExposure(CMainWindow &window)
  {
    GenApi::INodeMap *pMap = window.GetViewer()->GetCamera().GetDeviceNodeMap();
    return dynamic_cast<GenApi::IFloat &>(*pMap->GetNode("ExposureTime"));
  }
  static double GetExposure(CMainWindow &window) { return FindExposure(window).GetValue(); }
  static void SetExposure(CMainWindow &window, double dMicroseconds) { FindExposure(window).SetValue(dMicroseconds); }
  static bool Delivers(CMainWindow &window)
  {
    const CFramePipeline &pipeline = window.GetViewer()->GetPipeline();
    const uint64_t nBefore = pipeline.GetReceivedCount();
    return QTest::qWaitFor([&] { return pipeline.GetReceivedCount() > nBefore + 2; });
  }
  void Choose(const char *pName)
  {
    const int nChoice = Find<QComboBox>("CameraChooser")->findText(QLatin1String(pName), Qt::MatchContains);
    ASSERT_GE(nChoice, 0) << pName;
    m_pWindow->SlotChoose(nChoice);
  }
};

} // namespace

TEST_F(NetworkWindow, StaysLiveWhenACameraIsUnpluggedOpenedAgainAndLeftForAnother)
{
  CGigeCameraProcess process({});
  ShowCamera(process);
  CEventGaps gaps;
  QTest::qWait(1100); // the camera is read once
  EXPECT_LT(gaps.Take(), LONGEST_GAP_MS) << "while it streams";
  process.Kill();
  ASSERT_TRUE(QTest::qWaitFor([this] { return GetCamera().GetLink()->IsLost(); }, 60000));
  EXPECT_TRUE(WaitText("CameraError", "The camera is lost."));
  EXPECT_LT(gaps.Take(), LONGEST_GAP_MS) << "until the loss is known";
  process.Restart();
  gaps.Take();
  ASSERT_TRUE(WaitStreaming());
  EXPECT_LT(gaps.Take(), LONGEST_GAP_MS) << "until the camera is open again";
  process.Kill();
  Choose("Simulated, mono"); // before anybody knows
  EXPECT_TRUE(WaitText("Shape", "256 x 192"));
  EXPECT_LT(gaps.Take(), LONGEST_GAP_MS) << "leaving a camera that is gone";
  Key(Qt::Key_F6, Qt::NoModifier);
  EXPECT_LT(gaps.Take(), LONGEST_GAP_MS) << "looking for cameras";
}

TEST_F(NetworkWindow, TwoHostsHaveACameraEachAndTheChooserChangesBetweenThem)
{
  CGigeCameraProcess::SOptions stSecond;
  stSecond.strAddress = CGigeCameraProcess::FindSecondAddress();
  stSecond.nWidth = 64;
  if (stSecond.strAddress.empty()) {
    GTEST_SKIP() << "this machine has one address only";
  }
  const CGigeCameraProcess first({});
  const CGigeCameraProcess second(stSecond);
  ShowCamera(first);
  SetExposure(*m_pWindow, 5000);
  Find<QDoubleSpinBox>("ShadingLimit")->setValue(2.5);
  SCameraOptions stOther = m_stCamera;
  stOther.strCameraId = second.GetSerial();
  auto pOther = std::make_unique<CMainWindow>(stOther, m_stPlugin, OpenCamera);
  ASSERT_EQ(pOther->OpenCamera(stOther).GetError(), "");
  EXPECT_TRUE(Delivers(*m_pWindow));
  EXPECT_TRUE(Delivers(*pOther));
  EXPECT_EQ(GetExposure(*m_pWindow), 5000);
  EXPECT_NE(GetExposure(*pOther), 5000);

  Key(Qt::Key_F6, Qt::NoModifier);
  {
    const CBoxPresser presser("MessageBox", "&OK");
    Choose(second.GetSerial().c_str());
  }
  EXPECT_NE(GetText("CameraError").find("is in use by another program"), std::string::npos);
  EXPECT_TRUE(Delivers(*pOther)) << "nobody takes it away";
  pOther.reset();
  Choose(second.GetSerial().c_str());
  ASSERT_TRUE(WaitText("Shape", "64 x 96 Mono8"));
  Find<QDoubleSpinBox>("ShadingLimit")->setValue(7);
  Choose(first.GetSerial().c_str());
  ASSERT_TRUE(WaitText("Shape", "128 x 96 Mono8"));
  EXPECT_EQ(GetExposure(*m_pWindow), 5000) << "it kept its settings";
  EXPECT_EQ(Find<QDoubleSpinBox>("ShadingLimit")->value(), 2.5);
  m_pWindow.reset(); // before the cameras go
}
