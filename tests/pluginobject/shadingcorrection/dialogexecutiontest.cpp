// Execution, preview, and loading and saving.
#include <algorithm>
#include <stdexcept>
#include <thread>
#include <utility>

#include <QApplication>
#include <QCursor>
#include <QImage>
#include <QPixmap>
#include <QPointer>
#include <QSignalSpy>

#include "tests/pluginobject/failingtranslator.h"
#include "tests/pluginobject/shadingcorrection/dialogfixture.h"
#include "tests/support/markingtranslator.h"

using ffc::pluginobject::ETextAudience;
using ffc::pluginobject::GetStatusSourceText;
using namespace ffc::test;

namespace {

constexpr const char *EXECUTED = "FFC executed successfully";
constexpr const char *FAILED = "Failed to execute FFC";
constexpr const char *FAILED_FRAME =
  "Failed to execute FFC. Please Acquired bright filed images and executed FFC again";

} // namespace

class DialogExecution : public CDialogTest {
protected:
  void OpenWithBright(const std::string &strMode = std::string())
  {
    ASSERT_EQ(Open(strMode), PLUGIN_STATUS_SUCCESS);
    m_stScript.dMaxGray = 100;
    Click(Bright());
    m_stScript.listCalls.clear();
  }

  // Offers a frame from a thread of its own, as hosts do.
  bool OfferFromFrameThread()
  {
    bool bCorrected = false;
    std::thread([&] { OfferFrame(bCorrected); }).join();
    return bCorrected;
  }
};

TEST_F(DialogExecution, OnTheHostTheSuccessTextComesWithTheFirstCorrectedFrame)
{
  OpenWithBright();
  const std::string strPrompt = Prompt();
  Click(Execute());
  EXPECT_EQ(Prompt(), strPrompt);
  EXPECT_TRUE(Preview()->isEnabled());
  EXPECT_TRUE(Preview()->isChecked());
  EXPECT_TRUE(m_pDialog->IsApplyingCorrection());
  EXPECT_TRUE(OfferFromFrameThread());
  EXPECT_EQ(Prompt(), strPrompt) << "the frame thread must not touch a widget";
  QCoreApplication::processEvents();
  EXPECT_EQ(Prompt(), EXECUTED);
  EXPECT_EQ(PromptColour(), QColor(Qt::black));
}

TEST_F(DialogExecution, TheSuccessIsReportedOnce)
{
  OpenWithBright();
  QSignalSpy spy(m_pDialog.get(), &CShadingCorrectionDlg::SetInfoShowSignal);
  Click(Execute());
  for (int nFrame = 0; nFrame < 3; ++nFrame) {
    EXPECT_TRUE(OfferFromFrameThread());
  }
  QCoreApplication::processEvents();
  EXPECT_EQ(spy.size(), 1);
}

TEST_F(DialogExecution, WhatAnExecutionThrowsLeavesTheControlsAndEndsTheHostsLiveCorrection)
{
  for (const char *pMode : {"", "FlatFieldCorrection"}) {
    OpenWithBright(pMode);
    Click(Execute());
    ASSERT_TRUE(Preview()->isChecked()) << pMode;
    const std::string strPrompt = Prompt();
    m_stScript.fnMeanwhile = [] { throw std::runtime_error("thrown"); };
    EXPECT_EQ(BoxOf([&] { Click(Execute()); }), "thrown") << pMode;
    m_stScript.fnMeanwhile = [] {};
    EXPECT_TRUE(Preview()->isChecked()) << pMode;
    EXPECT_TRUE(Preview()->isEnabled()) << pMode;
    EXPECT_FALSE(m_pDialog->IsApplyingCorrection()) << pMode;
    EXPECT_EQ(Prompt(), strPrompt) << pMode;
  }
}

