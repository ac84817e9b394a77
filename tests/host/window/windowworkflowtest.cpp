/// \file
/// From a shaded image to a report, in the window, with mouse and keyboard.

#include <QCheckBox>
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
  EXPECT_EQ(json["verdict"].toString().toStdString(), "pass");
  EXPECT_EQ(json["frame_count"].toInt(), 16);
  EXPECT_EQ(json["settings"].toObject()["PixelFormat"].toString().toStdString(), "Mono12");
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

TEST_F(WindowWorkflow, AnAcquisitionShowsItsProgressAndCanBeCancelled)
{
  m_dFrameRate = 20;
  ShowWindow();
  ASSERT_TRUE(WaitText("Correction", "raw"));
  Press("ShowDialog");
  CDialogDriver driver = GetDriver();
  driver.SetFrameCount(16);
  CBoxPresser presser("AcquisitionProgress", "&Cancel");
  const SDialogAnswer stAnswer = driver.AcquireBright();
  EXPECT_EQ(presser.GetPressed(), 1);
  EXPECT_EQ(stAnswer.strBox.toStdString(), "") << "the user knows that he has cancelled";
  EXPECT_EQ(GetText("DialogNote"), "Acquisition cancelled: no frames were taken over.");
  EXPECT_FALSE(driver.IsExecuteEnabled());
  EXPECT_TRUE(GetCamera().IsStreaming()) << "as before";
  // Frames reach the plug-in again.
  EXPECT_EQ(driver.AcquireDark().strBox.toStdString(), "");
}

TEST_F(WindowWorkflow, AMeasurementCanBeCancelled)
{
  m_dFrameRate = 20;
  ShowWindow();
  Correct();
  ASSERT_TRUE(WaitText("Correction", "corrected"));
  CBoxPresser presser("WaitBox", "&Cancel");
  Press("Measure");
  EXPECT_GE(presser.GetPressed(), 1);
  EXPECT_EQ(GetText("Verdict"), "Not measured");
  EXPECT_TRUE(Find<QAbstractButton>("Measure")->isEnabled());
  EXPECT_FALSE(Find<QAbstractButton>("SaveReport")->isEnabled());
}

TEST_F(WindowWorkflow, MeasuringWithoutPreviewSaysWhatToDo)
{
  ShowWindow();
  ASSERT_TRUE(WaitText("Correction", "raw"));
  CModalAnswerer answerer;
  Press("Measure");
  ASSERT_EQ(answerer.GetMessages().size(), 1);
  EXPECT_TRUE(answerer.GetMessages()[0].contains("tick its Preview first"));
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
