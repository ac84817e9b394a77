/// \file
/// The plug-in's dialog beside the window: where it stands, and what the window says of what is done in it.

#include <functional>

#include <QAction>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMainWindow>

#include "frames/sidefile.h"
#include "host/dialogdriver/modalanswerer.h"
#include "host/options/cameraopening.h"
#include "host/window/dialogplace.h"
#include "host/window/imageview.h"
#include "tests/host/window/boxpresser.h"
#include "tests/host/window/windowfixture.h"

using ffc::camera::ECorrectionMode;
using namespace ffc::host;

namespace {

class PluginDialog : public WindowFixture {
protected:
  void ShowCorrected()
  {
    ShowWindow();
    ASSERT_TRUE(WaitText("Correction", "raw"));
    Correct();
    ASSERT_TRUE(WaitText("Correction", "corrected"));
  }

  /// Whether the dialog has the focus after an action. Where programs share a desktop another may take it at that very
  /// moment, so that none of this one's windows has it: then once more.
  static bool BringsDialogToTheFront(const std::function<void()> &fnAct)
  {
    bool bInFront = false;
    for (int nTry = 0; nTry < 5 && !bInFront; ++nTry) {
      fnAct();
      bInFront = QTest::qWaitFor([] { return QApplication::activeWindow() == CDialogDriver::FindDialog(); });
      if (QApplication::activeWindow() != nullptr) {
        break;
      }
    }
    return bInFront;
  }

  /// Evenly lit, with noise; a dark frame, twice the same, and bright ones that differ.
  void WriteRecording(int nBright)
  {
    for (int nFrame = 0; nFrame <= nBright; ++nFrame) {
      QImage imgFrame(128, 96, QImage::Format_Grayscale8);
      for (int nLine = 0; nLine < imgFrame.height(); ++nLine) {
        for (int nColumn = 0; nColumn < imgFrame.width(); ++nColumn) {
          const int nNoise = (nLine * 31 + nColumn * 17 + nFrame * 7) % 5;
          imgFrame.scanLine(nLine)[nColumn] = static_cast<uchar>(nFrame == 0 ? 2 + nNoise / 4 : 120 + nNoise);
        }
      }
      const QString strName = nFrame == 0 ? QStringLiteral("dark_0.png") : QStringLiteral("bright_%1.png").arg(nFrame);
      ASSERT_TRUE(imgFrame.save(m_folder.filePath(strName)));
      ASSERT_TRUE(nFrame > 0 || imgFrame.save(m_folder.filePath(QStringLiteral("dark_1.png"))));
    }
    m_stCamera.strReplayFolder = m_folder.path().toStdString();
    m_stCamera.strPixelFormat.clear();
  }

  QJsonObject SaveReport()
  {
    const CModalAnswerer answerer(m_folder.filePath(QStringLiteral("report.html")));
    Press("SaveReport");
    QFile file(m_folder.filePath(QStringLiteral("report.json")));
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
  }
};

QRect GetGlobal(const QWidget &widget)
{
  return {widget.mapToGlobal(QPoint(0, 0)), widget.size()};
}

} // namespace

TEST(DialogPlace, IsBesideTheWindowWhereThereIsRoom)
{
  const QRect rcScreen(0, 0, 2560, 1440);
  const QSize szDialog(460, 560);
  EXPECT_EQ(FindDialogPlace(rcScreen, {100, 50, 1280, 800}, {360, 100, 640, 700}, szDialog), QPoint(1387, 100));
  EXPECT_EQ(FindDialogPlace(rcScreen, {1200, 50, 1280, 800}, {1460, 100, 640, 700}, szDialog), QPoint(732, 100))
    << "to the left of it";
}

TEST(DialogPlace, CoversTheImageLeastOnASmallScreen)
{
  const QRect rcScreen(0, 0, 1280, 770);
  const QRect rcImage(260, 60, 640, 660);
  const QPoint ptPlace = FindDialogPlace(rcScreen, {0, 0, 1280, 770}, rcImage, {400, 560});
  EXPECT_EQ(ptPlace.x(), 880) << "over the panel beside the image";
  EXPECT_TRUE(rcScreen.contains(QRect(ptPlace, QSize(400, 560))));
  EXPECT_EQ(FindDialogPlace(rcScreen, {0, 0, 1280, 770}, rcImage, {2000, 2000}), QPoint(0, 0));
}

