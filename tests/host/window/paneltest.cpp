/// \file
/// Panels and boxes of the window by themselves, without a camera: what they say, and what they do with what is
/// entered.

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QSignalSpy>
#include <QSlider>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include <gtest/gtest.h>

#include "camera/iscenecontrol.h"
#include "flat/weightedflat.h"
#include "genapi/softwarenodemap/softwarenodemap.h"
#include "host/options/camerachoice.h"
#include "host/window/acquisitionprogress.h"
#include "host/window/dialognote.h"
#include "host/window/featurebrowser.h"
#include "host/window/featureedits.h"
#include "host/window/framesaving.h"
#include "host/window/imageview.h"
#include "host/window/mainwindow.h"
#include "host/window/recordingpanel.h"
#include "host/window/referencedialog.h"
#include "host/window/scenepanel.h"

using namespace ffc::host;
using ffc::camera::ISceneControl;
using ffc::flat::SWeightedFlat;
using ffc::frames::EAlignment;
using ffc::genapi::CSoftwareNodeMap;
using ffc::reference::ENoiseSource;

namespace {

/// All texts of a window, line by line.
QString ReadLabels(const QWidget &window)
{
  QStringList listTexts;
  for (const QLabel *pLabel : window.findChildren<QLabel *>()) {
    listTexts << pLabel->text();
  }
  return listTexts.join(QLatin1Char('\n'));
}

std::string Describe(EDialogAction eAction, const QString &strError, const QString &strFile = {})
{
  SDialogFacts stFacts;
  stFacts.stOutcome = {eAction, strError, strFile};
  return DescribeOutcome(stFacts).strText.toStdString();
}

/// Remembers what it is told.
class CScene final : public ISceneControl {
public:
  void SetLensCap(bool bCovered) override { m_bCap = bCovered; }
  bool IsLensCapOn() const override { return m_bCap; }
  bool CanArrange() const override { return true; }
  void SetScene(EScene eScene) override { m_eScene = eScene; }
  void SetIllumination(double dLevel) override { m_dLevel = dLevel; }
  void SetPurpose(EPurpose ePurpose) override { m_ePurpose = ePurpose; }

  bool m_bCap = true;
  EScene m_eScene = EScene::Target;
  double m_dLevel = 1;
  EPurpose m_ePurpose = EPurpose::Acquisition;
};

/// Fields, the features that they show, and what they have said against a value last.
class FeatureEdits : public testing::Test {
protected:
  void Listen(CFeatureEdit &edit)
  {
    QObject::connect(&edit, &CFeatureEdit::SigRefused, [this](const QString &strReason) { m_strRefused = strReason; });
  }

  CSoftwareNodeMap m_map;
  QString m_strRefused;
};

} // namespace

TEST(RecordingPanel, ShowsAsWhatARecordingIsPlayedAndAsksForWhatTheUserChooses)
{
  CRecordingPanel panel;
  QComboBox &format = *panel.findChild<QComboBox *>(QStringLiteral("RecordedFormat"));
  QComboBox &alignment = *panel.findChild<QComboBox *>(QStringLiteral("RecordedAlignment"));
  SCameraOptions stCamera;
  panel.ShowCamera(stCamera, "Mono12");
  EXPECT_TRUE(panel.isHidden()) << "no recording";
  stCamera.strReplayFolder = "recorded";
  panel.ShowCamera(stCamera, "Mono8");
  EXPECT_FALSE(panel.isHidden());
  EXPECT_EQ(format.currentText().toStdString(), "guessed: Mono8");
  EXPECT_FALSE(alignment.isEnabled()) << "a byte has no room to be aligned in";
  stCamera.strPixelFormat = "Mono12";
  for (const auto &[eAlignment, nItem] : {std::pair(EAlignment::Right, 1), {EAlignment::Left, 2}}) {
    stCamera.eAlignment = eAlignment;
    panel.ShowCamera(stCamera, "Mono12");
    EXPECT_EQ(format.currentText().toStdString(), "Mono12");
    EXPECT_EQ(alignment.currentIndex(), nItem);
    EXPECT_TRUE(alignment.isEnabled());
  }
  std::optional<EAlignment> eChosen;
  QString strChosen;
  QObject::connect(&panel, &CRecordingPanel::SigChosen,
                   [&](const QString &strPixelFormat, std::optional<EAlignment> eAlignment) {
                     strChosen = strPixelFormat;
                     eChosen = eAlignment;
                   });
  const std::optional<EAlignment> aeExpected[] = {std::nullopt, EAlignment::Right, EAlignment::Left};
  for (int nItem = 0; nItem < 3; ++nItem) {
    alignment.setCurrentIndex(nItem);
    emit alignment.activated(nItem);
    EXPECT_EQ(eChosen, aeExpected[nItem]) << nItem;
    EXPECT_EQ(strChosen.toStdString(), "Mono12");
  }
  panel.ShowCamera(stCamera, "RGB8");
  EXPECT_EQ(format.count(), 1) << "none but the guess";
  EXPECT_FALSE(alignment.isEnabled());
}

