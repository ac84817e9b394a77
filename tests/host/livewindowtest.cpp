#include "host/livewindow.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include "tests/host/faultycamera.h"

namespace {

template <class TWidget>
TWidget *FindByText(const QWidget &window, const QString &strText)
{
  for (TWidget *pWidget : window.findChildren<TWidget *>()) {
    if (pWidget->text() == strText) {
      return pWidget;
    }
  }
  return nullptr;
}

/// A window on a camera of 64 x 64 pixels, with the fake module, which corrects every frame.
class LiveWindow : public testing::Test {
protected:
  LiveWindow() : m_viewer(std::make_unique<CFaultyCamera>("BayerRG8", CFaultyCamera::SFaults())) {}

  CViewer m_viewer;
};

} // namespace

TEST_F(LiveWindow, ShowsRawFramesAndCorrectedOnesAndSaysWhich)
{
  CLiveWindow window(m_viewer);
  window.show();
  ASSERT_EQ(m_viewer.StartStream().toStdString(), "");
  EXPECT_TRUE(QTest::qWaitFor([&] { return FindByText<QLabel>(window, "raw") != nullptr; }));
  m_viewer.StopStream();
  ASSERT_EQ(m_viewer.Open(FAKE_MODULE, ELanguage::English).toStdString(), "");
  ASSERT_EQ(m_viewer.StartStream().toStdString(), "");
  EXPECT_TRUE(QTest::qWaitFor([&] { return FindByText<QLabel>(window, "corrected") != nullptr; }));
  m_viewer.StopStream();
}

TEST_F(LiveWindow, SaysWhenTheCameraCorrectsItsFramesItself)
{
  CViewer viewer(std::make_unique<CFaultyCamera>("BayerRG8", CFaultyCamera::SFaults(), ECorrectionMode::FlatField));
  CLiveWindow window(viewer);
  window.show();
  ASSERT_EQ(viewer.StartStream().toStdString(), "");
  EXPECT_TRUE(QTest::qWaitFor([&] { return FindByText<QLabel>(window, "raw") != nullptr; }));
  auto *pCorrection =
    dynamic_cast<GenApi::IEnumeration *>(viewer.GetCamera().GetDeviceNodeMap()->GetNode("FlatFieldCorrection"));
  ASSERT_NE(pCorrection, nullptr);
  pCorrection->FromString("On");
  EXPECT_TRUE(QTest::qWaitFor([&] { return FindByText<QLabel>(window, "corrected by the camera") != nullptr; }));
  viewer.StopStream();
}

TEST_F(LiveWindow, StartsAndStopsTheStream)
{
  CLiveWindow window(m_viewer);
  window.show();
  QPushButton *pButton = FindByText<QPushButton>(window, "Start");
  ASSERT_NE(pButton, nullptr);
  QTest::mouseClick(pButton, Qt::LeftButton);
  EXPECT_TRUE(m_viewer.GetCamera().IsStreaming());
  EXPECT_EQ(pButton->text(), "Stop");
  QTest::mouseClick(pButton, Qt::LeftButton);
  EXPECT_FALSE(m_viewer.GetCamera().IsStreaming());
  EXPECT_EQ(pButton->text(), "Start");
}

TEST_F(LiveWindow, PutsTheLensCapOnAndOff)
{
  CLiveWindow window(m_viewer);
  window.show();
  QCheckBox *pLensCap = FindByText<QCheckBox>(window, "Lens cap");
  ASSERT_NE(pLensCap, nullptr);
  pLensCap->click();
  EXPECT_TRUE(m_viewer.GetCamera().GetSceneControl()->IsLensCapOn());
  pLensCap->click();
  EXPECT_FALSE(m_viewer.GetCamera().GetSceneControl()->IsLensCapOn());
}
