#include "host/dialogdriver/dialogdriver.h"

#include <functional>

#include <QCheckBox>
#include <QDialog>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTimer>
#include <QVBoxLayout>

#include <gtest/gtest.h>

using namespace ffc::host;

namespace {

/// A dialog with the widgets that the driver knows by name; a test gives them their behaviour.
class DialogDriver : public testing::Test {
protected:
  DialogDriver() : m_driver(m_dialog)
  {
    m_dialog.setObjectName("ShadingCorrectionDlg");
    m_pLayout = new QVBoxLayout(&m_dialog);
    m_pDark = Add(new QPushButton, "AcquisitionDarkFrame_Button");
    m_pBright = Add(new QPushButton, "AcquisitionBrightFrame_Button");
    m_pExecute = Add(new QPushButton, "ExecuteShadingCorrection_Button");
    m_pLoadFlash = Add(new QPushButton, "LoadFlash_Button");
    m_pSaveFlash = Add(new QPushButton, "SaveFlash_Button");
    m_pLoad = Add(new QPushButton, "LoadPC_Button");
    m_pSave = Add(new QPushButton, "SavePC_Button");
    m_pPreview = Add(new QCheckBox, "PreviewcheckBox");
    m_pSlider = Add(new QSlider, "AcquisitionFrame_Slider");
    m_pSlider->setRange(0, 16);
    m_pSpinBox = Add(new QSpinBox, "ExpectGrayspinBox");
    m_pSpinBox->setMaximum(4095);
    m_pPrompt = Add(new QLabel, "PromptInformation_label");
    m_dialog.show();
  }

  template <class TWidget>
  TWidget *Add(TWidget *pWidget, const char *pName)
  {
    pWidget->setObjectName(pName);
    m_pLayout->addWidget(pWidget);
    return pWidget;
  }

  void SetPrompt(const QString &strText, Qt::GlobalColor eColor)
  {
    QPalette palette = m_pPrompt->palette();
    palette.setColor(QPalette::WindowText, eColor);
    m_pPrompt->setPalette(palette);
    m_pPrompt->setText(strText);
  }

  /// As the plug-in's own box: a title bar, a message, buttons, run modally without a parent.
  static int RunTipsBox(const QString &strMessage, bool bButton)
  {
    QDialog box;
    box.setObjectName("TipsMessageBox");
    QVBoxLayout *pLayout = new QVBoxLayout(&box);
    QWidget *pTitleBar = new QWidget;
    pTitleBar->setObjectName("QToolsTitleBar");
    QVBoxLayout *pTitleLayout = new QVBoxLayout(pTitleBar);
    pTitleLayout->addWidget(new QLabel("Error"));
    QPushButton *pClose = new QPushButton("x");
    pTitleLayout->addWidget(pClose);
    QObject::connect(pClose, &QPushButton::clicked, [&box] { box.done(7); });
    pLayout->addWidget(pTitleBar);
    pLayout->addWidget(new QLabel(strMessage));
    if (bButton) {
      QPushButton *pButton = new QPushButton("OK");
      pLayout->addWidget(pButton);
      QObject::connect(pButton, &QPushButton::clicked, [&box] { box.done(1); });
    }
    return box.exec();
  }

  QDialog m_dialog;
  QVBoxLayout *m_pLayout;
  QPushButton *m_pDark;
  QPushButton *m_pBright;
  QPushButton *m_pExecute;
  QPushButton *m_pLoadFlash;
  QPushButton *m_pSaveFlash;
  QPushButton *m_pLoad;
  QPushButton *m_pSave;
  QCheckBox *m_pPreview;
  QSlider *m_pSlider;
  QSpinBox *m_pSpinBox;
  QLabel *m_pPrompt;
  CDialogDriver m_driver;
};

} // namespace

TEST_F(DialogDriver, FindsTheVisibleDialogByItsName)
{
  EXPECT_EQ(CDialogDriver::FindDialog(), &m_dialog);
  m_dialog.hide();
  EXPECT_EQ(CDialogDriver::FindDialog(), nullptr);
}