TEST(ReferenceDialog, TellsWhatTheWeightsAreWorthAndHowTheNoiseIsKnown)
{
  SWeightedFlat stFlat;
  stFlat.nFrames = 1;
  stFlat.dPlainNoise = 1;
  for (const auto &[eNoise, dNoise, pNoise, pWorth] :
       {std::tuple(ENoiseSource::Differences, 0.5, "the differences of the frames", "\n4\n"),
        {ENoiseSource::Camera, 0.5, "camera data", "\n4\n"},
        {ENoiseSource::PhotonTransfer, 0.1, "photon transfer within the one frame", "\n100\n"},
        {ENoiseSource::HalfDetail, 0.01, "half of the fine detail of the one frame", "\nmore than 999\n"},
        {ENoiseSource::AllDetail, 0.0, "all fine detail of the one frame", "\nmore than 999\n"}}) {
    stFlat.eNoise = eNoise;
    stFlat.dNoise = dNoise;
    const CReferenceDialog dialog(stFlat, nullptr);
    const QString strTexts = ReadLabels(dialog) + QLatin1Char('\n');
    EXPECT_TRUE(strTexts.contains(QStringLiteral("The noise is known from ") + QLatin1String(pNoise)))
      << strTexts.toStdString();
    EXPECT_TRUE(strTexts.contains(QLatin1String(pWorth))) << strTexts.toStdString();
  }
}

TEST(DialogNote, TellsWhatTheDialogIsSilentAbout)
{
  EXPECT_EQ(Describe(EDialogAction::LoadFile, "no room"), "NOT loaded: no room");
  EXPECT_EQ(Describe(EDialogAction::LoadFlash, "no flash"), "NOT loaded from the camera: no flash");
  EXPECT_EQ(Describe(EDialogAction::LoadFlash, {}), "Loaded from the camera's flash");
  EXPECT_EQ(Describe(EDialogAction::AcquireDark, "no frame"), "") << "the plug-in's own box has told that";
  EXPECT_EQ(Describe(EDialogAction::AcquireDark, {}), "");
  EXPECT_EQ(Describe(EDialogAction::LoadFile, {}), "") << "the user has chosen none";
  EXPECT_EQ(Describe(EDialogAction::SaveFile, {}), "");
}

TEST(DialogNote, AFileThatIsMissingOrEmptyAfterSavingWasNotSaved)
{
  const QTemporaryDir folder;
  const QString strFile = folder.filePath(QStringLiteral("flat.ffc"));
  QFile file(strFile);
  for (const char *pContent : {"", "gains"}) {
    const std::string strMissing = Describe(EDialogAction::SaveFile, {}, strFile);
    EXPECT_EQ(strMissing.find("NOT saved: "), 0U) << strMissing;
    EXPECT_NE(strMissing.find("is missing or empty"), std::string::npos) << strMissing;
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(pContent) >= 0);
    file.close();
  }
  const std::string strSaved = Describe(EDialogAction::SaveFile, {}, strFile);
  EXPECT_NE(strSaved.find("flat.ffc (5 bytes)"), std::string::npos) << strSaved;
}