TEST_F(DialogExecution, AFailingExecutionOnTheHostTurnsThePreviewOff)
{
  OpenWithBright();
  Click(Execute());
  ASSERT_TRUE(Preview()->isChecked());
  const std::string strPrompt = Prompt();
  m_stScript.nExecuteStatus = PLUGIN_STATUS_INVALID_PARAM;
  EXPECT_EQ(BoxOf([&] { Click(Execute()); }), "Invalid input param");
  EXPECT_EQ(Prompt(), strPrompt);
  EXPECT_FALSE(Preview()->isEnabled());
  EXPECT_FALSE(Preview()->isChecked());
  EXPECT_FALSE(m_pDialog->IsApplyingCorrection());
  EXPECT_TRUE(Execute()->isEnabled());
}

TEST_F(DialogExecution, AFailingFrameIsShownOnceAndTurnsThePreviewOff)
{
  OpenWithBright();
  Click(Execute());
  QSignalSpy spy(m_pDialog.get(), &CShadingCorrectionDlg::SetInfoShowSignal);
  m_stScript.nCorrectStatus = PLUGIN_STATUS_INVALID_PARAM;
  EXPECT_FALSE(OfferFromFrameThread());
  EXPECT_FALSE(OfferFromFrameThread());
  QCoreApplication::processEvents();
  EXPECT_EQ(spy.size(), 1);
  EXPECT_EQ(Prompt(), FAILED_FRAME);
  EXPECT_EQ(PromptColour(), QColor(Qt::red));
  EXPECT_FALSE(Preview()->isChecked());
  EXPECT_FALSE(Preview()->isEnabled());
  EXPECT_FALSE(m_pDialog->IsApplyingCorrection());
}

TEST_F(DialogExecution, WithoutPreviewAFrameIsLeftAloneSuccessfully)
{
  OpenWithBright();
  bool bCorrected = false;
  EXPECT_EQ(OfferFrame(bCorrected), PLUGIN_STATUS_SUCCESS);
  EXPECT_FALSE(bCorrected);
}