TEST_F(PluginDialog, BelongsToTheWindowAndStandsBesideTheImage)
{
  ShowWindow();
  m_pWindow->setGeometry(10, 20, 1000, 780);
  EXPECT_TRUE(BringsDialogToTheFront([this] { Press("ShowDialog"); }));
  QDialog *pDialog = CDialogDriver::FindDialog();
  ASSERT_NE(pDialog, nullptr);
  EXPECT_EQ(pDialog->parentWidget(), m_pWindow.get()) << "it stays above the window";
  EXPECT_FALSE(GetGlobal(*pDialog).intersects(GetGlobal(*m_pWindow->findChild<CImageView *>())));
}

TEST_F(PluginDialog, StaysWhereTheUserHasPutIt)
{
  ShowWindow();
  Press("ShowDialog");
  QDialog *pDialog = CDialogDriver::FindDialog();
  ASSERT_NE(pDialog, nullptr);
  pDialog->move(33, 44);
  m_pWindow->GetViewer()->HideDialog();
  Press("ShowDialog");
  EXPECT_EQ(pDialog->pos(), QPoint(33, 44));
}

TEST_F(PluginDialog, IsInFrontAgainAfterAnAcquisition)
{
  ShowWindow();
  ASSERT_TRUE(WaitText("Correction", "raw"));
  Press("ShowDialog");
  CDialogDriver driver = GetDriver();
  driver.SetFrameCount(2);
  EXPECT_TRUE(BringsDialogToTheFront([&] {
    QApplication::setActiveWindow(m_pWindow.get());
    EXPECT_EQ(driver.AcquireBright().strBox.toStdString(), "");
  }));
}

TEST_F(PluginDialog, NothingIsInFrontOfTheWindowOnceTheAcquisitionIsDone)
{
  ShowWindow();
  ASSERT_TRUE(WaitText("Correction", "raw"));
  Press("ShowDialog");
  const auto fnFind = [](const char *pName) {
    return CDialogDriver::FindDialog()->findChild<QAbstractButton *>(QLatin1String(pName));
  };
  QAbstractButton *pExecute = fnFind("ExecuteShadingCorrection_Button");
  int nDone = 0;
  bool bInFront = true;
  QObject::connect(fnFind("AcquisitionBrightFrame_Button"), &QAbstractButton::clicked, [&] {
    ++nDone;
    pExecute->click(); // no event has passed since the plug-in's own slot
    bInFront = m_pWindow->findChild<QWidget *>(QStringLiteral("AcquisitionProgress")) != nullptr;
  });
  CDialogDriver driver = GetDriver();
  driver.SetFrameCount(2);
  ASSERT_EQ(driver.AcquireBright().strBox.toStdString(), "");
  EXPECT_EQ(nDone, 1);
  EXPECT_FALSE(bInFront) << "its progress box";
  EXPECT_TRUE(WaitText("Correction", "corrected"));
}