TEST_F(DialogDriver, ClicksTheButtonAndReadsThePrompt)
{
  QObject::connect(m_pDark, &QPushButton::clicked, [this] { SetPrompt("done", Qt::black); });
  QObject::connect(m_pBright, &QPushButton::clicked, [this] { SetPrompt("too dark", Qt::red); });
  const SDialogAnswer stDark = m_driver.AcquireDark();
  EXPECT_EQ(stDark.strPrompt, "done");
  EXPECT_FALSE(stDark.bWarning);
  EXPECT_EQ(stDark.strBox, "");
  const SDialogAnswer stBright = m_driver.AcquireBright();
  EXPECT_EQ(stBright.strPrompt, "too dark");
  EXPECT_TRUE(stBright.bWarning);
}

TEST_F(DialogDriver, ReadsAndConfirmsAMessageBox)
{
  int nResult = -1;
  QObject::connect(m_pExecute, &QPushButton::clicked, [&] { nResult = RunTipsBox("it went wrong", true); });
  const SDialogAnswer stAnswer = m_driver.Execute();
  EXPECT_EQ(stAnswer.strBox, "it went wrong");
  EXPECT_EQ(nResult, 1) << "confirmed, not closed by the title bar";
}

TEST_F(DialogDriver, ReadsSeveralBoxesInTheirOrder)
{
  QObject::connect(m_pExecute, &QPushButton::clicked, [] {
    RunTipsBox("first", true);
    RunTipsBox("second", true);
  });
  EXPECT_EQ(m_driver.Execute().strBox, "first; second");
}

TEST_F(DialogDriver, ABoxWithoutButtonsIsClosed)
{
  int nResult = -1;
  QObject::connect(m_pExecute, &QPushButton::clicked, [&] { nResult = RunTipsBox("no way out", false); });
  EXPECT_EQ(m_driver.Execute().strBox, "no way out");
  EXPECT_EQ(nResult, 0);
}

TEST_F(DialogDriver, ChoosesTheFileInTheFileDialogs)
{
  const QTemporaryDir dir;
  const QString strPath = dir.filePath("table.ffc");
  QString strSaved;
  QObject::connect(m_pSave, &QPushButton::clicked, [&] {
    strSaved = QFileDialog::getSaveFileName(nullptr, "Save", "./other.ffc", "ini file (*.ffc)");
    QFile file(strSaved);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
  });
  QString strLoaded;
  QObject::connect(m_pLoad, &QPushButton::clicked,
                   [&] { strLoaded = QFileDialog::getOpenFileName(nullptr, "Open", ".", "ini file (*.ffc)"); });
  EXPECT_TRUE(m_driver.SaveFile(strPath).bFileChosen);
  EXPECT_EQ(strSaved, strPath);
  const SDialogAnswer stAnswer = m_driver.LoadFile(strPath);
  EXPECT_EQ(strLoaded, strPath);
  EXPECT_EQ(stAnswer.strBox, "");
}

TEST_F(DialogDriver, AFileThatIsNotThereIsReportedAndTheDialogCancelled)
{
  QString strLoaded = "untouched";
  QObject::connect(m_pLoad, &QPushButton::clicked,
                   [&] { strLoaded = QFileDialog::getOpenFileName(nullptr, "Open", ".", "ini file (*.ffc)"); });
  const SDialogAnswer stAnswer = m_driver.LoadFile("/no/such/table.ffc");
  EXPECT_EQ(strLoaded, "");
  EXPECT_NE(stAnswer.strBox, "");
}

TEST_F(DialogDriver, AFileDialogThatNobodyExpectsIsCancelled)
{
  QString strChosen = "untouched";
  QObject::connect(m_pDark, &QPushButton::clicked,
                   [&] { strChosen = QFileDialog::getOpenFileName(nullptr, "Open", "."); });
  EXPECT_FALSE(m_driver.AcquireDark().bFileChosen);
  EXPECT_EQ(strChosen, "");
}

