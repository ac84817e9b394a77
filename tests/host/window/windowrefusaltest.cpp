/// \file
/// What the window does not begin, and what it says when something cannot be done.

#include <functional>

#include <QAction>
#include <QFile>
#include <QInputDialog>
#include <QMenu>
#include <QSettings>
#include <QTimer>

#include "genapi/softwarenodemap/softwarenodemap.h"
#include "host/dialogdriver/modalanswerer.h"
#include "host/window/cameramemory.h"
#include "host/window/camerapresets.h"
#include "host/window/screenshotrun.h"
#include "tests/host/faultycamera.h"
#include "tests/host/window/boxpresser.h"
#include "tests/host/window/windowfixture.h"

using namespace ffc::host;

namespace {

class WindowRefusals : public WindowFixture {
protected:
  /// \return the entries, and those of a menu in it
  QList<QAction *> OpenPresets() const
  {
    QMenu *pPresets = Find<QMenu>("Presets");
    emit pPresets->aboutToShow();
    QList<QAction *> listActions = pPresets->actions();
    for (QMenu *pMenu : pPresets->findChildren<QMenu *>()) {
      listActions += pMenu->actions();
    }
    return listActions;
  }
  template <class TNode>
  TNode &GetFeature(const char *pName) const
  {
    return *dynamic_cast<ffc::genapi::CSoftwareNodeMap &>(*GetCamera().GetDeviceNodeMap()).Find<TNode>(pName);
  }
  ffc::genapi::CSoftwareFloat &GetExposure() const { return GetFeature<ffc::genapi::CSoftwareFloat>("ExposureTime"); }
  /// \return what the window says about it
  QStringList Do(const std::function<void()> &fnAction, const QString &strFile = {})
  {
    const CModalAnswerer answerer(strFile);
    fnAction();
    return answerer.GetMessages();
  }
};

} // namespace

TEST_F(WindowRefusals, WithoutACameraNothingBeginsAndHelpIsThere)
{
  m_pWindow = std::make_unique<CMainWindow>(m_stCamera, m_stPlugin, [](const SCameraOptions &) -> OpenedCamera {
    return ffc::Failure("camera: none answers");
  });
  EXPECT_NE(m_pWindow->OpenCamera(m_stCamera).GetError(), "");
  m_pWindow->show();
  BeginEverything();
  m_pWindow->SlotStartStop();
  m_pWindow->SlotShowDialog();
  EXPECT_EQ(CDialogDriver::FindAnyDialog(), nullptr);
  QTest::qWait(40); // the window looks for frames meanwhile
  ASSERT_EQ(OpenPresets().size(), 1);
  EXPECT_EQ(OpenPresets()[0]->text().toStdString(), "No camera with settings");
  EXPECT_FALSE(OpenPresets()[0]->isEnabled());
  const QStringList listErrors = Do([this] { m_pWindow->SlotChoose(1); });
  ASSERT_EQ(listErrors.size(), 1);
  EXPECT_NE(listErrors[0].toStdString().find("None answers"), std::string::npos) << listErrors[0].toStdString();
  const QStringList listHelp = Do([this] {
    FindAction("First steps")->trigger();
    FindAction("About")->trigger();
  });
  ASSERT_EQ(listHelp.size(), 2);
  EXPECT_TRUE(listHelp[0].startsWith("1. Choose the camera, start it, ")) << listHelp[0].toStdString();
  EXPECT_TRUE(listHelp[1].contains("Reference host of the flat-field correction plug-in")) << listHelp[1].toStdString();
}

TEST_F(WindowRefusals, AFolderThatIsNotThereIsToldByAllThatIsSaved)
{
  ShowWindow();
  ASSERT_TRUE(WaitText("Correction", "raw"));
  for (const auto &[strFile, fnSave] : {std::pair(QStringLiteral("none/imag.png"), &CMainWindow::SlotSaveImage),
                                        {QStringLiteral("none/many.ser"), &CMainWindow::SlotSaveSequence}}) {
    const QStringList listSaid =
      Do([this, fnSave = fnSave] { (m_pWindow.get()->*fnSave)(); }, m_folder.filePath(strFile));
    ASSERT_FALSE(listSaid.isEmpty());
    EXPECT_TRUE(listSaid.last().contains(strFile.mid(5))) << listSaid.last().toStdString();
    EXPECT_TRUE(Find<QWidget>("Measure")->isEnabled()) << "and goes on";
  }
}