TEST_F(DialogExecution, MissingBuffersAreRefused)
{
  OpenWithBright();
  Click(Execute());
  uint8_t nPixel = 0;
  bool bCorrected = false;
  EXPECT_EQ(m_pDialog->CorrectFrame(nullptr, &nPixel, 1, 1, 0x01080001, bCorrected), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(m_pDialog->CorrectFrame(&nPixel, nullptr, 1, 1, 0x01080001, bCorrected), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_FALSE(bCorrected);
}

TEST_F(DialogExecution, InDeviceModeTheTextComesAtOnce)
{
  OpenWithBright("FlatFieldCorrection");
  Click(Execute());
  EXPECT_EQ(Prompt(), EXECUTED);
  EXPECT_EQ(PromptColour(), QColor(Qt::black));
  EXPECT_TRUE(Preview()->isChecked());
  bool bCorrected = false;
  EXPECT_EQ(OfferFrame(bCorrected), PLUGIN_STATUS_SUCCESS);
  EXPECT_FALSE(bCorrected) << "the camera corrects";
  m_stScript.nExecuteStatus = PLUGIN_STATUS_ROI_MISMATCH;
  EXPECT_EQ(BoxOf([&] { Click(Execute()); }), "Current ROI is not matching with the coefficient  ");
  EXPECT_EQ(Prompt(), FAILED);
  EXPECT_EQ(PromptColour(), QColor(Qt::red));
  EXPECT_FALSE(Preview()->isEnabled());
}

TEST_F(DialogExecution, ExecutionWithoutAProcessIsRefused)
{
  OpenWithBright();
  m_pDialog->ReleaseProcess();
  EXPECT_EQ(BoxOf([&] { m_pDialog->Slot_objExecuteShadingCorrection_Button_clicked(); }), "Invalid input param");
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(DialogExecution, ThePreviewBoxSwitchesTheHostsCorrection)
{
  OpenWithBright();
  Click(Execute());
  ClickBox(Preview());
  EXPECT_FALSE(Preview()->isChecked());
  EXPECT_FALSE(m_pDialog->IsApplyingCorrection());
  EXPECT_FALSE(OfferFromFrameThread());
  ClickBox(Preview());
  EXPECT_TRUE(m_pDialog->IsApplyingCorrection());
  EXPECT_TRUE(OfferFromFrameThread());
  QCoreApplication::processEvents();
  EXPECT_EQ(Prompt(), EXECUTED) << "switching on reports again";
}

TEST_F(DialogExecution, ThePreviewBoxSwitchesTheCamerasCorrection)
{
  OpenWithBright("FlatFieldCorrection");
  auto &mode = m_camera.Device().AddEnumeration("FlatFieldCorrection").Entry("Off", 0).Entry("On", 1);
  Click(Execute());
  ClickBox(Preview());
  EXPECT_EQ(mode.PeekSymbolic(), "Off");
  ClickBox(Preview());
  EXPECT_EQ(mode.PeekSymbolic(), "On");
  mode.Access(GenApi::RO);
  EXPECT_EQ(BoxOf([&] { ClickBox(Preview()); }), "Failure to operation device feature");
}

TEST_F(DialogExecution, AWaitCursorShowsWhileTheCameraWorksAndNoneWhileTheUserChoosesAFile)
{
  OpenWithBright("FlatFieldCorrection");
  std::vector<bool> listWaiting;
  m_stScript.fnNoted = [&listWaiting](const std::string &strCall) {
    if (strCall.find("gray") == std::string::npos && strCall.find("Count") == std::string::npos) {
      const QCursor *pCursor = QApplication::overrideCursor();
      listWaiting.push_back(pCursor != nullptr && pCursor->shape() == Qt::WaitCursor);
    }
  };
  for (const char *pName :
       {"ExecuteShadingCorrection_Button", "LoadFlash_Button", "SaveFlash_Button", "LoadPC_Button", "SavePC_Button"}) {
    Click(Button(pName));
    EXPECT_EQ(QApplication::overrideCursor(), nullptr) << pName;
  }
  EXPECT_EQ(listWaiting, (std::vector<bool>{true, true, true, false, false}));
}

TEST_F(DialogExecution, FramesAreLeftAloneWhileAnExecutionOrALoadRunsAndGoOnBeingCorrectedWhileAFileIsSaved)
{
  OpenWithBright();
  Click(Execute());
  std::vector<bool> listApplying;
  m_stScript.fnMeanwhile = [&] { listApplying.push_back(m_pDialog->IsApplyingCorrection()); };
  for (const char *pName : {"ExecuteShadingCorrection_Button", "LoadPC_Button", "SavePC_Button"}) {
    Click(Button(pName));
    EXPECT_TRUE(m_pDialog->IsApplyingCorrection()) << pName;
  }
  EXPECT_EQ(listApplying, (std::vector<bool>{false, false, true}));
}

TEST_F(DialogExecution, FlashOperationsReloadTheSettings)
{
  m_stScript.stInfo.nFrameCount = 1;
  ASSERT_EQ(Open("FlatFieldCorrection"), PLUGIN_STATUS_SUCCESS);
  m_stScript.stInfo.nFrameCount = 16;
  m_stScript.stInfo.nExpectGray = 44;
  Click(Button("LoadFlash_Button"));
  EXPECT_EQ(FrameSlider()->value(), 16);
  EXPECT_EQ(GraySlider()->value(), 44);
  EXPECT_EQ(GrayBox()->value(), 44);
  EXPECT_EQ(m_stScript.listCalls, (std::vector<std::string>{"load flash", "FFCFrameCount_16", "gray 44"}));
  Click(Button("SaveFlash_Button"));
  EXPECT_EQ(m_stScript.listCalls.back(), "save flash");
  m_stScript.nFlashStatus = PLUGIN_STATUS_ROI_MISMATCH;
  for (const char *pName : {"LoadFlash_Button", "SaveFlash_Button"}) {
    EXPECT_EQ(BoxOf([&] { Click(Button(pName)); }), "Current ROI is not matching with the coefficient  ");
  }
}

TEST_F(DialogExecution, InTailorModeALoadLeavesTheExpectedGray)
{
  ASSERT_EQ(Open("TailorFlatFieldCorrection"), PLUGIN_STATUS_SUCCESS);
  m_stScript.stInfo.nFrameCount = 16;
  m_stScript.stInfo.nExpectGray = 44;
  Click(Button("LoadFlash_Button"));
  EXPECT_EQ(FrameSlider()->value(), 16);
  EXPECT_EQ(GraySlider()->value(), 0);
}

TEST_F(DialogExecution, LoadingAFileOnTheHostSwitchesThePreviewOn)
{
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  Click(Button("LoadPC_Button"));
  EXPECT_TRUE(Preview()->isEnabled());
  EXPECT_TRUE(Preview()->isChecked());
  EXPECT_TRUE(m_pDialog->IsApplyingCorrection());
  EXPECT_EQ(m_stScript.listCalls, std::vector<std::string>{"load file"});
  EXPECT_TRUE(OfferFromFrameThread());
  QCoreApplication::processEvents();
  EXPECT_EQ(Prompt(), "") << "nothing was executed";
}

TEST_F(DialogExecution, LoadingAFileInDeviceModeReloadsTheSettings)
{
  ASSERT_EQ(Open("FlatFieldCorrection"), PLUGIN_STATUS_SUCCESS);
  m_stScript.stInfo.nFrameCount = 2;
  m_stScript.stInfo.nExpectGray = 9;
  Click(Button("LoadPC_Button"));
  EXPECT_EQ(FrameSlider()->value(), 4);
  EXPECT_EQ(GraySlider()->value(), 9);
  EXPECT_FALSE(Preview()->isEnabled());
}

TEST_F(DialogExecution, LoadingAFileInTailorModeReloadsTheFrameCountAlone)
{
  ASSERT_EQ(Open("TailorFlatFieldCorrection"), PLUGIN_STATUS_SUCCESS);
  m_stScript.stInfo.nFrameCount = 8;
  m_stScript.stInfo.nExpectGray = 9;
  Click(Button("LoadPC_Button"));
  EXPECT_EQ(FrameSlider()->value(), 12);
  EXPECT_EQ(GraySlider()->value(), 0);
  EXPECT_EQ(m_stScript.listCalls, (std::vector<std::string>{"load file", "FFCFrameCount_8"}));
  EXPECT_FALSE(Preview()->isEnabled());
}

TEST_F(DialogExecution, InTailorModeThePreviewBoxSwitchesTheCamerasCorrection)
{
  m_camera.Device().AddEnumeration("FlatFieldCorrection").Entry("Off", 0).Entry("On", 1);
  ASSERT_EQ(Open("TailorFlatFieldCorrection"), PLUGIN_STATUS_SUCCESS);
  Click(Bright());
  Click(Execute());
  ClickBox(Preview());
  EXPECT_EQ(m_camera.Enumeration("FlatFieldCorrection").PeekSymbolic(), "Off");
  ClickBox(Preview());
  EXPECT_EQ(m_camera.Enumeration("FlatFieldCorrection").PeekSymbolic(), "On");
  m_camera.Enumeration("FlatFieldCorrection").Access(GenApi::NA);
  EXPECT_EQ(BoxOf([&] { ClickBox(Preview()); }), "Failure to operation device feature");
}

TEST_F(DialogExecution, SettingsThatTheCameraRefusesAfterALoadAreReported)
{
  m_stScript.stInfo.nFrameCount = 1;
  ASSERT_EQ(Open("FlatFieldCorrection"), PLUGIN_STATUS_SUCCESS);
  m_stScript.stInfo.nFrameCount = 16;
  m_stScript.nFrameCountStatus = PLUGIN_STATUS_FEATURE_ERROR;
  EXPECT_EQ(BoxOf([&] { Click(Button("LoadPC_Button")); }), "Failure to operation device feature");
  EXPECT_EQ(FrameSlider()->value(), 16); // what the coefficients were made with
  m_stScript.nFrameCountStatus = PLUGIN_STATUS_SUCCESS;
  m_stScript.stInfo.nExpectGray = 77;
  m_stScript.nExpectGrayStatus = PLUGIN_STATUS_FEATURE_ERROR;
  EXPECT_EQ(BoxOf([&] { Click(Button("LoadFlash_Button")); }), "Failure to operation device feature");
  EXPECT_EQ(GraySlider()->value(), 0);
  EXPECT_EQ(GrayBox()->value(), 0);
  m_stScript.nExpectGrayStatus = PLUGIN_STATUS_SUCCESS;
  Click(Button("LoadFlash_Button"));
  EXPECT_EQ(GraySlider()->value(), 77);
}

TEST_F(DialogExecution, ACancelledLoadIsSilentAndLeavesThePreviewOn)
{
  OpenWithBright();
  Click(Execute());
  m_stScript.nFileStatus = PLUGIN_STATUS_SILENT;
  CModalAnswer answer;
  Click(Button("LoadPC_Button"));
  Click(Button("SavePC_Button"));
  EXPECT_TRUE(answer.GetBoxes().empty());
  EXPECT_TRUE(Preview()->isChecked());
  EXPECT_TRUE(m_pDialog->IsApplyingCorrection());
}

TEST_F(DialogExecution, ACancelledLoadLeavesThePreviewOffToo)
{
  OpenWithBright();
  Click(Execute());
  ClickBox(Preview());
  m_stScript.nFileStatus = PLUGIN_STATUS_SILENT;
  Click(Button("LoadPC_Button"));
  EXPECT_FALSE(Preview()->isChecked());
  EXPECT_FALSE(m_pDialog->IsApplyingCorrection());
}

TEST_F(DialogExecution, AFailedLoadOnTheHostEndsTheLiveCorrectionAsThePreviewShows)
{
  OpenWithBright();
  Click(Execute());
  m_stScript.nFileStatus = PLUGIN_STATUS_READ_FILE_ERROR;
  EXPECT_EQ(BoxOf([&] { Click(Button("LoadPC_Button")); }), "Read file error");
  EXPECT_FALSE(m_pDialog->IsApplyingCorrection());
  EXPECT_FALSE(Preview()->isChecked());
  ASSERT_TRUE(Preview()->isEnabled()) << "the former coefficients are in force";
  ClickBox(Preview());
  EXPECT_TRUE(OfferFromFrameThread());
}

TEST_F(DialogExecution, WhatALoadThrowsIsNoCancelledLoad)
{
  OpenWithBright();
  Click(Execute());
  m_stScript.fnMeanwhile = [] { throw std::runtime_error("thrown"); };
  EXPECT_EQ(BoxOf([&] { Click(Button("LoadPC_Button")); }), "thrown");
  EXPECT_FALSE(m_pDialog->IsApplyingCorrection());
  EXPECT_FALSE(Preview()->isChecked());
}

TEST_F(DialogExecution, FailingFileOperationsAreReported)
{
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  m_stScript.nFileStatus = PLUGIN_STATUS_OPEN_FILE_ERROR;
  EXPECT_EQ(BoxOf([&] { Click(Button("LoadPC_Button")); }), "Open file error");
  m_stScript.nFileStatus = PLUGIN_STATUS_WRITE_FILE_ERROR;
  EXPECT_EQ(BoxOf([&] { Click(Button("SavePC_Button")); }), "Write file error");
  EXPECT_FALSE(Preview()->isEnabled());
}

TEST_F(DialogExecution, FlashAndFileWithoutAProcessAreRefused)
{
  ASSERT_EQ(Open("FlatFieldCorrection"), PLUGIN_STATUS_SUCCESS);
  m_pDialog->ReleaseProcess();
  for (const char *pName : {"LoadFlash_Button", "SaveFlash_Button", "LoadPC_Button", "SavePC_Button"}) {
    EXPECT_EQ(BoxOf([&] { Click(Button(pName)); }), "Invalid input param") << pName;
  }
}

TEST_F(DialogExecution, ThePreviewBoxWithoutAProcessDoesNothing)
{
  OpenWithBright();
  Click(Execute());
  m_pDialog->ReleaseProcess();
  CModalAnswer answer;
  for (const bool bChecked : {false, true}) {
    m_pDialog->SlotPreviewCorrectionEffect(bChecked);
    EXPECT_TRUE(m_pDialog->IsApplyingCorrection()) << "as it was";
  }
  EXPECT_TRUE(answer.GetBoxes().empty());
}

TEST_F(DialogExecution, AServiceThatEndsWithinAnOperationEndsItsSlotWithoutAWord)
{
  m_camera.AddShadingCorrectionMode("FlatFieldCorrection");
  m_stScript.nExecuteStatus = PLUGIN_STATUS_BUFFER_SIZE_ERROR;
  m_stScript.nFlashStatus = PLUGIN_STATUS_BUFFER_SIZE_ERROR;
  m_stScript.nFileStatus = PLUGIN_STATUS_BUFFER_SIZE_ERROR;
  using Dlg = CShadingCorrectionDlg;
  for (const auto &[fnSlot, pCall] : {std::pair{&Dlg::Slot_objExecuteShadingCorrection_Button_clicked, "execute"},
                                      {&Dlg::Slot_objLoadFlash_Button_clicked, "load flash"},
                                      {&Dlg::Slot_objSaveFlash_Button_clicked, "save flash"},
                                      {&Dlg::Slot_objLoadPC_Button_clicked, "load file"}}) {
    SCOPED_TRACE(pCall);
    m_stScript.fnNoted = [](const std::string &) {};
    m_stScript.bDestroyed = false;
    Build();
    ASSERT_EQ(Init(), PLUGIN_STATUS_SUCCESS);
    const QPointer<Dlg> pDialog = m_pDialog.get();
    m_stScript.fnNoted = [&](const std::string &) {
      m_pDialog.release()->Retire();
      pDialog->Retire();
      pDialog->Slot_objSaveFlash_Button_clicked(); // nobody's any more
      pDialog->Slot_objAcquisitionFrame_Slider_valueChanged(4);
      EXPECT_FALSE(m_stScript.bDestroyed);
    };
    CModalAnswer answer;
    (pDialog.data()->*fnSlot)();
    EXPECT_EQ(m_stScript.listCalls, std::vector<std::string>{pCall});
    EXPECT_TRUE(m_stScript.bDestroyed);
    EXPECT_TRUE(answer.GetBoxes().empty());
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(pDialog, nullptr);
  }
}

TEST_F(DialogExecution, AFileThatWasNotSavedIsReportedAlsoWhenTheServiceHasEndedMeanwhile)
{
  for (const int32_t nStatus : {PLUGIN_STATUS_INVALID_PARAM, PLUGIN_STATUS_SUCCESS, PLUGIN_STATUS_SILENT}) {
    ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
    m_stScript.nFileStatus = nStatus;
    m_stScript.fnMeanwhile = [this] { m_pDialog.release()->Retire(); };
    CModalAnswer answer;
    Click(Button("SavePC_Button"));
    EXPECT_EQ(answer.GetBoxes().size(), nStatus == PLUGIN_STATUS_INVALID_PARAM ? 1U : 0U) << nStatus;
    for (const CModalAnswer::SBox &stBox : answer.GetBoxes()) {
      EXPECT_EQ(stBox.strMessage, "Invalid input param");
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
}

TEST_F(DialogExecution, AnErrorWithoutMemoryForItsBoxIsShownInThePromptLine)
{
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  m_stScript.nFileStatus = PLUGIN_STATUS_WRITE_FILE_ERROR;
  CModalAnswer answer;
  {
    const CFailingTranslator failing("CShadingCorrectionDlg", "Error");
    Click(Button("SavePC_Button"));
  }
  EXPECT_TRUE(answer.GetBoxes().empty());
  EXPECT_EQ(Prompt(), "Write file error");
  EXPECT_EQ(PromptColour(), QColor(Qt::red));
}

TEST_F(DialogExecution, AnErrorIsShownInAModalBoxWithTheIconOfAnErrorAndOneButton)
{
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  m_stScript.nFileStatus = PLUGIN_STATUS_WRITE_FILE_ERROR;
  const QImage imageExpected = QPixmap(QStringLiteral(":/skin/images/ErrorBig.png")).toImage();
  int nIcons = 0;
  int nButtons = 0;
  CModalAnswer answer;
  answer.BeforeAnswer([&](QDialog &dialog) {
    EXPECT_TRUE(dialog.isModal());
    EXPECT_EQ(dialog.parentWidget(), nullptr);
    for (const QLabel *pLabel : dialog.findChildren<QLabel *>()) {
      nIcons += pLabel->pixmap(Qt::ReturnByValue).toImage() == imageExpected ? 1 : 0;
    }
    for (const QPushButton *pButton : dialog.findChildren<QPushButton *>()) {
      nButtons += pButton->text().isEmpty() || !pButton->isVisible() ? 0 : 1;
    }
  });
  Click(Button("SavePC_Button"));
  ASSERT_EQ(answer.GetBoxes().size(), 1U);
  EXPECT_EQ(answer.GetBoxes()[0].strPressed, "OK");
  EXPECT_FALSE(imageExpected.isNull());
  EXPECT_EQ(nIcons, 1);
  EXPECT_EQ(nButtons, 1);
}

TEST_F(DialogExecution, EveryStatusButTheSilentOnesIsReportedInItsWords)
{
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  std::vector<int32_t> listStatuses = {1, -1, -2, -3, -4, -2000};
  for (int32_t nStatus = -1020; nStatus <= -1001; ++nStatus) {
    listStatuses.push_back(nStatus);
  }
  for (const int32_t nStatus : listStatuses) {
    m_stScript.nFileStatus = nStatus;
    if (nStatus != PLUGIN_STATUS_SILENT) {
      EXPECT_EQ(BoxOf([&] { Click(Button("SavePC_Button")); }), GetStatusSourceText(nStatus, ETextAudience::Dialog))
        << nStatus;
    }
  }
  CModalAnswer answer;
  for (const int32_t nStatus : {PLUGIN_STATUS_SUCCESS, PLUGIN_STATUS_SILENT}) {
    m_stScript.nFileStatus = nStatus;
    Click(Button("SavePC_Button"));
  }
  EXPECT_TRUE(answer.GetBoxes().empty());
}

TEST_F(DialogExecution, EveryTextOfItsOwnIsTranslatedInItsContextAndEveryStatusInTheCommonOne)
{
  const CMarkingTranslator marking;
  const CModalAnswer answer;
  ASSERT_EQ(Open("FlatFieldCorrection"), PLUGIN_STATUS_SUCCESS);
  std::vector<std::string> listTexts = {Button("SaveFlash_Button")->toolTip().toStdString()};
  const auto acquire = [&](QPushButton *pButton, double dMaxGray, bool bBlackLevelDefault) {
    m_stScript.dMaxGray = dMaxGray;
    m_stScript.bBlackLevelDefault = bBlackLevelDefault;
    Click(pButton);
    listTexts.push_back(Prompt());
  };
  acquire(Dark(), 100, true);
  acquire(Dark(), 3, false);
  acquire(Dark(), 3, true);
  acquire(Bright(), 3, true);
  acquire(Bright(), 255, true);
  acquire(Bright(), 100, true);
  for (const int32_t nStatus : {PLUGIN_STATUS_SUCCESS, PLUGIN_STATUS_CORRECTION_ERROR}) {
    m_stScript.nExecuteStatus = nStatus;
    Click(Execute());
    listTexts.push_back(Prompt());
  }
  m_pDialog->SlotShowInfo(false);
  listTexts.push_back(Prompt());
  m_pDialog->SlotShowInfo(true);
  EXPECT_EQ(Prompt(), std::string("CShadingCorrectionDlg: ") + EXECUTED);
  for (const std::string &strText : listTexts) {
    EXPECT_EQ(strText.rfind("CShadingCorrectionDlg: ", 0), 0U) << strText;
    EXPECT_EQ(std::count(listTexts.begin(), listTexts.end(), strText), 1) << strText;
  }
  ASSERT_EQ(answer.GetBoxes().size(), 1U);
  EXPECT_EQ(answer.GetBoxes()[0].strTitle, "CShadingCorrectionDlg: Error");
  EXPECT_EQ(answer.GetBoxes()[0].strMessage, "QObject: Flat field correction error");
  EXPECT_EQ(answer.GetBoxes()[0].strPressed, "QObject: OK");
}