TEST_F(DialogDriver, ADisabledOrMissingWidgetIsNamed)
{
  m_pExecute->setEnabled(false);
  EXPECT_EQ(m_driver.Execute().strBox, "ExecuteShadingCorrection_Button is disabled");
  EXPECT_FALSE(m_driver.IsExecuteEnabled());
  m_pDark->hide();
  EXPECT_EQ(m_driver.AcquireDark().strBox, "AcquisitionDarkFrame_Button is hidden");
  delete m_pBright;
  EXPECT_EQ(m_driver.AcquireBright().strBox, "AcquisitionBrightFrame_Button is missing");
}

TEST_F(DialogDriver, ADialogWithoutItsControlsOffersNothingAndNamesEachThatIsAskedFor)
{
  qDeleteAll(m_dialog.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly));
  EXPECT_EQ(m_driver.SetFrameCount(4).strBox, "AcquisitionFrame_Slider is missing");
  EXPECT_EQ(m_driver.SetExpectGray(90).strBox, "ExpectGrayspinBox is missing");
  EXPECT_EQ(m_driver.SetPreview(true).strBox, "PreviewcheckBox is missing");
  EXPECT_EQ(m_driver.GetFrameCount(), 0);
  EXPECT_EQ(m_driver.GetExpectGray(), 0);
  EXPECT_FALSE(m_driver.IsExecuteEnabled());
  EXPECT_FALSE(m_driver.IsAcquiringBright());
  EXPECT_FALSE(m_driver.IsPreviewOn());
  EXPECT_FALSE(m_driver.IsPreviewOffered());
  EXPECT_EQ(m_driver.ReadPrompt().strPrompt, "");
  EXPECT_FALSE(m_driver.ReadPrompt().bWarning);
}

TEST_F(DialogDriver, AControlThatIsHiddenOrDisabledIsNotSet)
{
  m_pSlider->setEnabled(false);
  m_pSpinBox->hide();
  m_pPreview->hide();
  EXPECT_EQ(m_driver.SetFrameCount(16).strBox, "AcquisitionFrame_Slider is disabled");
  EXPECT_EQ(m_driver.SetExpectGray(90).strBox, "ExpectGrayspinBox is hidden");
  EXPECT_EQ(m_driver.SetPreview(true).strBox, "PreviewcheckBox is hidden");
  EXPECT_EQ(m_driver.GetFrameCount(), 1);
  EXPECT_EQ(m_driver.GetExpectGray(), 0);
  EXPECT_FALSE(m_driver.IsPreviewOn());
}

TEST_F(DialogDriver, ABoxThatShowsProgressOrStaysOffTheScreenIsLeftToWhomItBelongsTo)
{
  int nProgress = -1;
  int nUnseen = -1;
  QObject::connect(m_pExecute, &QPushButton::clicked, [&] {
    QProgressDialog progress("working", "Cancel", 0, 0);
    QTimer::singleShot(40, &progress, [&progress] { progress.done(5); });
    nProgress = progress.exec();
    QDialog unseen;
    unseen.setAttribute(Qt::WA_DontShowOnScreen);
    QTimer::singleShot(40, &unseen, [&unseen] { unseen.done(6); });
    nUnseen = unseen.exec();
  });
  EXPECT_EQ(m_driver.Execute().strBox, "");
  EXPECT_EQ(nProgress, 5);
  EXPECT_EQ(nUnseen, 6);
}

TEST_F(DialogDriver, OfSeveralButtonsTheFirstThatCanBePressedConfirms)
{
  int nResult = -1;
  QObject::connect(m_pExecute, &QPushButton::clicked, [&] {
    QDialog box;
    QVBoxLayout *pLayout = new QVBoxLayout(&box);
    const std::pair<const char *, int> BUTTONS[] = {{"Hidden", 1}, {"Disabled", 2}, {"", 3}, {"Yes", 4}, {"No", 5}};
    for (const auto &[pText, nDone] : BUTTONS) {
      QPushButton *pButton = new QPushButton(QLatin1String(pText), &box);
      pLayout->addWidget(pButton);
      pButton->setEnabled(nDone != 2);
      pButton->setVisible(nDone != 1);
      QObject::connect(pButton, &QPushButton::clicked, [&box, nDone = nDone] { box.done(nDone); });
    }
    nResult = box.exec();
  });
  (void)m_driver.Execute();
  EXPECT_EQ(nResult, 4);
}