TEST_F(WindowRefusals, AStoppedCameraIsToBeStartedFirst)
{
  ShowWindow();
  ASSERT_TRUE(WaitText("Correction", "raw"));
  Press("StartStop");
  m_pWindow->SlotExpose();
  EXPECT_EQ(GetText("CameraError"), "Start the camera first: the exposure is found from its frames.");
  const QStringList listSaid = Do([this] {
    m_pWindow->SlotSaveSequence();
    m_pWindow->SlotMeasure();
    m_pWindow->SlotCheckDrift();
    m_pWindow->SlotRestoreSettings();
  });
  ASSERT_EQ(listSaid.size(), 4);
  EXPECT_EQ(listSaid[0].toStdString(), "Start the camera first: a sequence is saved as its frames come.");
  EXPECT_EQ(listSaid[1].toStdString(), "Start the camera first.");
  EXPECT_TRUE(listSaid[2].startsWith("No corrected frame came.")) << listSaid[2].toStdString();
  EXPECT_TRUE(listSaid[3].contains("UserSet")) << listSaid[3].toStdString();
  EXPECT_FALSE(GetCamera().IsStreaming());
}

TEST_F(WindowRefusals, AnExposureThatTheCameraKeepsToItselfIsLeftAlone)
{
  ShowWindow();
  ASSERT_TRUE(WaitText("Correction", "raw"));
  GetExposure().SetValue(1000);
  Press("Expose");
  GetExposure().Access(GenApi::RO); // before the first frame is looked at
  QTest::qWait(100);
  EXPECT_EQ(GetText("CameraError"), "");
  Press("Expose");
  EXPECT_EQ(GetText("CameraError"),
            "The exposure time cannot be changed: switch the camera's own exposure control off.");
  GetExposure().Access(GenApi::RW);
  QTest::qWait(100);
  EXPECT_EQ(GetExposure().GetValue(), 1000) << "neither went on";
}

TEST_F(WindowRefusals, PresetsAreSavedAppliedAndRemovedByTheMenu)
{
  ShowWindow();
  ASSERT_TRUE(WaitText("Correction", "raw"));
  Press("StartStop");
  ASSERT_EQ(OpenPresets().size(), 2) << "a line, and Save as";
  for (const char *pName : {" ", "kept"}) { // the first is none
    QTimer::singleShot(20, [pName] {
      auto *pInput = qobject_cast<QInputDialog *>(QApplication::activeModalWidget());
      pInput->setTextValue(QLatin1String(pName));
      pInput->accept();
    });
    OpenPresets().last()->trigger();
  }
  EXPECT_EQ(CCameraPresets(GetCamera()).ListNames(), QStringList("kept"));
  QSettings().setValue(FindCameraGroup(GetCamera()) + QStringLiteral("/presets/kept/BinningHorizontal"), "2");
  const double dKept = GetExposure().GetValue();
  GetExposure().SetValue(dKept + 100);
  OpenPresets().first()->trigger();
  EXPECT_EQ(GetExposure().GetValue(), dKept);
  EXPECT_FALSE(GetCamera().IsStreaming()) << "as before";
  EXPECT_FALSE(Find<QLabel>("CameraError")->isVisible()) << "what this camera has not got is nothing to tell";

  GetExposure().SetValue(dKept + 100);
  GetExposure().Access(GenApi::RO);
  QSettings().setValue(FindCameraGroup(GetCamera()) + QStringLiteral("/presets/kept/Gain"), "1e9");
  OpenPresets().first()->trigger();
  const QStringList listLines = Find<QLabel>("CameraError")->text().split('\n');
  ASSERT_EQ(listLines.size(), 3) << GetText("CameraError");
  EXPECT_EQ(listLines[0].toStdString(), "The camera did not take all of the preset; set these by hand:");
  EXPECT_TRUE(listLines[1].startsWith("ExposureTime: ")) << listLines[1].toStdString();
  EXPECT_TRUE(listLines[2].startsWith("Gain: 1e9 (")) << listLines[2].toStdString();
  OpenPresets().last()->trigger();
  EXPECT_TRUE(CCameraPresets(GetCamera()).ListNames().isEmpty()) << "removed";
}

