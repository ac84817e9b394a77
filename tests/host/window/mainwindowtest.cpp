#include <QAction>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QDoubleSpinBox>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QSlider>
#include <QTabWidget>
#include <QWheelEvent>

#include "camera/iscenecontrol.h"
#include "host/dialogdriver/modalanswerer.h"
#include "host/options/cameraopening.h"
#include "host/options/language.h"
#include "host/window/displaypicture.h"
#include "host/window/imageview.h"
#include "host/window/statusline.h"
#include "tests/host/faultycamera.h"
#include "tests/host/window/windowfixture.h"

using namespace ffc::host;
using ffc::camera::ECorrectionMode;
using ffc::camera::FindSceneControl;

namespace {

class MainWindow : public WindowFixture {
protected:
  CameraFactory MakeFaulty(const CFaultyCamera::SFaults &stFaults)
  {
    return [stFaults](const SCameraOptions &) -> OpenedCamera {
      return std::make_unique<CFaultyCamera>("BayerRG8", stFaults);
    };
  }

  /// As if the user chose it from a menu.
  void TriggerAction(const char *pText)
  {
    QAction *pAction = FindAction(pText);
    ASSERT_NE(pAction, nullptr);
    pAction->trigger();
  }

  CImageView *GetView() const { return m_pWindow->findChild<CImageView *>(); }
  bool WaitPicture() const
  {
    return QTest::qWaitFor([this] { return !GetView()->GetPicture().isNull(); });
  }
};

/// The letter behind the ampersand; 0 for none.
QChar GetMnemonic(const QString &strText)
{
  const int nAmpersand = strText.indexOf(QLatin1Char('&'));
  return nAmpersand < 0 || nAmpersand + 1 >= strText.size() ? QChar() : strText[nAmpersand + 1].toLower();
}

} // namespace

TEST_F(MainWindow, ShowsFramesRateAndShape)
{
  ShowWindow();
  ASSERT_TRUE(WaitPicture());
  EXPECT_EQ(GetView()->GetPicture().size(), QSize(256, 192));
  EXPECT_TRUE(WaitText("Shape", "256 x 192 Mono12"));
  EXPECT_TRUE(QTest::qWaitFor([this] { return GetText("Rate") != "0.0 frames/s" && !GetText("Rate").empty(); }));
  EXPECT_EQ(GetText("Dropped"), "dropped 0");
  EXPECT_EQ(m_pWindow->windowTitle().toStdString(), GetCamera().GetDisplayName());
}

TEST_F(MainWindow, SettingsAreLockedWhileStreamingAndSayWhy)
{
  ShowWindow();
  for (const char *pName : {"PixelFormat", "Width", "Height"}) {
    EXPECT_FALSE(Find<QWidget>(pName)->isEnabled()) << pName;
    EXPECT_EQ(Find<QWidget>(pName)->toolTip().toStdString(), "Locked while the camera streams: stop it first");
  }
  EXPECT_TRUE(Find<QWidget>("ExposureTime")->isEnabled());
  Key(Qt::Key_F5, Qt::NoModifier);
  EXPECT_FALSE(GetCamera().IsStreaming());
  for (const char *pName : {"PixelFormat", "Width", "Height"}) {
    EXPECT_TRUE(Find<QWidget>(pName)->isEnabled()) << pName;
  }
  Key(Qt::Key_S, Qt::AltModifier); // a button that is pressed by its key takes a moment, as the next one
  EXPECT_TRUE(QTest::qWaitFor([this] { return GetCamera().IsStreaming(); }));
}

