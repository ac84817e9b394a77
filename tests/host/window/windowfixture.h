/// \file
/// The window on a small, fast camera, with the real module.
#pragma once

#include <functional>
#include <memory>

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include "camera/iscenecontrol.h"
#include "camera/software/simulated/simulatedcamera.h"
#include "host/dialogdriver/dialogdriver.h"
#include "host/window/mainwindow.h"

namespace ffc::host {

/// What the window remembers goes to a folder of the test's own.
class WindowFixture : public testing::Test {
protected:
  WindowFixture()
  {
    QCoreApplication::setOrganizationName(QStringLiteral("FlatFieldCorrectionTest"));
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, m_folder.path());
    m_stPlugin.strModule = PLUGIN_MODULE;
    m_stCamera.strPixelFormat = "Mono12";
  }

  /// 256 x 192 pixels; the frame rate is the fixture's.
  OpenedCamera OpenSimulated(const SCameraOptions &stOptions) const
  {
    camera::SSimulatedCameraOptions stCamera;
    stCamera.strPixelFormat = stOptions.strPixelFormat;
    stCamera.nWidth = 256;
    stCamera.nHeight = 192;
    stCamera.dFrameRate = m_dFrameRate;
    stCamera.eMode = stOptions.eMode;
    stCamera.nSeed = stOptions.nSeed;
    return camera::CreateSimulatedCamera(stCamera);
  }

  /// Shows the window on the camera of the factory, by default the simulated one.
  void ShowWindow(CameraFactory fnOpen = nullptr)
  {
    if (!fnOpen) {
      fnOpen = [this](const SCameraOptions &stOptions) { return OpenSimulated(stOptions); };
    }
    m_pWindow = std::make_unique<CMainWindow>(m_stCamera, m_stPlugin, fnOpen);
    ASSERT_EQ(m_pWindow->OpenCamera(m_stCamera).GetError(), "");
    m_pWindow->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(m_pWindow.get()));
    QApplication::setActiveWindow(m_pWindow.get());
  }

  template <class TWidget>
  TWidget *Find(const char *pName) const
  {
    TWidget *pWidget = m_pWindow->findChild<TWidget *>(QLatin1String(pName));
    EXPECT_NE(pWidget, nullptr) << pName;
    return pWidget;
  }
  std::string GetText(const char *pLabel) const { return Find<QLabel>(pLabel)->text().toStdString(); }
  /// Of a menu, by its whole text without the letter of its key.
  QAction *FindAction(const char *pText) const
  {
    for (QAction *pAction : m_pWindow->findChildren<QAction *>()) {
      if (pAction->text().remove(QLatin1Char('&')) == QLatin1String(pText)) {
        return pAction;
      }
    }
    ADD_FAILURE() << pText;
    return nullptr;
  }
  void Press(const char *pButton) { QTest::mouseClick(Find<QAbstractButton>(pButton), Qt::LeftButton); }
  /// Without a window manager nobody gives the window its focus back when a box before it has closed.
  void Key(int nKey, Qt::KeyboardModifiers modifiers)
  {
    QApplication::setActiveWindow(m_pWindow.get());
    QTest::keyClick(m_pWindow.get(), Qt::Key(nKey), modifiers);
  }

  /// Until a label of the window begins with a text.
  bool WaitText(const char *pLabel, const char *pText) const
  {
    return QTest::qWaitFor([=] { return Find<QLabel>(pLabel)->text().startsWith(QLatin1String(pText)); }, 10000);
  }

  /// Dark field, bright field, execute, in the plug-in's dialog.
  void Correct()
  {
    Press("ShowDialog");
    ASSERT_NE(CDialogDriver::FindDialog(), nullptr);
    CDialogDriver driver = GetDriver();
    Key(Qt::Key_L, Qt::AltModifier);
    ASSERT_TRUE(QTest::qWaitFor([this] { return FindSceneControl(GetCamera())->IsLensCapOn(); }));
    QTest::qWait(100);
    ASSERT_EQ(driver.AcquireDark().strBox.toStdString(), "");
    QApplication::setActiveWindow(m_pWindow.get());
    Key(Qt::Key_L, Qt::AltModifier);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !FindSceneControl(GetCamera())->IsLensCapOn(); }));
    QTest::qWait(100);
    driver.SetFrameCount(16);
    const SDialogAnswer stBright = driver.AcquireBright();
    ASSERT_EQ(stBright.strBox.toStdString(), "");
    ASSERT_FALSE(stBright.bWarning) << stBright.strPrompt.toStdString();
    ASSERT_EQ(driver.Execute().strBox.toStdString(), "");
    QApplication::setActiveWindow(m_pWindow.get());
  }

  /// All that works with a camera, as if a menu or key had asked for it.
  void BeginEverything()
  {
    for (const auto fnSlot :
         {&CMainWindow::SlotRestoreSettings, &CMainWindow::SlotExpose, &CMainWindow::SlotSaveImage,
          &CMainWindow::SlotSaveSequence, &CMainWindow::SlotSavePreset, &CMainWindow::SlotShowFeatures,
          &CMainWindow::SlotLoadLastCoefficients, &CMainWindow::SlotMakeReference, &CMainWindow::SlotMeasure,
          &CMainWindow::SlotCheckDrift, &CMainWindow::SlotSaveReport}) {
      (m_pWindow.get()->*fnSlot)();
      EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    }
    EXPECT_EQ(m_pWindow->findChild<QWidget *>(QStringLiteral("FeatureBrowser")), nullptr);
  }

  CDialogDriver GetDriver() const { return CDialogDriver(*CDialogDriver::FindAnyDialog()); }
  camera::ICamera &GetCamera() const { return m_pWindow->GetViewer()->GetCamera(); }

  QTemporaryDir m_folder;
  SCameraOptions m_stCamera;
  SPluginOptions m_stPlugin;
  double m_dFrameRate = 100;
  std::unique_ptr<CMainWindow> m_pWindow;
};

} // namespace ffc::host