TEST(DialogNote, OnlyACorrectionThatThePluginDoesNotKnowIsAWarning)
{
  for (const char *pMode : {"", "FlatFieldCorrection", "TailorFlatFieldCorrection"}) {
    EXPECT_EQ(DescribeMode(QLatin1String(pMode)).strText.toStdString(), "") << pMode;
  }
  EXPECT_TRUE(DescribeMode(QStringLiteral("LensCorrection")).bWarning);
  SDialogFacts stFacts;
  stFacts.bCancelled = true;
  stFacts.bPreviewOffered = true;
  EXPECT_TRUE(DescribeOutcome(stFacts).strText.endsWith("The coefficients from before are kept: tick Preview to use "
                                                        "them."));
}

TEST(ImageView, WithoutAPictureNothingIsMarkedAndTheKeysBeginInTheMiddleOfOne)
{
  CImageView view;
  view.resize(200, 150);
  view.SetTool(EImageTool::Region);
  QTest::mousePress(&view, Qt::LeftButton, Qt::NoModifier, QPoint(20, 20));
  QTest::mouseRelease(&view, Qt::LeftButton, Qt::NoModifier, QPoint(80, 80));
  EXPECT_TRUE(view.GetMarks().GetRegion().isEmpty());
  QTest::keyClick(&view, Qt::Key_Right);
  EXPECT_EQ(view.GetPixel(), QPoint(-1, -1));
  view.SetPicture(QImage(21, 11, QImage::Format_Grayscale8));
  QTest::keyClick(&view, Qt::Key_A);
  EXPECT_EQ(view.GetPixel(), QPoint(-1, -1)) << "no key of the image's";
  QTest::keyClick(&view, Qt::Key_Right, Qt::ControlModifier);
  EXPECT_EQ(view.GetPixel(), QPoint(11, 5)) << "there is no divider to move";
}

TEST(FrameSaving, FramesThatAreNoSensorsAreRefusedAndLeaveNoFile)
{
  const QTemporaryDir folder;
  SFrameCopy stColor;
  stColor.nWidth = 1;
  stColor.nHeight = 1;
  stColor.nPixelFormat = 0x02180014; // RGB8
  stColor.listBytes = {1, 2, 3};
  const QString strFile = folder.filePath(QStringLiteral("image.png"));
  const std::string strError = SaveFrameCopy(strFile, stColor, {}).GetError();
  EXPECT_EQ(strError.find("Frames of this pixel format cannot be saved"), 0U) << strError;
  EXPECT_FALSE(QFile::exists(strFile));
}

TEST(FrameSaving, FramesThatChangeTheirSizeEndTheSequence)
{
  const QTemporaryDir folder;
  QWidget window;
  CFramePipeline pipeline;
  const std::vector<uint8_t> listSamples(64);
  ffc::camera::SCameraFrame stFrame{listSamples.data(), 64, 8, 8, 0x01080001, 0};
  QTimer camera;
  QObject::connect(&camera, &QTimer::timeout, [&] {
    pipeline.Receive(stFrame);
    stFrame.nWidth = 4;
    stFrame.nSize = 32;
    ++stFrame.nFrameId;
  });
  camera.start(1);
  const QString strFile = folder.filePath(QStringLiteral("all.ser"));
  const auto saved = SaveSequence(strFile, 3, pipeline, {}, &window);
  EXPECT_EQ(saved.GetError(), "The frames changed their size on the way: save the sequence again.");
  EXPECT_FALSE(QFile::exists(strFile));
}