TEST_F(WindowRefusals, CoefficientsThatAreNoneAreNotLoadedAndTheOldFileIsRemembered)
{
  ShowWindow();
  ASSERT_TRUE(WaitText("Correction", "raw"));
  m_pWindow->SlotLoadLastCoefficients();
  EXPECT_NE(CDialogDriver::FindDialog(), nullptr) << "the dialog is all there is";
  const QString strFile = m_folder.filePath("flat.ffc");
  QFile file(strFile);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.resize(2 * 256 * 192));
  ASSERT_EQ(GetDriver().LoadFile(strFile).strBox.toStdString(), "");
  ASSERT_TRUE(file.resize(3));
  QString strSaid;
  const CInterrupter user(
    "MessageBox", [&] { strSaid = FindBox("MessageBox")->findChild<QLabel *>("qt_msgbox_label")->text(); }, "&OK");
  m_pWindow->SlotLoadLastCoefficients();
  EXPECT_TRUE(strSaid.contains("flat.ffc was not loaded: ")) << strSaid.toStdString();
  EXPECT_EQ(GetText("DialogNote").find("NOT loaded: "), 0U) << GetText("DialogNote");
  EXPECT_TRUE(FindAction("Load the last coefficients (flat.ffc)")->isEnabled());
}

TEST_F(WindowRefusals, PicturesOfTheWorkflowAreMadeWithoutAPerson)
{
  m_dFrameRate = 200;
  ShowWindow();
  ASSERT_TRUE(WaitText("Correction", "raw"));
  const QString strFolder = m_folder.filePath("pictures");
  ASSERT_EQ(CScreenshotRun(*m_pWindow, strFolder, 100).Run().GetError(), "");
  for (const char *pName : {"1-raw", "2-dark", "3-bright", "4-executed", "5-corrected", "6-split", "7-quality"}) {
    const QImage imgPicture(QStringLiteral("%1/%2.png").arg(strFolder, QLatin1String(pName)));
    EXPECT_EQ(imgPicture.size(), m_pWindow->size() * m_pWindow->devicePixelRatioF()) << pName;
  }
  EXPECT_TRUE(WaitText("Correction", "corrected"));
  EXPECT_NE(GetText("Verdict"), "Not measured");
  EXPECT_EQ(CDialogDriver::FindDialog(), nullptr) << "the plots are behind it";
}

TEST_F(WindowRefusals, PicturesThatCannotBeMadeAreToldWithTheReason)
{
  m_stPlugin.strModule = "none.plx";
  ShowWindow();
  const QString strFile = m_folder.filePath("file");
  ASSERT_TRUE(QFile(strFile).open(QIODevice::WriteOnly));
  EXPECT_EQ(CScreenshotRun(*m_pWindow, strFile + "/within", 1).Run().GetError(),
            "cannot make the folder " + (strFile + "/within").toStdString());
  EXPECT_EQ(CScreenshotRun(*m_pWindow, m_folder.path(), 1).Run().GetError(), "the plug-in shows no dialog");
  CFaultyCamera::SFaults stFaults;
  stFaults.bHasNoSceneControl = true;
  ShowWindow(
    [&](const SCameraOptions &) -> OpenedCamera { return std::make_unique<CFaultyCamera>("Mono8", stFaults); });
  EXPECT_EQ(CScreenshotRun(*m_pWindow, m_folder.path(), 1).Run().GetError(),
            "the scene of this camera cannot be set by software");
}