TEST_F(DialogDriver, SetsTheFrameCountByTheSlidersPosition)
{
  const std::pair<int, int> POSITIONS[] = {{16, 16}, {8, 12}, {4, 8}, {2, 4}, {1, 0}};
  for (const auto &[nFrames, nPosition] : POSITIONS) {
    m_driver.SetFrameCount(nFrames);
    EXPECT_EQ(m_pSlider->value(), nPosition);
  }
}

TEST_F(DialogDriver, SetsAndReadsTheExpectedGrey)
{
  EXPECT_EQ(m_driver.SetExpectGray(200).strBox, "");
  EXPECT_EQ(m_pSpinBox->value(), 200);
  EXPECT_EQ(m_driver.GetExpectGray(), 200);
}

TEST_F(DialogDriver, PreviewIsOnWhenEnabledAndChecked)
{
  m_pPreview->setChecked(true);
  EXPECT_TRUE(m_driver.IsPreviewOn());
  m_pPreview->setEnabled(false);
  EXPECT_FALSE(m_driver.IsPreviewOn());
  m_pPreview->setEnabled(true);
  m_pPreview->setChecked(false);
  EXPECT_FALSE(m_driver.IsPreviewOn());
}

TEST_F(DialogDriver, PressesTheButtonsOfTheFlash)
{
  QStringList listPressed;
  QObject::connect(m_pLoadFlash, &QPushButton::clicked, [&] { listPressed << "load"; });
  QObject::connect(m_pSaveFlash, &QPushButton::clicked, [&] {
    listPressed << "save";
    RunTipsBox("refused", true);
  });
  EXPECT_EQ(m_driver.LoadFlash().strBox, "");
  EXPECT_EQ(m_driver.SaveFlash().strBox, "refused");
  EXPECT_EQ(listPressed, QStringList({"load", "save"}));
}

TEST_F(DialogDriver, ClicksThePreviewOnlyWhenItIsNotAsWanted)
{
  int nClicks = 0;
  QObject::connect(m_pPreview, &QCheckBox::clicked, [&] { ++nClicks; });
  m_driver.SetPreview(true);
  m_driver.SetPreview(true);
  EXPECT_TRUE(m_pPreview->isChecked());
  EXPECT_EQ(nClicks, 1);
  m_driver.SetPreview(false);
  EXPECT_FALSE(m_pPreview->isChecked());
  EXPECT_EQ(nClicks, 2);
  m_pPreview->setEnabled(false);
  EXPECT_EQ(m_driver.SetPreview(true).strBox, "PreviewcheckBox is disabled");
}

TEST_F(DialogDriver, ReadsTheFrameCountFromTheSlidersPosition)
{
  for (const int nFrames : {1, 2, 4, 8, 16}) {
    m_driver.SetFrameCount(nFrames);
    EXPECT_EQ(m_driver.GetFrameCount(), nFrames);
  }
}

TEST_F(DialogDriver, ListsTheControlsThatCanBeOperatedButNotTheTitleBars)
{
  QWidget *pTitleBar = Add(new QWidget, "QToolsTitleBar");
  QVBoxLayout *pTitleLayout = new QVBoxLayout(pTitleBar);
  pTitleLayout->addWidget(new QPushButton("x"));
  EXPECT_EQ(m_driver.ListEnabledControls().size(), 10);
  for (QWidget *pWidget : m_dialog.findChildren<QWidget *>()) {
    pWidget->setEnabled(pWidget == m_pSlider || pWidget == pTitleBar || pWidget->parent() == pTitleBar);
  }
  EXPECT_EQ(m_driver.ListEnabledControls(), QStringList("AcquisitionFrame_Slider"));
  m_pSlider->setEnabled(false);
  EXPECT_TRUE(m_driver.ListEnabledControls().isEmpty());
}

TEST_F(DialogDriver, GrabsThePicture)
{
  EXPECT_EQ(m_driver.GrabPicture().size(), m_dialog.size());
}