TEST(ScenePanel, SetsLensCapChartAndLampAndPutsThemBackAfterAMeasurement)
{
  CScene scene;
  CScenePanel panel;
  panel.SetScene(&scene);
  auto *pCap = panel.findChild<QCheckBox *>(QStringLiteral("LensCap"));
  auto *pChart = panel.findChild<QCheckBox *>(QStringLiteral("TestChart"));
  EXPECT_TRUE(pCap->isChecked()) << "as the camera has it";
  pChart->setChecked(true);
  EXPECT_EQ(scene.m_eScene, ISceneControl::EScene::TestChart);
  panel.findChild<QSlider *>(QStringLiteral("Illumination"))->setValue(150);
  EXPECT_EQ(scene.m_dLevel, 1.5);
  EXPECT_TRUE(ReadLabels(panel).contains("150 %")) << ReadLabels(panel).toStdString();
  panel.Arrange(false);
  EXPECT_EQ(scene.m_eScene, ISceneControl::EScene::Target);
  EXPECT_EQ(scene.m_ePurpose, ISceneControl::EPurpose::Measurement);
  EXPECT_FALSE(scene.m_bCap);
  panel.Restore();
  EXPECT_EQ(scene.m_eScene, ISceneControl::EScene::TestChart);
  EXPECT_EQ(scene.m_ePurpose, ISceneControl::EPurpose::Acquisition);
  EXPECT_TRUE(scene.m_bCap);
  pChart->setChecked(false);
  EXPECT_EQ(scene.m_eScene, ISceneControl::EScene::Target);
}

TEST_F(FeatureEdits, AFeatureOfAnotherKindIsNotSetAndSaidToBeOne)
{
  m_map.AddInteger("Gain", 3);
  m_map.AddFloat("Width", 4.5);
  CFloatEdit number(QStringLiteral("Gain"), QString(), 1, nullptr);
  CIntegerEdit whole(QStringLiteral("Width"), QString(), nullptr);
  CEnumerationEdit choice(QStringLiteral("Gain"), nullptr);
  const std::string strEnd = " is of another kind in this camera: it cannot be set here.";
  for (CFeatureEdit *pEdit : std::initializer_list<CFeatureEdit *>{&number, &whole, &choice}) {
    Listen(*pEdit);
    pEdit->SetNodeMap(&m_map);
  }
  number.findChild<QDoubleSpinBox *>()->setValue(7);
  EXPECT_EQ(m_strRefused.toStdString(), "Gain" + strEnd);
  whole.findChild<QSpinBox *>()->setValue(7);
  EXPECT_EQ(m_strRefused.toStdString(), "Width" + strEnd);
  m_strRefused.clear();
  emit choice.findChild<QComboBox *>()->activated(0);
  EXPECT_EQ(m_strRefused.toStdString(), "Gain" + strEnd);
  EXPECT_EQ(ReadFeatureState(m_map, "Gain").nValue, 3);
  EXPECT_EQ(ReadFeatureState(m_map, "Width").dValue, 4.5);
}

TEST_F(FeatureEdits, AnEntryIsWrittenAndANumberOutOfRangeIsSaidWithTheRange)
{
  m_map.AddEnumeration("PixelFormat").Entry("Mono8", 1).Entry("Mono12", 5);
  m_map.AddInteger("Width", 64).Range(32, 256);
  CEnumerationEdit choice(QStringLiteral("PixelFormat"), nullptr);
  choice.SetNodeMap(&m_map);
  QComboBox &box = *choice.findChild<QComboBox *>();
  box.setCurrentIndex(1);
  emit box.activated(1);
  EXPECT_EQ(ReadFeatureState(m_map, "PixelFormat").strText.toStdString(), "Mono12");
  CIntegerEdit whole(QStringLiteral("Width"), QString(), nullptr);
  Listen(whole);
  whole.SetNodeMap(&m_map);
  QSpinBox &number = *whole.findChild<QSpinBox *>();
  number.findChild<QLineEdit *>()->setText(QStringLiteral("9999"));
  QTest::keyClick(&number, Qt::Key_Return);
  EXPECT_EQ(m_strRefused.toStdString(), "Width: 9999 is out of range. Enter a number from 32 to 256.");
  EXPECT_EQ(ReadFeatureState(m_map, "Width").nValue, 64);
  number.findChild<QLineEdit *>()->setText(QStringLiteral("-"));
  m_strRefused.clear();
  QTest::keyClick(&number, Qt::Key_Return);
  EXPECT_EQ(m_strRefused.toStdString(), "") << "what is no number is none out of range";
  whole.SetNodeMap(nullptr);
  EXPECT_FALSE(number.isEnabled());
  EXPECT_EQ(number.toolTip().toStdString(), "No camera");
  number.setValue(128);
  EXPECT_EQ(ReadFeatureState(m_map, "Width").nValue, 64) << "it shows no camera's feature any more";
}