TEST_F(MainWindow, WritesWhatTheUserTypesAndSaysWhatTheCameraRefuses)
{
  ShowWindow();
  auto *pExposure = dynamic_cast<GenApi::IFloat *>(GetCamera().GetDeviceNodeMap()->GetNode("ExposureTime"));
  QWidget *pEdit = Find<QWidget>("ExposureTime");
  pEdit->setFocus();
  QTest::keyClick(pEdit, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(pEdit, "2500");
  QTest::keyClick(pEdit, Qt::Key_Return);
  EXPECT_EQ(pExposure->GetValue(), 2500);
  QTest::keyClick(pEdit, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(pEdit, QString::number(static_cast<int64_t>(pExposure->GetMax()) * 10 + 5));
  QTest::keyClick(pEdit, Qt::Key_Return);
  EXPECT_EQ(pExposure->GetValue(), 2500) << "no digit is left out in silence";
  EXPECT_NE(GetText("CameraError").find(" is out of range. Enter a number from "), std::string::npos)
    << GetText("CameraError");
  Press("StartStop");
  QWidget *pWidth = Find<QWidget>("Width");
  QTest::keyClick(pWidth, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(pWidth, "101");
  QTest::keyClick(pWidth, Qt::Key_Return);
  EXPECT_TRUE(Find<QLabel>("CameraError")->text().startsWith("Width: ")) << GetText("CameraError");
}

TEST_F(MainWindow, ZoomsWithTheWheelAndReadsPixelsWithMouseAndKeys)
{
  ShowWindow();
  ASSERT_TRUE(WaitPicture());
  Press("StartStop");
  CImageView *pView = GetView();
  const double dFitted = pView->GetTransform().GetScale();
  QWheelEvent wheel(QPointF(pView->rect().center()), pView->mapToGlobal(pView->rect().center()), QPoint(),
                    QPoint(0, 120), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(pView, &wheel);
  EXPECT_NEAR(pView->GetTransform().GetScale(), dFitted * 1.25, 1e-9);
  Key(Qt::Key_1, Qt::ControlModifier);
  EXPECT_EQ(pView->GetTransform().GetScale(), 1.0);
  QMouseEvent move(QEvent::MouseMove, pView->GetTransform().ToView({10.5, 20.5}), Qt::NoButton, Qt::NoButton,
                   Qt::NoModifier);
  QApplication::sendEvent(pView, &move);
  EXPECT_TRUE(WaitText("Pixel", "x 10  y 20  "));
  pView->setFocus();
  QTest::keyClick(pView, Qt::Key_Right, Qt::ShiftModifier);
  EXPECT_TRUE(WaitText("Pixel", "x 20  y 20  "));
  QTest::keyClick(pView, Qt::Key_Up);
  EXPECT_TRUE(WaitText("Pixel", "x 20  y 19  "));
  QTest::keyClick(pView, Qt::Key_Down);
  QTest::keyClick(pView, Qt::Key_Left);
  EXPECT_TRUE(WaitText("Pixel", "x 19  y 20  "));
  const QPoint ptFrame = pView->GetTransform().ToView(QPointF(19, 20)).toPoint() - QPoint(3, 3);
  EXPECT_EQ(pView->grab().toImage().pixelColor(ptFrame), QColor(255, 200, 0))
    << "framed, for there is no pointer on it";
  QEvent leave(QEvent::Leave);
  QApplication::sendEvent(pView, &leave);
  EXPECT_EQ(GetText("Pixel").substr(0, 10), "x 19  y 20") << "the pointer has not been there";
  Key(Qt::Key_0, Qt::ControlModifier);
  EXPECT_TRUE(pView->GetTransform().IsFitted());

  const auto DoubleClick = [pView] {
    QTest::mouseDClick(pView, Qt::LeftButton, Qt::NoModifier, pView->rect().center());
  };
  DoubleClick();
  EXPECT_EQ(pView->GetTransform().GetScale(), 1.0);
  TriggerAction("Zoom in");
  TriggerAction("Zoom in");
  TriggerAction("Zoom out");
  EXPECT_NEAR(pView->GetTransform().GetScale(), 1.25, 1e-9);
  DoubleClick();
  EXPECT_TRUE(pView->GetTransform().IsFitted());
}

TEST_F(MainWindow, DraggingMovesTheImageAndTheOtherButtonDoesNothing)
{
  ShowWindow();
  ASSERT_TRUE(WaitPicture());
  Press("StartStop");
  CImageView *pView = GetView();
  for (int nStep = 0; nStep < 12; ++nStep) {
    TriggerAction("Zoom in"); // until it is larger than the view
  }
  const auto Drag = [pView](Qt::MouseButton eButton) {
    const QPointF ptFrom = pView->rect().center();
    for (const auto &[eType, ptAt] : {std::pair(QEvent::MouseButtonPress, ptFrom),
                                      {QEvent::MouseMove, ptFrom + QPointF(7, 5)},
                                      {QEvent::MouseButtonRelease, ptFrom + QPointF(7, 5)}}) {
      QMouseEvent event(eType, ptAt, eButton, eType == QEvent::MouseButtonRelease ? Qt::NoButton : eButton,
                        Qt::NoModifier);
      QApplication::sendEvent(pView, &event);
    }
  };
  const QPointF ptBefore = pView->GetTransform().GetTarget().topLeft();
  Drag(Qt::RightButton);
  EXPECT_EQ(pView->GetTransform().GetTarget().topLeft(), ptBefore);
  Drag(Qt::LeftButton);
  EXPECT_EQ(pView->GetTransform().GetTarget().topLeft(), ptBefore + QPointF(7, 5));
  EXPECT_FALSE(pView->GetMarks().HasLine() || !pView->GetMarks().GetRegion().isEmpty());
}

TEST_F(MainWindow, MarksOverexposedPixelsOnRequest)
{
  ShowWindow();
  FindSceneControl(GetCamera())->SetIllumination(2.0);
  const auto HasMark = [this] {
    const QImage imgPicture = GetView()->GetPicture();
    return !imgPicture.isNull() && imgPicture.pixel(imgPicture.rect().center()) == OVEREXPOSED;
  };
  QTest::qWait(100);
  EXPECT_FALSE(HasMark());
  QApplication::setActiveWindow(m_pWindow.get());
  // Where a number field has the focus, too, which would go to the end of its line.
  QTest::keyClick(Find<QDoubleSpinBox>("ExposureTime"), Qt::Key_E, Qt::ControlModifier);
  EXPECT_TRUE(QTest::qWaitFor(HasMark));
}

TEST_F(MainWindow, PlotsSomeFramesWhileTheirTabIsShown)
{
  ShowWindow();
  QSignalSpy spy(m_pWindow.get(), &CMainWindow::SigPlotted);
  ASSERT_TRUE(QTest::qWaitFor([&] { return spy.count() >= 2; }));
  EXPECT_LT(spy.count(), 10) << "a few times a second";
  Find<QTabWidget>("Tabs")->setCurrentIndex(1);
  QTest::qWait(100);
  spy.clear();
  QTest::qWait(600);
  EXPECT_EQ(spy.count(), 0);
}

TEST_F(MainWindow, SceneControlsAreForCamerasThatHaveThem)
{
  ShowWindow();
  EXPECT_TRUE(Find<QWidget>("LensCap")->isVisible());
  EXPECT_TRUE(Find<QWidget>("Illumination")->isVisible());
  Key(Qt::Key_L, Qt::AltModifier);
  EXPECT_TRUE(QTest::qWaitFor([this] { return FindSceneControl(GetCamera())->IsLensCapOn(); }));

  CFaultyCamera::SFaults stFaults;
  stFaults.bHasNoSceneControl = true;
  ShowWindow(MakeFaulty(stFaults));
  EXPECT_FALSE(Find<QWidget>("LensCap")->isVisible());
  EXPECT_FALSE(Find<QWidget>("Illumination")->isVisible());
}

TEST_F(MainWindow, AsksTheUserToCoverTheLensOfARealCamera)
{
  CFaultyCamera::SFaults stFaults;
  stFaults.bHasNoSceneControl = true;
  m_stPlugin.strModule = FAKE_MODULE; // corrects from the first frame on
  ShowWindow(MakeFaulty(stFaults));
  CModalAnswerer answerer;
  Press("Measure");
  EXPECT_EQ(answerer.GetMessages(),
            QStringList({"Cover the lens, then press OK.",
                         "Uncover the lens and show it the evenly lit target, then press OK."}));
  EXPECT_NE(GetText("Verdict"), "Not measured");
}

TEST_F(MainWindow, FramesThatTheCameraLostAreCountedWithTheReason)
{
  CFaultyCamera::SFaults stFaults;
  stFaults.pLost = std::make_shared<std::atomic<bool>>(false);
  stFaults.bUnusableFrames = true;
  ShowWindow(MakeFaulty(stFaults));
  const QLabel *pDropped = Find<QLabel>("Dropped");
  EXPECT_TRUE(QTest::qWaitFor([&] { return pDropped->toolTip().contains(" in a format that cannot be received"); }))
    << pDropped->toolTip().toStdString();
  EXPECT_NE(pDropped->text().toStdString(), "dropped 0");
}

TEST_F(MainWindow, SaysWhenTheCameraDeliversNothing)
{
  CFaultyCamera::SFaults stFaults;
  stFaults.bDeliversNothing = true;
  ShowWindow(MakeFaulty(stFaults));
  EXPECT_EQ(GetText("Correction"), "no frame yet");
  for (const auto fnSlot :
       {&CMainWindow::SlotSaveImage, &CMainWindow::SlotSaveSequence}) { // a box would hold the test up
    (m_pWindow.get()->*fnSlot)();
  }
  EXPECT_TRUE(WaitText("CameraError", "No frame for "));
}

TEST_F(MainWindow, ALostCameraIsSaidToBeLostAndOpenedAgainWhenItAnswers)
{
  auto pLost = std::make_shared<std::atomic<bool>>(false);
  std::atomic<int> nOpened{0}; // on another thread
  std::atomic<int> nRefused{0};
  ShowWindow([&](const SCameraOptions &) -> OpenedCamera {
    if (*pLost && nRefused == 0) {
      ++nRefused;
      return ffc::Failure("camera: none answers");
    }
    ++nOpened;
    CFaultyCamera::SFaults stFaults;
    stFaults.pLost = pLost = std::make_shared<std::atomic<bool>>(false);
    return std::make_unique<CFaultyCamera>("Mono12", stFaults);
  });
  ASSERT_TRUE(WaitPicture());
  *pLost = true;
  EXPECT_TRUE(WaitText("Correction", "NOT corrected: the camera is lost"));
  EXPECT_TRUE(WaitText("CameraError", "The camera is lost."));
  EXPECT_TRUE(QTest::qWaitFor([&] { return nOpened == 2; }, 20000));
  EXPECT_EQ(nRefused, 1);
  EXPECT_TRUE(WaitText("Correction", "raw"));
  EXPECT_FALSE(Find<QLabel>("CameraError")->isVisible());
  EXPECT_TRUE(GetCamera().IsStreaming());
}

TEST_F(MainWindow, ALostCameraIsNotTakenFromUnderAQuestion)
{
  auto pLost = std::make_shared<std::atomic<bool>>(false);
  std::atomic<int> nAsked{0};
  ShowWindow([&](const SCameraOptions &) -> OpenedCamera {
    ++nAsked;
    CFaultyCamera::SFaults stFaults;
    stFaults.pLost = pLost;
    return std::make_unique<CFaultyCamera>("Mono12", stFaults);
  });
  QDialog question(m_pWindow.get());
  question.setModal(true);
  question.show();
  *pLost = true;
  EXPECT_TRUE(WaitText("CameraError", "The camera is lost."));
  QTest::qWait(1200); // the next slow look
  EXPECT_EQ(nAsked, 1);
}

TEST_F(MainWindow, GivesTheSettingsOfAnInterruptedAcquisitionBack)
{
  m_stCamera.eMode = ECorrectionMode::FlatField;
  ShowWindow();
  GenApi::INodeMap &map = *GetCamera().GetDeviceNodeMap();
  auto *pGain = dynamic_cast<GenApi::IFloat *>(map.GetNode("Gain"));
  const auto Run = [&](const char *pCommand) {
    dynamic_cast<GenApi::IEnumeration *>(map.GetNode("UserSetSelector"))->FromString("UserSet0");
    dynamic_cast<GenApi::ICommand *>(map.GetNode(pCommand))->Execute();
  };
  Press("StartStop");
  pGain->SetValue(6);
  Run("UserSetSave");
  pGain->SetValue(0);
  Press("StartStop");
  CModalAnswerer answerer;
  TriggerAction("Restore settings (UserSet0)");
  EXPECT_EQ(pGain->GetValue(), 6);
  EXPECT_TRUE(GetCamera().IsStreaming()) << "as before";
  ASSERT_EQ(answerer.GetMessages().size(), 1);
  EXPECT_TRUE(answerer.GetMessages()[0].startsWith("The camera has the settings of UserSet0 again:"));
  EXPECT_TRUE(answerer.GetMessages()[0].contains("Gain: 0 -> 6"));
  TriggerAction("Restore settings (UserSet0)");
  EXPECT_EQ(answerer.GetMessages().size(), 2);
}

TEST_F(MainWindow, ARecordingThatTheUserHasChosenStaysWhenCamerasAreLookedForAndNoOtherIsChosen)
{
  const QString strFolder = m_folder.filePath("recorded");
  ASSERT_TRUE(QDir().mkpath(strFolder));
  QImage imgFrame(64, 48, QImage::Format_Grayscale8);
  imgFrame.fill(90);
  for (const char *pName : {"bright_1", "bright_2", "bright_3", "bright_4"}) {
    ASSERT_TRUE(imgFrame.save(QStringLiteral("%1/%2.png").arg(strFolder, QLatin1String(pName))));
  }
  ShowWindow([this](const SCameraOptions &stOptions) {
    return stOptions.strReplayFolder.empty() ? OpenSimulated(stOptions) : OpenCamera(stOptions);
  });
  QComboBox *pChooser = Find<QComboBox>("CameraChooser");
  const int nRecorded = pChooser->count() - 1;
  const auto Choose = [&](const QString &strChosen) {
    const CModalAnswerer answerer(strChosen);
    emit pChooser->activated(nRecorded);
  };
  Choose(QString());
  EXPECT_EQ(pChooser->currentText().toStdString(), "Mono12 (as started)") << "no folder was named";
  EXPECT_TRUE(GetCamera().IsStreaming());
  Choose(strFolder);
  ASSERT_TRUE(WaitText("Shape", "64 x 48 Mono8"));
  Find<QMenu>("Presets")->aboutToShow();
  EXPECT_EQ(Find<QMenu>("Presets")->actions().size(), 1) << "its settings are what they are";
  Choose(QString());
  Key(Qt::Key_F6, Qt::NoModifier);
  EXPECT_GE(pChooser->count(), nRecorded + 1);
  EXPECT_EQ(pChooser->currentText().toStdString(), "Recorded frames...");
  EXPECT_TRUE(GetCamera().IsStreaming());
  QComboBox *pFormat = Find<QComboBox>("RecordedFormat");
  pFormat->setCurrentIndex(pFormat->findText("BayerRG8"));
  emit pFormat->activated(pFormat->currentIndex());
  EXPECT_TRUE(WaitText("Shape", "64 x 48 BayerRG8")) << "the same recording";
}

TEST_F(MainWindow, ACameraThatDoesNotStartSaysWhy)
{
  CFaultyCamera::SFaults stFaults;
  stFaults.bRefusesToStart = true;
  ShowWindow(MakeFaulty(stFaults));
  EXPECT_EQ(GetText("CameraError"), "The cable is out");
}

TEST_F(MainWindow, WithoutPlugInTheImageIsShownAndSaidToBeUncorrected)
{
  m_stPlugin.strModule = "/no/module/of/so/long/a/name/that/no/line/of/a/small/window/has/room/for/all/of/it/such.plx";
  ShowWindow();
  m_pWindow->resize(900, 600);
  ASSERT_TRUE(WaitPicture());
  EXPECT_TRUE(WaitText("Correction", "NOT corrected: "));
  EXPECT_NE(GetText("Correction").find("such.plx"), std::string::npos);
  EXPECT_EQ(Find<QLabel>("Correction")->toolTip(), Find<QLabel>("Correction")->text());
  QApplication::processEvents();
  EXPECT_EQ(m_pWindow->width(), 900) << "a long text is cut, and does not push the window off the screen";
  Press("ShowDialog");
  m_pWindow->SlotLoadLastCoefficients();
  m_pWindow->SlotMakeReference();
  EXPECT_EQ(CDialogDriver::FindDialog(), nullptr);
}

TEST_F(MainWindow, AnotherCameraTakesThePlaceOfTheFirst)
{
  ShowWindow();
  ASSERT_TRUE(WaitPicture());
  QComboBox *pChooser = Find<QComboBox>("CameraChooser");
  const int nColour = pChooser->findText("Simulated, colour");
  ASSERT_GE(nColour, 0);
  pChooser->setFocus();
  for (int nStep = pChooser->currentIndex(); nStep < nColour; ++nStep) {
    QTest::keyClick(pChooser, Qt::Key_Down);
  }
  EXPECT_TRUE(WaitText("Shape", "256 x 192 BayerRG8"));
  EXPECT_EQ(GetView()->GetPicture().format(), QImage::Format_RGB32) << "in colour";
  Key(Qt::Key_K, Qt::ControlModifier);
  EXPECT_EQ(GetView()->GetPicture().format(), QImage::Format_Grayscale8);
}

TEST_F(MainWindow, StatusLineAndTitleSayNothingOfACameraThatIsGone)
{
  ShowWindow([this](const SCameraOptions &stOptions) -> OpenedCamera {
    if (stOptions.strPixelFormat != "Mono12") {
      return ffc::Failure("It is somebody else's.");
    }
    return OpenSimulated(stOptions);
  });
  const char *const LABELS[] = {"Correction", "Rate", "Dropped", "Shape", "Pixel"};
  std::vector<std::string> listAtFirst;
  for (const char *pLabel : LABELS) {
    listAtFirst.push_back(CStatusLine(nullptr).findChild<QLabel *>(QLatin1String(pLabel))->text().toStdString());
  }
  ASSERT_TRUE(WaitText("Correction", "raw"));
  ASSERT_TRUE(WaitText("Shape", "256 x 192"));
  QTest::mouseMove(GetView(), GetView()->rect().center());
  ASSERT_TRUE(QTest::qWaitFor([this] { return !GetText("Pixel").empty() && !GetText("Dropped").empty(); }));
  SCameraOptions stOther = m_stCamera;
  stOther.strPixelFormat = "Mono8";
  ASSERT_EQ(m_pWindow->OpenCamera(stOther).GetError(), "It is somebody else's.");
  QTest::qWait(300); // no status comes later either
  std::vector<std::string> listNow;
  for (const char *pLabel : LABELS) {
    listNow.push_back(GetText(pLabel));
  }
  EXPECT_EQ(listNow, listAtFirst);
  EXPECT_EQ(m_pWindow->windowTitle().toStdString(), "");
}

TEST_F(MainWindow, FitsTheScreenWhenItIsShownFirst)
{
  EXPECT_EQ(CMainWindow::GetFirstSize({2560, 1400}), QSize(1360, 840));
  for (const QSize &szScreen : {QSize(1280, 770), QSize(1366, 738), QSize(683, 384), QSize(960, 540)}) {
    EXPECT_EQ(CMainWindow::GetFirstSize(szScreen).boundedTo(szScreen), CMainWindow::GetFirstSize(szScreen));
  }
  ShowWindow();
  const QSize szLeast = m_pWindow->minimumSizeHint();
  EXPECT_LE(szLeast.width(), 683) << "half of a small screen, drawn twice as large";
  EXPECT_LE(szLeast.height(), 384);
}

TEST_F(MainWindow, RemembersHowItWasLeft)
{
  ShowWindow();
  m_pWindow->setGeometry(40, 50, 1200, 790);
  Find<QTabWidget>("Tabs")->setCurrentIndex(1);
  Find<QDoubleSpinBox>("ShadingLimit")->setValue(0.35);
  m_pWindow->close();
  m_pWindow.reset();
  ShowWindow();
  EXPECT_EQ(m_pWindow->size(), QSize(1200, 790));
  EXPECT_EQ(Find<QTabWidget>("Tabs")->currentIndex(), 1);
  EXPECT_EQ(Find<QDoubleSpinBox>("ShadingLimit")->value(), 0.35);
}

TEST_F(MainWindow, EveryKeyStandsForOneThingInBothLanguages)
{
  for (const bool bChinese : {false, true}) {
    const CLanguage language(bChinese);
    m_stPlugin.bChinese = bChinese;
    ShowWindow();
    const QString strTitle =
      CDialogDriver::FindAnyDialog()->findChild<QAbstractButton *>("ExecuteShadingCorrection_Button")->text();
    EXPECT_EQ(strTitle.at(0).unicode() > 0x7F, bChinese) << strTitle.toStdString() << ", the plug-in's too";
    QStringList listTexts;
    for (const QAction *pAction : m_pWindow->menuBar()->actions()) {
      listTexts << pAction->text();
    }
    for (const QAbstractButton *pButton : m_pWindow->findChildren<QAbstractButton *>()) {
      // Tool buttons are menu entries, which have keys of their own.
      const bool bInWindow = pButton->window() == m_pWindow.get(); // the plug-in's dialog has keys of its own
      if (bInWindow && !pButton->inherits("QToolButton") && !pButton->text().isEmpty()) {
        EXPECT_FALSE(GetMnemonic(pButton->text()).isNull()) << pButton->text().toStdString();
        listTexts << pButton->text();
      }
    }
    for (const QLabel *pLabel : m_pWindow->findChildren<QLabel *>()) {
      if (pLabel->buddy() != nullptr) {
        listTexts << pLabel->text();
      }
    }
    const QTabWidget *pTabs = Find<QTabWidget>("Tabs");
    listTexts << pTabs->tabText(0) << pTabs->tabText(1);
    QMap<QChar, QString> mapKeys;
    for (const QString &strText : listTexts) {
      const QChar chKey = GetMnemonic(strText);
      ASSERT_FALSE(chKey.isNull()) << strText.toStdString();
      EXPECT_FALSE(mapKeys.contains(chKey)) << strText.toStdString() << " and " << mapKeys[chKey].toStdString();
      mapKeys.insert(chKey, strText);
    }
    EXPECT_GE(mapKeys.size(), 20);
  }
}

TEST_F(MainWindow, TheTabKeyReachesEveryControl)
{
  ShowWindow();
  Press("StartStop");
  QSet<QWidget *> setReached;
  GetView()->setFocus();
  for (int nStep = 0; nStep < 60; ++nStep) {
    QWidget *pFocus = QApplication::focusWidget();
    ASSERT_NE(pFocus, nullptr);
    setReached.insert(pFocus);
    QTest::keyClick(pFocus, Qt::Key_Tab);
  }
  for (const char *pName : {"CameraChooser", "StartStop", "ExposureTime", "Gain", "BlackLevel", "PixelFormat", "Width",
                            "Height", "LensCap", "TestChart", "Illumination", "ShowDialog"}) {
    EXPECT_TRUE(setReached.contains(Find<QWidget>(pName))) << pName;
  }
}
