/// \file
/// From a shaded image to a report, in the window, with mouse and keyboard.

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProgressDialog>
#include <QSignalSpy>
#include <QSlider>
#include <QTableWidget>
#include <QTimer>

#include "camera/iscenecontrol.h"
#include "host/dialogdriver/modalanswerer.h"
#include "host/options/cameraopening.h"
#include "tests/host/window/boxpresser.h"
#include "tests/host/window/windowfixture.h"

using namespace ffc::host;
using ffc::camera::ECorrectionMode;
using ffc::camera::FindSceneControl;

namespace {

class WindowWorkflow : public WindowFixture {};

QByteArray ReadFile(const QString &strPath)
{
  QFile file(strPath);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

TEST_F(WindowWorkflow, GoesFromAShadedImageToAReport)
{
  ShowWindow();
  ASSERT_TRUE(WaitText("Correction", "raw"));
  Correct();
  ASSERT_TRUE(WaitText("Correction", "corrected"));

  Key(Qt::Key_M, Qt::ControlModifier);
  EXPECT_EQ(GetText("Verdict").substr(0, 5), "PASS:");
  QTableWidget *pFigures = Find<QTableWidget>("Figures");
  ASSERT_EQ(pFigures->rowCount(), 11) << "with those after the high-pass";
  EXPECT_GT(pFigures->item(0, 0)->text().toDouble(), 20.0) << "shading before";
  EXPECT_LT(pFigures->item(0, 1)->text().toDouble(), 1.0);
  EXPECT_FALSE(FindSceneControl(GetCamera())->IsLensCapOn()) << "as before";
  EXPECT_NE(GetText("Findings").find("take "), std::string::npos);

  Key(Qt::Key_D, Qt::ControlModifier);
  EXPECT_EQ(GetText("Drift").substr(0, 9), "No drift:");

  const QString strPath = m_folder.filePath("report.html");
  {
    const CModalAnswerer answerer(strPath);
    Press("SaveReport");
  }
  const QByteArray bytePage = ReadFile(strPath);
  EXPECT_EQ(bytePage.count("data:image/png;base64,"), 5);
  const QJsonObject json = QJsonDocument::fromJson(ReadFile(m_folder.filePath("report.json"))).object();
  EXPECT_EQ(json["verdict"].toString().toStdString(), "worse") << "of DSNU: the dark field is one frame";
  EXPECT_EQ(json["frame_count"].toInt(), 16);
  EXPECT_EQ(json["dark_frame_count"].toInt(), 1);
  EXPECT_TRUE(json["versions"].toString().contains(QLatin1String(".plx"))) << json["versions"].toString().toStdString();
  EXPECT_EQ(json["limits"].toObject()["prnu"].toDouble(), 1.0);
  EXPECT_EQ(json["settings"].toObject()["PixelFormat"].toString().toStdString(), "Mono12");

  // What is written beside the page is no more replaced unasked than the page itself.
  QFile::remove(strPath);
  const QByteArray byteFormer = ReadFile(m_folder.filePath("report.json"));
  EXPECT_TRUE(QFile::copy(m_folder.filePath("report.json"), m_folder.filePath("other-defects.csv")));
  for (const char *pBase : {"report", "other"}) {
    const CReplacingUser user(m_folder.filePath(QLatin1String(pBase)), "&Cancel");
    Press("SaveReport");
    EXPECT_EQ(user.GetQuestions(), 1) << pBase;
    EXPECT_FALSE(QFile::exists(m_folder.filePath(QLatin1String(pBase) + QStringLiteral(".html")))) << pBase;
  }
  EXPECT_TRUE(ReadFile(m_folder.filePath("report.json")) == byteFormer);
  const CReplacingUser user(m_folder.filePath("report"), "&Replace");
  Press("SaveReport");
  EXPECT_EQ(user.GetQuestions(), 1);
  EXPECT_TRUE(QFile::exists(strPath));
}

TEST_F(WindowWorkflow, SaysWhyFramesOfAnotherSizeAreNotCorrected)
{
  ShowWindow();
  ASSERT_TRUE(WaitText("Correction", "raw"));
  Correct();
  ASSERT_TRUE(WaitText("Correction", "corrected"));
  Press("StartStop");
  QWidget *pWidth = Find<QWidget>("Width");
  ASSERT_TRUE(pWidth->isEnabled());
  pWidth->setFocus();
  QTest::keyClick(pWidth, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(pWidth, "128");
  QTest::keyClick(pWidth, Qt::Key_Return);
  Press("StartStop");
  EXPECT_TRUE(
    WaitText("Correction", "NOT corrected: the frame is 128 x 192 Mono12, the coefficients are for 256 x 192"));
}

TEST_F(WindowWorkflow, AnAcquisitionLetsNothingElseBeginAndCanBeCancelled)
{
  m_dFrameRate = 20;
  ShowWindow();
  ASSERT_TRUE(WaitText("Correction", "raw"));
  Press("ShowDialog");
  CDialogDriver driver = GetDriver();
  driver.SetFrameCount(16);
  const CInterrupter user("AcquisitionProgress", [this] { BeginEverything(); });
  const SDialogAnswer stAnswer = driver.AcquireBright();
  EXPECT_TRUE(user.HasActed());
  EXPECT_EQ(stAnswer.strBox.toStdString(), "") << "the user knows that he has cancelled";
  EXPECT_EQ(GetText("DialogNote"), "Acquisition cancelled: no frames were taken over.");
  EXPECT_FALSE(driver.IsExecuteEnabled());
  EXPECT_TRUE(GetCamera().IsStreaming()) << "as before";
  // Frames reach the plug-in again.
  EXPECT_EQ(driver.AcquireDark().strBox.toStdString(), "");
}

TEST_F(WindowWorkflow, WhatTakesLongLetsNothingElseBeginAndCanBeCancelled)
{
  m_dFrameRate = 20;
  ShowWindow();
  Correct();
  ASSERT_TRUE(WaitText("Correction", "corrected"));
  for (const char *pButton : {"Measure", "CheckDrift"}) {
    const CInterrupter user("WaitBox", [this] { BeginEverything(); });
    Press(pButton);
    EXPECT_TRUE(user.HasActed()) << pButton;
  }
  EXPECT_EQ(GetText("Verdict"), "Not measured");
  EXPECT_EQ(GetText("Drift"), "");
  const QString strSequence = m_folder.filePath("sequence.ser");
  {
    const CModalAnswerer answerer(strSequence);
    const CInterrupter user("WaitBox", [this] { BeginEverything(); });
    m_pWindow->SlotSaveSequence();
    EXPECT_TRUE(user.HasActed());
  }
  EXPECT_FALSE(QFile::exists(strSequence)) << "nothing is left of it";
  EXPECT_TRUE(Find<QAbstractButton>("Measure")->isEnabled());
  EXPECT_FALSE(Find<QAbstractButton>("SaveReport")->isEnabled());
}

TEST_F(WindowWorkflow, ClosingDuringAMeasurementEndsIt)
{
  m_dFrameRate = 20;
  ShowWindow();
  ASSERT_TRUE(WaitText("Correction", "raw"));
  const CCloser closer(*m_pWindow, "WaitBox");
  Press("Measure");
  EXPECT_TRUE(closer.HasClosed());
  EXPECT_EQ(GetText("Verdict"), "Not measured");
  EXPECT_TRUE(QTest::qWaitFor([this] { return !m_pWindow->isVisible(); }));
}

TEST_F(WindowWorkflow, MeasuringWithoutACorrectionGivesABaseline)
{
  ShowWindow();
  ASSERT_TRUE(WaitText("Correction", "raw"));
  Press("Measure");
  EXPECT_EQ(GetText("Verdict").substr(0, 18), "Baseline: shading ");
  EXPECT_EQ(GetText("Verdict").find("PASS"), std::string::npos);
  const QTableWidget *pFigures = Find<QTableWidget>("Figures");
  ASSERT_GT(pFigures->rowCount(), 0);
  EXPECT_GT(pFigures->item(0, 0)->text().toDouble(), 20.0);
  EXPECT_EQ(pFigures->item(0, 1)->text().toStdString(), "-");
  {
    const CModalAnswerer answerer(m_folder.filePath("baseline.html"));
    Press("SaveReport");
  }
  {
    const CModalAnswerer answerer(m_folder.filePath("none/page.html"));
    Press("SaveReport");
    ASSERT_EQ(answerer.GetMessages().size(), 1);
    EXPECT_TRUE(answerer.GetMessages()[0].contains("page")) << answerer.GetMessages()[0].toStdString();
  }
  const QJsonObject json = QJsonDocument::fromJson(ReadFile(m_folder.filePath("baseline.json"))).object();
  EXPECT_EQ(json["verdict"].toString().toStdString(), "baseline");
  EXPECT_FALSE(json.contains("after"));

  CModalAnswerer answerer;
  Press("CheckDrift");
  ASSERT_EQ(answerer.GetMessages().size(), 1);
  EXPECT_TRUE(answerer.GetMessages()[0].contains("tick its Preview first")) << "there is nothing to drift";
}

TEST_F(WindowWorkflow, EveryFigureHasItsLimitAndItsLine)
{
  ShowWindow();
  ASSERT_TRUE(WaitText("Correction", "raw"));
  Correct();
  ASSERT_TRUE(WaitText("Correction", "corrected"));
  Press("Measure");
  const auto fnLines = [this] { return Find<QLabel>("Verdict")->text().split('\n'); };
  ASSERT_EQ(fnLines().size(), 3);
  EXPECT_TRUE(fnLines()[0].startsWith("PASS: shading "));
  EXPECT_TRUE(fnLines()[1].startsWith("PASS: PRNU "));
  EXPECT_TRUE(fnLines()[2].startsWith("WORSE: DSNU ")) << "the noise of one dark frame: " << GetText("Verdict");
  EXPECT_NE(GetText("Findings").find("the dark reference is one single frame"), std::string::npos);
  EXPECT_NE(GetText("Findings").find("16 frames were used"), std::string::npos);
  Find<QDoubleSpinBox>("PrnuLimit")->setValue(0.01);
  EXPECT_TRUE(fnLines()[1].startsWith("FAIL: PRNU "));
  Find<QDoubleSpinBox>("PrnuLimit")->setValue(0);
  EXPECT_TRUE(fnLines()[1].startsWith("No limit: PRNU "));
}

TEST_F(WindowWorkflow, AChartAsBrightFieldIsNamed)
{
  ShowWindow();
  ASSERT_TRUE(WaitText("Correction", "raw"));
  Press("ShowDialog");
  FindSceneControl(GetCamera())->SetScene(ffc::camera::ISceneControl::EScene::TestChart);
  QTest::qWait(50);
  ASSERT_EQ(GetDriver().AcquireBright().strBox.toStdString(), "");
  EXPECT_NE(GetText("DialogNote").find("The bright field has structure"), std::string::npos) << GetText("DialogNote");
  FindSceneControl(GetCamera())->SetScene(ffc::camera::ISceneControl::EScene::Target);
  QTest::qWait(50);
  ASSERT_EQ(GetDriver().AcquireBright().strBox.toStdString(), "");
  EXPECT_EQ(GetText("DialogNote"), "");
}

TEST_F(WindowWorkflow, CoefficientsOfAnotherCameraAreNamed)
{
  ShowWindow();
  ASSERT_TRUE(WaitText("Correction", "raw"));
  Correct();
  ASSERT_TRUE(WaitText("Correction", "corrected"));
  const QString strFile = m_folder.filePath("camera1.ffc");
  ASSERT_EQ(GetDriver().SaveFile(strFile).strBox.toStdString(), "");
  const auto fnIsNamed = [&] {
    EXPECT_EQ(GetDriver().LoadFile(strFile).strBox.toStdString(), "");
    EXPECT_TRUE(WaitText("Correction", "corrected"));
    Press("Measure");
    return GetText("Findings").find("another camera's") != std::string::npos;
  };
  EXPECT_FALSE(fnIsNamed()) << "its own";
  m_stCamera.nSeed = 2;
  ShowWindow();
  ASSERT_TRUE(WaitText("Correction", "raw"));
  Press("ShowDialog");
  EXPECT_TRUE(fnIsNamed());
}

TEST_F(WindowWorkflow, RecordedFramesOf12BitsArePlayedAsSuchAndTheUserMayChooseOtherwise)
{
  for (int nFrame = 0; nFrame < 4; ++nFrame) {
    QImage imgFrame(64, 64, QImage::Format_Grayscale16);
    for (int nPixel = 0; nPixel < 64 * 64; ++nPixel) {
      const int nValue = nPixel == nFrame ? 4095 : 2000 + (nPixel * 17 + nPixel / 64 + nFrame * 7) % 50;
      reinterpret_cast<uint16_t *>(imgFrame.scanLine(nPixel / 64))[nPixel % 64] = static_cast<uint16_t>(nValue);
    }
    ASSERT_TRUE(imgFrame.save(m_folder.filePath(QStringLiteral("bright_%1.png").arg(nFrame))));
  }
  m_stCamera.strReplayFolder = m_folder.path().toStdString();
  m_stCamera.strPixelFormat.clear();
  ShowWindow(OpenCamera);
  EXPECT_TRUE(WaitText("Shape", "64 x 64 Mono12"));
  EXPECT_NE(GetText("CameraNotes").find("12 bits, right-aligned, because the largest is 4095"), std::string::npos);
  EXPECT_FALSE(Find<QWidget>("LensCap")->isEnabled()) << "there are no dark frames";
  QComboBox *pFormat = Find<QComboBox>("RecordedFormat");
  ASSERT_TRUE(pFormat->isVisible());
  const auto fnChoose = [&](const char *pName) {
    pFormat->setCurrentIndex(pFormat->findText(pName));
    emit pFormat->activated(pFormat->currentIndex());
  };
  fnChoose("Mono16");
  EXPECT_TRUE(WaitText("Shape", "64 x 64 Mono16"));
  EXPECT_EQ(pFormat->currentText().toStdString(), "Mono16");
  CModalAnswerer answerer;
  fnChoose("Mono10");
  ASSERT_EQ(answerer.GetMessages().size(), 1);
  EXPECT_TRUE(answerer.GetMessages()[0].contains("but Mono10 ends at 1023")) << answerer.GetMessages()[0].toStdString();
  EXPECT_TRUE(WaitText("Shape", "64 x 64 Mono16")) << "as before";
}

TEST_F(WindowWorkflow, ACameraThatCorrectsItselfIsMeasuredOffAndOn)
{
  m_stCamera.eMode = ECorrectionMode::FlatField;
  ShowWindow();
  ASSERT_TRUE(WaitText("Correction", "raw"));
  Correct();
  ASSERT_TRUE(WaitText("Correction", "corrected by the camera"));
  Key(Qt::Key_M, Qt::ControlModifier);
  QTableWidget *pFigures = Find<QTableWidget>("Figures");
  ASSERT_EQ(pFigures->rowCount(), 11) << "with those after the high-pass";
  EXPECT_LT(pFigures->item(0, 1)->text().toDouble(), pFigures->item(0, 0)->text().toDouble() / 10);
  EXPECT_NE(GetText("Findings").find("different exposures"), std::string::npos);
  EXPECT_TRUE(WaitText("Correction", "corrected by the camera")) << "left as it was";
}