TEST_F(FeatureEdits, OnlyAFeatureWithAChoiceOfValuesIsOffered)
{
  m_map.AddInteger("Width", 64).Range(32, 256);
  m_map.AddInteger("Height", 64).Range(64, 64);
  m_map.AddInteger("OffsetX", 0).Range(0, 0);
  m_map.AddFloat("Gain", 1);
  m_map.AddInteger("Broken", 1)
    .Range([]() -> int64_t { throw GenICam::TimeoutException("no answer", __FILE__, __LINE__); }, 8);
  const auto IsOffered = [this](const char *pName) {
    CIntegerEdit edit(QLatin1String(pName), QString(), nullptr);
    edit.SetNodeMap(&m_map);
    return edit.IsOffered();
  };
  EXPECT_TRUE(IsOffered("Width"));
  EXPECT_FALSE(IsOffered("Height"));
  EXPECT_TRUE(IsOffered("OffsetX")) << "there is a choice as soon as the region is smaller";
  EXPECT_TRUE(IsOffered("Gain"));
  EXPECT_FALSE(IsOffered("Broken"));
  EXPECT_FALSE(IsOffered("Missing"));
}

TEST(FeatureBrowser, HasWhatATextCanHoldAndSaysWhatIsNotAvailableNow)
{
  CSoftwareNodeMap map;
  auto &gain = map.AddInteger("GainRaw", 3);
  auto &hidden = map.AddInteger("GainAuto", 1);
  map.AddInteger("_maker", 1).Access(GenApi::RO);
  map.AddCommand("GainReset");
  map.AddRegister("GainTable", 16);
  CFeatureBrowser browser(map, nullptr);
  QTreeWidget &tree = *browser.findChild<QTreeWidget *>();
  ASSERT_EQ(tree.topLevelItemCount(), 2) << "Gain, and what begins with no word";
  const QTreeWidgetItem *pMaker = tree.findItems("_maker", Qt::MatchExactly).value(0);
  ASSERT_NE(pMaker, nullptr);
  EXPECT_EQ(pMaker->child(0)->toolTip(1).toStdString(), "Cannot be written now");
  QTreeWidgetItem *pGroup = tree.findItems("Gain", Qt::MatchExactly).value(0);
  ASSERT_NE(pGroup, nullptr);
  ASSERT_EQ(pGroup->childCount(), 2) << "neither the command nor the register";

  QSignalSpy spy(&browser, &CFeatureBrowser::SigWritten);
  hidden.Access(GenApi::NA);
  QTreeWidgetItem *pGain = pGroup->child(1);
  pGain->setText(1, "5");
  EXPECT_EQ(gain.Peek(), 5);
  EXPECT_EQ(spy.count(), 1);
  EXPECT_EQ(pGroup->child(0)->text(1).toStdString(), "(not available now)") << "all was read anew";
  gain.Poke(8);
  pGain->setText(1, "8");
  EXPECT_EQ(spy.count(), 1) << "which it is already";
  pGroup->setText(0, "Gains");
  EXPECT_EQ(spy.count(), 1) << "the name of a group is nothing of the camera's";

  QLineEdit &search = *browser.findChild<QLineEdit *>();
  search.setClearButtonEnabled(false); // the toolkit forgets its animation when the field goes before its end
  search.setText("raw");
  EXPECT_TRUE(pGroup->isExpanded());
  EXPECT_TRUE(pGroup->child(0)->isHidden());
  EXPECT_FALSE(pGain->isHidden());
  EXPECT_TRUE(pMaker->isHidden());
  search.clear();
  EXPECT_FALSE(pGroup->isExpanded());
  EXPECT_FALSE(pMaker->isHidden());
}