TEST_F(PluginDialog, FiguresAreGreyAsSoonAsTheyBelongToOtherCoefficients)
{
  ShowCorrected();
  EXPECT_FALSE(Find<QAction>("SaveReportAction")->isEnabled()) << "nothing was measured";
  Key(Qt::Key_M, Qt::ControlModifier);
  ASSERT_EQ(GetText("Verdict").substr(0, 5), "PASS:");
  EXPECT_TRUE(Find<QWidget>("Figures")->isEnabled());
  EXPECT_TRUE(Find<QAction>("SaveReportAction")->isEnabled());
  ASSERT_EQ(GetDriver().AcquireBright().strBox.toStdString(), "");
  const std::string strVerdict = GetText("Verdict");
  EXPECT_EQ(strVerdict.substr(0, 12), "Measured on ");
  EXPECT_NE(strVerdict.find(", before a new acquisition: measure again."), std::string::npos) << strVerdict;
  EXPECT_NE(strVerdict.find("Then: PASS:"), std::string::npos);
  EXPECT_FALSE(Find<QWidget>("Figures")->isEnabled());
  EXPECT_FALSE(Find<QWidget>("SaveReport")->isEnabled());
  EXPECT_FALSE(Find<QAction>("SaveReportAction")->isEnabled());
  Key(Qt::Key_S, Qt::ControlModifier); // neither by its key: a file box would hold the test up
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(PluginDialog, FiguresAreGreyWhenTheFramesChangeTheirSize)
{
  ShowCorrected();
  Key(Qt::Key_M, Qt::ControlModifier);
  ASSERT_EQ(GetText("Verdict").substr(0, 5), "PASS:");
  Press("StartStop");
  dynamic_cast<GenApi::IInteger *>(GetCamera().GetDeviceNodeMap()->GetNode("Width"))->SetValue(128);
  Press("StartStop");
  EXPECT_TRUE(WaitText("Verdict", "Measured on "));
  EXPECT_NE(GetText("Verdict").find("before the frames became 128 x 192 Mono12"), std::string::npos);
  EXPECT_TRUE(WaitText("Correction", "NOT corrected: the frame is 128 x 192 Mono12, the coefficients are for 256 x 192 "
                                     "Mono12: acquire anew or load a file"));
}

TEST_F(PluginDialog, TellsWhatWasSavedAndLoadedAndNothingThatIsNotKnown)
{
  ShowCorrected();
  const QString strFile = m_folder.filePath(QStringLiteral("flat"));
  ASSERT_TRUE(GetDriver().SaveFile(strFile).bFileChosen);
  EXPECT_TRUE(QFile::exists(strFile + QStringLiteral(".ffc"))) << "a name without ending gets it";
  EXPECT_EQ(GetText("DialogNote").substr(0, 7), "Saved: ");
  EXPECT_NE(GetText("DialogNote").find("flat.ffc ("), std::string::npos);
  const auto side = ffc::frames::ReadSideFile(strFile + QStringLiteral(".ffc"));
  ASSERT_TRUE(side && side.GetValue()) << "beside it stands what it is for";
  EXPECT_EQ(side.GetValue()->nWidth, 256U);
  EXPECT_EQ(side.GetValue()->strPixelFormat.toStdString(), "Mono12");
  EXPECT_EQ(side.GetValue()->nBrightFrames, 16U);
  EXPECT_TRUE(side.GetValue()->bDarkUsed);
  EXPECT_EQ(side.GetValue()->strSha256.size(), 64);
  ASSERT_TRUE(GetDriver().SaveFile(m_folder.filePath(QStringLiteral("no/such/flat.ffc"))).bFileChosen);
  EXPECT_EQ(GetText("DialogNote").substr(0, 9), "NOT saved");

  ASSERT_TRUE(GetDriver().LoadFile(strFile + QStringLiteral(".ffc")).bFileChosen);
  EXPECT_EQ(GetText("DialogNote").substr(0, 8), "Loaded: ");
  EXPECT_FALSE(GetDriver().LoadFile(QString()).bFileChosen);
  EXPECT_EQ(GetText("DialogNote"), "") << "the user has chosen none";
  EXPECT_FALSE(GetDriver().SaveFile(QString()).bFileChosen);
  EXPECT_EQ(GetText("DialogNote"), "");
  ASSERT_TRUE(WaitText("Correction", "corrected"));
  const QDateTime dtBefore = QDateTime::currentDateTime();
  Key(Qt::Key_M, Qt::ControlModifier);
  const QJsonObject json = SaveReport();
  EXPECT_EQ(json[QStringLiteral("frame_count")].toInt(), 16) << "as the file beside it says";
  EXPECT_EQ(json[QStringLiteral("reference")].toString().toStdString(), "average");
  EXPECT_NE(GetText("Findings").find("flat.ffc"), std::string::npos);
  EXPECT_EQ(GetText("Findings").find("is not known"), std::string::npos) << GetText("Findings");
  const QDateTime dtMeasured = QDateTime::fromString(json[QStringLiteral("measured_at")].toString(), Qt::ISODate);
  EXPECT_GE(dtMeasured, dtBefore.addSecs(-1));
  EXPECT_LE(dtMeasured, QDateTime::currentDateTime());
}

TEST_F(PluginDialog, OfAFileWithNothingThatBelongsToItNeitherFrameCountNorGreyIsClaimed)
{
  ShowCorrected();
  const QString strFile = m_folder.filePath(QStringLiteral("flat.ffc"));
  ASSERT_TRUE(GetDriver().SaveFile(strFile).bFileChosen);
  QFile file(strFile);
  ASSERT_TRUE(file.open(QIODevice::ReadWrite));
  const QByteArray byteTable = file.readAll();
  ASSERT_TRUE(file.seek(0) && file.putChar(static_cast<char>(byteTable[0] ^ 1)));
  file.close();
  ASSERT_TRUE(GetDriver().LoadFile(strFile).bFileChosen);
  ASSERT_TRUE(WaitText("Correction", "corrected"));
  Key(Qt::Key_M, Qt::ControlModifier);
  const QJsonObject json = SaveReport();
  EXPECT_FALSE(json.contains(QStringLiteral("frame_count"))) << "the sliders say nothing of a file";
  EXPECT_FALSE(json.contains(QStringLiteral("expect_gray")));
  EXPECT_NE(GetText("Findings").find("How many frames the coefficients were made of is not known"), std::string::npos);
}

TEST_F(PluginDialog, RepeatsOfARecordingAreNotCountedAsFrames)
{
  WriteRecording(4); // of which the first two are for coefficients, the others for figures
  ShowWindow(OpenCamera);
  ASSERT_TRUE(WaitText("Correction", "raw"));
  Correct();
  EXPECT_EQ(GetText("DialogNote"),
            "Only 2 of 16 bright frames differ: the camera repeats itself, and the noise is that of 2.");
  ASSERT_TRUE(WaitText("Correction", "corrected"));
  Key(Qt::Key_M, Qt::ControlModifier);
  EXPECT_NE(GetText("Findings").find("2 different bright frames, although 16 were asked for"), std::string::npos);
  EXPECT_NE(GetText("Findings").find("Measured on a single frame"), std::string::npos) << "the dark one";
  EXPECT_EQ(SaveReport()[QStringLiteral("frame_count")].toInt(), 2);
}

TEST_F(PluginDialog, SaysWhyItIsGreyForACorrectionThatThePluginDoesNotKnow)
{
  m_stCamera.eMode = ECorrectionMode::Unknown;
  ShowWindow();
  EXPECT_EQ(GetText("DialogNote").find("The plug-in does not know this camera's correction "), 0U)
    << GetText("DialogNote");
  EXPECT_TRUE(Find<QLabel>("DialogNote")->isVisible());
}

TEST_F(PluginDialog, CoefficientsThatTheCameraRefusesWhileItStreamsAreTriedAgainWithTheStreamStopped)
{
  m_stCamera.eMode = ECorrectionMode::FlatField;
  ShowWindow([this](const SCameraOptions &stOptions) {
    ffc::camera::SSimulatedCameraOptions stCamera;
    stCamera.eMode = stOptions.eMode;
    stCamera.strPixelFormat = stOptions.strPixelFormat;
    stCamera.nWidth = 256;
    stCamera.nHeight = 192;
    stCamera.dFrameRate = 100;
    stCamera.strFlashFile = m_folder.filePath(QStringLiteral("flash/camera")).toStdString();
    return ffc::camera::CreateSimulatedCamera(stCamera);
  });
  QDir folder(m_folder.filePath(QStringLiteral("flash")));
  ASSERT_TRUE(folder.mkpath(QStringLiteral(".")));
  Correct();
  ASSERT_TRUE(folder.removeRecursively());
  EXPECT_NE(GetDriver().SaveFlash().strBox.toStdString(), "");
  const std::string strRefused = "NOT written to the camera: ";
  const std::string strHint = "stop it, and try again.";
  EXPECT_EQ(GetText("DialogNote").find(strRefused), 0U) << GetText("DialogNote");
  EXPECT_NE(GetText("DialogNote").find(strHint), std::string::npos) << GetText("DialogNote");

  Press("StartStop");
  ASSERT_FALSE(GetCamera().IsStreaming());
  EXPECT_NE(GetDriver().SaveFlash().strBox.toStdString(), "");
  EXPECT_EQ(GetText("DialogNote").find(strRefused), 0U) << GetText("DialogNote");
  EXPECT_EQ(GetText("DialogNote").find(strHint), std::string::npos) << "it is stopped: " << GetText("DialogNote");
  ASSERT_TRUE(folder.mkpath(QStringLiteral(".")));
  EXPECT_EQ(GetDriver().SaveFlash().strBox.toStdString(), "");
  EXPECT_EQ(GetText("DialogNote").find("Written to the camera"), 0U) << GetText("DialogNote");
  EXPECT_EQ(GetDriver().LoadFlash().strBox.toStdString(), "");
  EXPECT_EQ(GetText("DialogNote"), "Loaded from the camera's flash");
}

TEST_F(PluginDialog, ClosingDuringAnAcquisitionSaysWhyItWaits)
{
  m_dFrameRate = 20;
  ShowWindow();
  ASSERT_TRUE(WaitText("Correction", "raw"));
  Press("ShowDialog");
  CDialogDriver driver = GetDriver();
  driver.SetFrameCount(8);
  const CCloser closer(*m_pWindow, "AcquisitionProgress");
  EXPECT_EQ(driver.AcquireBright().strBox.toStdString(), "");
  EXPECT_TRUE(closer.GetBoxText().contains("The window closes when the plug-in is done with the camera."));
  EXPECT_TRUE(QTest::qWaitFor([this] { return !m_pWindow->isVisible(); }));
}

TEST_F(PluginDialog, ShowsTheFrameCountAndGreyThatTheCommandLineAskedFor)
{
  m_stCamera.strPixelFormat = "BayerRG8";
  ShowWindow();
  m_pWindow->SetPreset({4, 77});
  ASSERT_TRUE(WaitText("Correction", "raw"));
  Press("ShowDialog");
  EXPECT_EQ(GetDriver().GetFrameCount(), 4);
  EXPECT_EQ(GetDriver().GetExpectGray(), 77);
  ASSERT_EQ(GetDriver().AcquireBright().strBox.toStdString(), "");
  EXPECT_EQ(GetDriver().GetExpectGray(), 77) << "the bright field brings one of its own";
  ASSERT_NE(m_pWindow->GetAcquiredFrames().GetBright(), nullptr);
  EXPECT_EQ(m_pWindow->GetAcquiredFrames().GetBright()->listFrames.size(), 4U) << "without those of the white balance";
  ASSERT_EQ(GetDriver().Execute().strBox.toStdString(), "");
  m_pWindow.reset();
  ShowWindow();
  Press("ShowDialog");
  EXPECT_NE(GetDriver().GetExpectGray(), 77) << "what the command line asked for is no preference of the user's";
}

TEST_F(PluginDialog, RemembersFileFrameCountAndGreyOfEachCameraApart)
{
  ShowCorrected();
  const QString strFile = m_folder.filePath(QStringLiteral("mono.ffc"));
  ASSERT_TRUE(GetDriver().SaveFile(strFile).bFileChosen);
  GetDriver().SetFrameCount(8);
  ASSERT_EQ(GetDriver().AcquireBright().strBox.toStdString(), "");
  const int nSuggested = GetDriver().GetExpectGray();
  GetDriver().SetExpectGray(nSuggested - 9);
  ASSERT_EQ(GetDriver().Execute().strBox.toStdString(), "");
  m_pWindow.reset();

  m_stCamera.nSeed = 2; // has another serial number
  ShowWindow();
  ASSERT_TRUE(WaitText("Correction", "raw"));
  EXPECT_EQ(GetText("DialogNote"), "");
  Press("ShowDialog");
  EXPECT_NE(GetDriver().GetFrameCount(), 8);
  m_pWindow.reset();

  m_stCamera.nSeed = 1;
  ShowWindow();
  ASSERT_TRUE(WaitText("Correction", "raw"));
  EXPECT_EQ(GetText("DialogNote"),
            "Coefficients last used with this camera: " + QDir::toNativeSeparators(strFile).toStdString());
  Press("ShowDialog");
  EXPECT_EQ(GetDriver().GetFrameCount(), 8);
  ASSERT_EQ(GetDriver().AcquireBright().strBox.toStdString(), "");
  EXPECT_EQ(GetDriver().GetExpectGray(), nSuggested - 9) << "which the user preferred to the suggestion";
}