TEST(AcquisitionProgress, CountsFramesOfAnUnknownNumberAndCancelsOnce)
{
  QWidget window;
  CAcquisitionProgress progress(&window);
  QSignalSpy counted(&progress, &CAcquisitionProgress::SigCounted);
  QSignalSpy cancelled(&progress, &CAcquisitionProgress::SigCancelled);
  progress.CountAcquiredFrame();
  EXPECT_EQ(counted.count(), 0) << "of no acquisition";
  progress.BeginAcquisition();
  QTimer::singleShot(0, &progress, [&] { progress.CountAcquiredFrame(); });
  progress.CountAcquiredFrame();
  EXPECT_EQ(counted.count(), 1) << "what comes while events pass is not one more";
  auto *pBox = window.findChild<QProgressDialog *>(QStringLiteral("AcquisitionProgress"));
  ASSERT_NE(pBox, nullptr);
  EXPECT_EQ(pBox->labelText().toStdString(), "Taking frames: 1");
  EXPECT_EQ(pBox->maximum(), 0) << "nobody knows how many there will be";
  pBox->findChild<QPushButton *>()->click();
  progress.CountAcquiredFrame();
  EXPECT_TRUE(progress.IsCancelled());
  EXPECT_EQ(cancelled.count(), 1);
  EXPECT_EQ(pBox->labelText().toStdString(), "Taking frames: 1");
  progress.EndAcquisition();
  EXPECT_EQ(window.findChild<QProgressDialog *>(), nullptr);
}

TEST(Exposure, EachWayNotToFindItIsToldWithWhatToDo)
{
  using EOutcome = CExposureHelper::EOutcome;
  const auto Describe = [](EOutcome eOutcome) {
    return CMainWindow::DescribeExposure({eOutcome, 1000, 88.4}).toStdString();
  };
  for (const EOutcome eOutcome : {EOutcome::Wait, EOutcome::Write, EOutcome::Done}) {
    EXPECT_EQ(Describe(eOutcome), "");
  }
  EXPECT_EQ(Describe(EOutcome::TooDark), "The longest exposure reaches 88 % only: add light, or raise the gain.");
  EXPECT_EQ(Describe(EOutcome::TooBright),
            "The shortest exposure still gives 88 %: take light away, or lower the gain.");
  EXPECT_EQ(Describe(EOutcome::Unsteady).find("The image does not become steady, it is at 88 %"), 0U);
  EXPECT_EQ(Describe(EOutcome::NoFigures).find("Frames of this pixel format cannot be judged"), 0U);
}

TEST(CameraChoice, TheOneThatIsOpenStaysWhateverAnswers)
{
  std::vector<SCameraChoice> listChoices = ListCameraChoices({});
  const std::size_t nAll = listChoices.size();
  SCameraChoice stOpen = listChoices.back();
  stOpen.stCamera.strReplayFolder = "recorded";
  EXPECT_EQ(KeepChoice(listChoices, stOpen), static_cast<int>(nAll) - 1);
  EXPECT_EQ(listChoices.back().stCamera.strReplayFolder, "recorded") << "with the folder that was chosen";
  EXPECT_EQ(listChoices.size(), nAll);
  stOpen = {QStringLiteral("Maker Model (1)"), {}, false};
  stOpen.stCamera.strCameraId = "1";
  EXPECT_EQ(KeepChoice(listChoices, stOpen), 1) << "it does not answer any more, and is open all the same";
  EXPECT_EQ(listChoices[1].stCamera.strCameraId, "1");
  EXPECT_EQ(listChoices.size(), nAll + 1);
}
