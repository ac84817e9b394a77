// The two acquisitions: verdicts, refusals, and what they leave behind.
#include <algorithm>
#include <stdexcept>
#include <utility>

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QTimer>

#include "tests/pluginobject/shadingcorrection/dialogfixture.h"

using namespace ffc::test;
using ffc::genapi::CSoftwareEnumeration;
using ffc::genapi::CSoftwareInteger;

using DialogAcquisition = CDialogTest;

namespace {

constexpr const char *DARK_COMPLETE = "Acquisition of dark field image complete";
constexpr const char *DARK_TOO_BRIGHT = "The dark field image is too bright, the flat field correction will not use "
                                        "the dark field image,this will not affect "
                                        "the flat field correction effect";
constexpr const char *DARK_BLACK_LEVEL =
  "The current black level is not the default value, the flat field correction will not use the dark field image,this "
  "will not affect the flat field correction effect";
constexpr const char *BRIGHT_COMPLETE = "Acquisition of bright field images complete";
constexpr const char *BRIGHT_TOO_DARK =
  "The bright field image is too dark, it will affect the flat field correction effect,it is recommended to adjust the "
  "brightness of the image in the range of 20-250";
constexpr const char *BRIGHT_TOO_BRIGHT = "The bright field image is too bright, it will affect the flat field "
                                          "correction effect,it is recommended to adjust the "
                                          "brightness of the image in the range of 20-250";
constexpr const char *PARAMETERS_MODIFIED =
  "The current device parameters have been modified. Please restore the default parameters and try again!";

} // namespace

TEST_F(DialogAcquisition, ADarkFieldIsJudgedWithBothLimitsAllowed)
{
  struct SCase {
    double dMax;
    double dDiff;
    bool bBlackLevelDefault;
    const char *pText;
    QColor colour;
  };
  const SCase listCases[] = {
    {20.0, 5.0, true, DARK_COMPLETE, Qt::black},  {20.01, 0.0, true, DARK_TOO_BRIGHT, Qt::red},
    {3.0, 5.01, true, DARK_TOO_BRIGHT, Qt::red},  {20.0, 5.0, false, DARK_BLACK_LEVEL, Qt::red},
    {21.0, 0.0, false, DARK_TOO_BRIGHT, Qt::red},
  };
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  for (const SCase &stCase : listCases) {
    m_stScript.dMaxGray = stCase.dMax;
    m_stScript.dGrayDiff = stCase.dDiff;
    m_stScript.bBlackLevelDefault = stCase.bBlackLevelDefault;
    Click(Dark());
    EXPECT_EQ(Prompt(), stCase.pText) << stCase.dMax;
    EXPECT_EQ(PromptColour(), stCase.colour);
  }
}

TEST_F(DialogAcquisition, ADarkFieldLeavesExecuteAsItWasAndForgetsThePreview)
{
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  Click(Dark());
  EXPECT_FALSE(Execute()->isEnabled());
  m_stScript.dMaxGray = 100;
  Click(Bright());
  Click(Execute());
  ASSERT_TRUE(Preview()->isChecked());
  Click(Dark());
  EXPECT_TRUE(Execute()->isEnabled());
  EXPECT_FALSE(Preview()->isEnabled());
  EXPECT_FALSE(Preview()->isChecked());
  EXPECT_FALSE(m_pDialog->IsApplyingCorrection());
}

TEST_F(DialogAcquisition, EveryCompletedBrightFieldIsAcceptedWithItsVerdict)
{
  struct SCase {
    double dMax;
    const char *pText;
    QColor colour;
  };
  const SCase listCases[] = {
    {19.99, BRIGHT_TOO_DARK, Qt::red},
    {20.0, BRIGHT_COMPLETE, Qt::black},
    {250.0, BRIGHT_COMPLETE, Qt::black},
    {250.01, BRIGHT_TOO_BRIGHT, Qt::red},
  };
  for (const SCase &stCase : listCases) {
    ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
    ASSERT_FALSE(Execute()->isEnabled());
    m_stScript.dMaxGray = stCase.dMax;
    Click(Bright());
    EXPECT_EQ(Prompt(), stCase.pText) << stCase.dMax;
    EXPECT_EQ(PromptColour(), stCase.colour);
    EXPECT_TRUE(Execute()->isEnabled());
    EXPECT_FALSE(Preview()->isEnabled());
  }
}

TEST_F(DialogAcquisition, OnTheHostTheBrightFieldsGrayBecomesTheExpectedOne)
{
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  m_stScript.dMaxGray = 187.9;
  Click(Bright());
  EXPECT_EQ(GraySlider()->value(), 187);
  EXPECT_EQ(GrayBox()->value(), 187);
  EXPECT_EQ(m_stScript.listCalls[0], "bright");
  EXPECT_EQ(m_stScript.listCalls[1], "gray 187");
}

TEST_F(DialogAcquisition, ARefusedExpectedGrayIsTheStatusOfTheBrightField)
{
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  m_stScript.dMaxGray = 100;
  m_stScript.nExpectGrayStatus = PLUGIN_STATUS_FEATURE_ERROR;
  CModalAnswer answer;
  Click(Bright());
  ASSERT_GE(answer.GetBoxes().size(), 1U);
  EXPECT_EQ(answer.GetBoxes().back().strMessage, "Failure to operation device feature");
  EXPECT_TRUE(Execute()->isEnabled());
}

TEST_F(DialogAcquisition, InDeviceModeTheExpectedGrayStaysTheCameras)
{
  m_stScript.stInfo.nExpectGray = 50;
  ASSERT_EQ(Open("FlatFieldCorrection"), PLUGIN_STATUS_SUCCESS);
  m_stScript.dMaxGray = 187.9;
  Click(Bright());
  EXPECT_EQ(GraySlider()->value(), 50);
  EXPECT_EQ(m_stScript.listCalls, std::vector<std::string>{"bright"});
}

TEST_F(DialogAcquisition, WhileItRunsTheButtonIsDisabledUnderAWaitCursorAndBothComeBack)
{
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  for (const auto fnButton : {&DialogAcquisition::Dark, &DialogAcquisition::Bright}) {
    QPushButton *pButton = (this->*fnButton)();
    bool bSeen = false;
    m_stScript.fnMeanwhile = [&] {
      bSeen = true;
      EXPECT_FALSE(pButton->isEnabled());
      ASSERT_NE(QApplication::overrideCursor(), nullptr);
      EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    };
    Click(pButton);
    EXPECT_TRUE(bSeen);
    EXPECT_TRUE(pButton->isEnabled());
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  }
}

TEST_F(DialogAcquisition, AHostsOwnWaitCursorSurvives)
{
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  QApplication::setOverrideCursor(Qt::BusyCursor);
  Click(Dark());
  Click(Bright());
  ASSERT_NE(QApplication::overrideCursor(), nullptr);
  EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::BusyCursor);
  QApplication::restoreOverrideCursor();
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(DialogAcquisition, AConvertedImageRefusesBothAcquisitions)
{
  const std::pair<const char *, std::function<void(CTestCamera &)>> listChanges[] = {
    {"format",
     [](CTestCamera &camera) {
       camera.Output().Find<CSoftwareEnumeration>("OutPixelFormat")->OnRead([] { return 0x02180014; });
     }},
    {"payload",
     [](CTestCamera &camera) {
       camera.Output().Find<CSoftwareInteger>("OutputPayloadSize")->OnRead([] { return 1; });
     }},
    {"width",
     [](CTestCamera &camera) { camera.Output().Find<CSoftwareInteger>("OutputWidth")->OnRead([] { return 1; }); }},
    {"height",
     [](CTestCamera &camera) { camera.Output().Find<CSoftwareInteger>("OutputHeight")->OnRead([] { return 1; }); }},
  };
  for (const auto &[pName, fnChange] : listChanges) {
    CTestCamera camera;
    camera.Output().Find<CSoftwareEnumeration>("OutPixelFormat")->Entry("RGB8", 0x02180014);
    fnChange(camera);
    PLUGIN_INIT_PARAM stParam;
    stParam.pOutputNodeMap = static_cast<GenApi::INodeMap *>(&camera.Output());
    stParam.pStreamNodeMap = static_cast<GenApi::INodeMap *>(&camera.Stream());
    stParam.pDeviceNodeMap = static_cast<GenApi::INodeMap *>(&camera.Device());
    m_pDialog = std::make_unique<CShadingCorrectionDlg>(nullptr, stParam);
    ASSERT_EQ(m_pDialog->InitDialog(), PLUGIN_STATUS_SUCCESS);
    m_pDialog->show();
    EXPECT_EQ(BoxOf([&] { Click(Dark()); }), PARAMETERS_MODIFIED) << pName;
    EXPECT_EQ(BoxOf([&] { Click(Bright()); }), PARAMETERS_MODIFIED) << pName;
    EXPECT_TRUE(Dark()->isEnabled());
    EXPECT_TRUE(Bright()->isEnabled());
  }
}

TEST_F(DialogAcquisition, AMissingOutputFeatureSkipsItsComparison)
{
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  m_camera.Output().Find<CSoftwareInteger>("OutputWidth")->OnRead([] { return 1; });
  m_camera.Output().Find<CSoftwareInteger>("OutputWidth")->Access(GenApi::NI);
  Click(Dark());
  EXPECT_EQ(m_stScript.listCalls, std::vector<std::string>{"dark"});
}

TEST_F(DialogAcquisition, AFailingComparisonEndsTheAcquisitionWithoutAMessage)
{
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  m_camera.Output().Find<CSoftwareInteger>("OutputHeight")->Access(GenApi::NA);
  CModalAnswer answer;
  Click(Dark());
  Click(Bright());
  EXPECT_TRUE(answer.GetBoxes().empty());
  EXPECT_TRUE(m_stScript.listCalls.empty());
}

TEST_F(DialogAcquisition, AnUnsupportedPixelFormatIsRefused)
{
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  m_stScript.bPixelFormatSupported = false;
  EXPECT_EQ(BoxOf([&] { Click(Dark()); }), "The pixelformat should be changed to bayer!");
  EXPECT_EQ(BoxOf([&] { Click(Bright()); }), "The pixelformat should be changed to bayer!");
  EXPECT_TRUE(m_stScript.listCalls.empty());
}

TEST_F(DialogAcquisition, AFailureKeepsTheControlsAndEndsTheLiveCorrectionAsThePreviewShows)
{
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  m_stScript.dMaxGray = 100;
  Click(Bright());
  Click(Execute());
  m_stScript.nDarkStatus = PLUGIN_STATUS_BUFFER_TIMEOUT;
  m_stScript.nBrightStatus = PLUGIN_STATUS_BUFFER_SIZE_ERROR;
  m_stScript.fnMeanwhile = [this] { EXPECT_FALSE(m_pDialog->IsApplyingCorrection()); };
  for (const auto fnButton : {&DialogAcquisition::Dark, &DialogAcquisition::Bright}) {
    QPushButton *pButton = (this->*fnButton)();
    ASSERT_TRUE(m_pDialog->IsApplyingCorrection());
    const std::string strPrompt = Prompt();
    EXPECT_EQ(BoxOf([&] { Click(pButton); }), pButton == Dark() ? "Get buffer time out" : "Buffer size is error  ");
    EXPECT_EQ(Prompt(), strPrompt);
    EXPECT_FALSE(m_pDialog->IsApplyingCorrection());
    EXPECT_FALSE(Preview()->isChecked());
    EXPECT_TRUE(Dark()->isEnabled());
    EXPECT_TRUE(Bright()->isEnabled());
    // The coefficients are still there: one click brings the correction back.
    ASSERT_TRUE(Preview()->isEnabled());
    ClickBox(Preview());
  }
}

TEST_F(DialogAcquisition, AFailureOfACameraThatCorrectsItselfLeavesThePreview)
{
  ASSERT_EQ(Open("FlatFieldCorrection"), PLUGIN_STATUS_SUCCESS);
  Click(Bright());
  Click(Execute());
  m_stScript.nDarkStatus = PLUGIN_STATUS_BUFFER_TIMEOUT;
  EXPECT_EQ(BoxOf([&] { Click(Dark()); }), "Get buffer time out");
  EXPECT_TRUE(Preview()->isChecked());
}

TEST_F(DialogAcquisition, WhatAnOperationThrowsIsShownOnceAndLeavesTheControls)
{
  const std::pair<const char *, std::function<void()>> listThrows[] = {
    {"access", [] { throw GenICam::AccessException("access", __FILE__, __LINE__); }},
    {"argument", [] { throw GenICam::InvalidArgumentException("argument", __FILE__, __LINE__); }},
    {"range", [] { throw GenICam::OutOfRangeException("range", __FILE__, __LINE__); }},
    {"generic", [] { throw GenICam::GenericException("generic", __FILE__, __LINE__); }},
    {"standard", [] { throw std::runtime_error("standard"); }},
    {"Unknown error", [] { throw 42; }},
  };
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  m_stScript.dMaxGray = 100;
  Click(Bright());
  for (const auto &[pText, fnThrow] : listThrows) {
    m_stScript.fnMeanwhile = fnThrow;
    EXPECT_EQ(BoxOf([&] { Click(Dark()); }), pText);
    EXPECT_EQ(BoxOf([&] { Click(Bright()); }), pText);
    EXPECT_EQ(BoxOf([&] { Click(Execute()); }), pText);
    EXPECT_TRUE(Dark()->isEnabled());
    EXPECT_TRUE(Bright()->isEnabled());
    EXPECT_TRUE(Execute()->isEnabled());
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  }
}

TEST_F(DialogAcquisition, WithoutAProcessTheButtonsDoNothing)
{
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  m_pDialog->ReleaseProcess();
  CModalAnswer answer;
  Click(Dark());
  Click(Bright());
  EXPECT_TRUE(answer.GetBoxes().empty());
  EXPECT_TRUE(Bright()->isEnabled());
}

TEST_F(DialogAcquisition, ClicksMadeMeanwhileStartNothingWithinTheOperation)
{
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  m_stScript.dMaxGray = 100;
  // A second click is already queued when the first one's slot lets events run.
  QTimer::singleShot(0, m_pDialog.get(), [this] { m_stScript.listCalls.emplace_back("pending event"); });
  Click(Dark());
  ASSERT_EQ(m_stScript.listCalls.size(), 2U);
  EXPECT_EQ(m_stScript.listCalls[0], "pending event");
  EXPECT_EQ(m_stScript.listCalls[1], "dark");
}

TEST_F(DialogAcquisition, APendingEventThatRetiresTheDialogEndsTheSlot)
{
  for (const auto fnButton : {&DialogAcquisition::Dark, &DialogAcquisition::Bright}) {
    ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
    const QPointer<QWidget> pDialog = m_pDialog.get();
    QPushButton *pButton = (this->*fnButton)();
    QTimer::singleShot(0, pButton, [this] { m_pDialog.release()->Retire(); });
    QMetaObject::invokeMethod(pButton, "clicked", Qt::DirectConnection);
    EXPECT_TRUE(m_stScript.listCalls.empty());
    EXPECT_TRUE(m_stScript.bDestroyed);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    ASSERT_NE(pDialog, nullptr) << "the button is still on the stack";
    EXPECT_FALSE(pDialog->isVisible());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(pDialog, nullptr);
  }
}

TEST_F(DialogAcquisition, ADialogWithoutASlotOnTheStackRetiresAtOnce)
{
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  const QPointer<QWidget> pDialog = m_pDialog.get();
  m_pDialog.release()->Retire();
  EXPECT_EQ(pDialog, nullptr);
  EXPECT_TRUE(m_stScript.bDestroyed);
}

TEST_F(DialogAcquisition, AServiceThatEndsWithinAnAcquisitionPutsTheCameraBackAndKeepsTheProcessUntilItReturns)
{
  for (const auto fnButton : {&DialogAcquisition::Dark, &DialogAcquisition::Bright}) {
    m_stScript.bDestroyed = false;
    ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
    m_stScript.fnMeanwhile = [this] {
      m_pDialog.release()->Retire();
      EXPECT_EQ(m_stScript.listCalls.back(), "restore");
      EXPECT_FALSE(m_stScript.bDestroyed);
    };
    CModalAnswer answer;
    Click((this->*fnButton)());
    EXPECT_TRUE(m_stScript.bDestroyed);
    EXPECT_TRUE(answer.GetBoxes().empty());
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
}

TEST_F(DialogAcquisition, AServiceThatEndsWithinAnOperationWithinAnAcquisitionPutsTheCameraBackToo)
{
  ASSERT_EQ(Open("FlatFieldCorrection"), PLUGIN_STATUS_SUCCESS);
  m_stScript.nDarkStatus = PLUGIN_STATUS_BUFFER_TIMEOUT;
  m_stScript.nFlashStatus = PLUGIN_STATUS_BUFFER_TIMEOUT;
  m_stScript.fnMeanwhile = [this] { m_pDialog->Slot_objSaveFlash_Button_clicked(); };
  m_stScript.fnNoted = [this](const std::string &strCall) {
    if (strCall == "save flash") {
      m_pDialog.release()->Retire();
    }
  };
  CModalAnswer answer;
  Click(Dark());
  EXPECT_EQ(m_stScript.listCalls, (std::vector<std::string>{"dark", "save flash", "restore"}));
  EXPECT_TRUE(m_stScript.bDestroyed);
  EXPECT_TRUE(answer.GetBoxes().empty());
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

TEST_F(DialogAcquisition, NoBoxStandsUnderAWaitCursor)
{
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  m_stScript.dMaxGray = 100;
  Click(Bright());
  CModalAnswer answer;
  int nBoxes = 0;
  answer.BeforeAnswer([&nBoxes](QDialog &) {
    ++nBoxes;
    EXPECT_EQ(QApplication::overrideCursor(), nullptr) << nBoxes;
  });
  m_stScript.fnMeanwhile = [] { throw std::runtime_error("thrown"); };
  for (QPushButton *pButton : {Dark(), Bright(), Execute()}) {
    Click(pButton);
  }
  m_stScript.fnMeanwhile = [] {};
  m_stScript.nExpectGrayStatus = PLUGIN_STATUS_FEATURE_ERROR;
  m_stScript.dMaxGray = 50;
  Click(Bright()); // the slider's slot within the button's
  m_camera.Output().Find<CSoftwareInteger>("OutputWidth")->OnRead([] { return 1; });
  Click(Dark());
  Click(Bright());
  EXPECT_GE(nBoxes, 6);
}

TEST_F(DialogAcquisition, ImpatientClicksStartNoOther)
{
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  m_stScript.dMaxGray = 100;
  for (const auto fnButton : {&DialogAcquisition::Dark, &DialogAcquisition::Bright}) {
    QPushButton *pButton = (this->*fnButton)();
    m_stScript.listCalls.clear();
    int nRuns = 0;
    // As the system's input is: queued while the operation keeps the thread.
    m_stScript.fnMeanwhile = [pButton, &nRuns] {
      ++nRuns;
      const QPointF position(pButton->rect().center());
      for (int nClick = 0; nClick < 2; ++nClick) {
        for (const auto eType : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
          QCoreApplication::postEvent(pButton, new QMouseEvent(eType, position, Qt::LeftButton, Qt::LeftButton, {}));
        }
        for (const auto eType : {QEvent::KeyPress, QEvent::KeyRelease}) {
          QCoreApplication::postEvent(pButton, new QKeyEvent(eType, Qt::Key_Space, Qt::NoModifier));
        }
      }
    };
    Click(pButton);
    QTest::qWait(20);
    EXPECT_EQ(nRuns, 1);
    Click(pButton);
    EXPECT_EQ(nRuns, 2) << "later clicks count";
    m_stScript.fnMeanwhile = [] {};
  }
}

TEST_F(DialogAcquisition, ClicksOnOtherWidgetsMeanwhileAreNotLost)
{
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  m_stScript.fnMeanwhile = [this, bPosted = false]() mutable {
    if (std::exchange(bPosted, true)) {
      return;
    }
    for (const auto eType : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
      QCoreApplication::postEvent(
        Bright(), new QMouseEvent(eType, QPointF(Bright()->rect().center()), Qt::LeftButton, Qt::LeftButton, {}));
    }
  };
  Click(Dark());
  EXPECT_EQ(m_stScript.listCalls[0], "dark");
  QTest::qWait(20);
  EXPECT_EQ(m_stScript.listCalls[1], "bright");
}

TEST_F(DialogAcquisition, TheFocusStaysOnTheButtonThatWasPressed)
{
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  m_stScript.dMaxGray = 100;
  for (const int32_t nStatus : {PLUGIN_STATUS_SUCCESS, PLUGIN_STATUS_BUFFER_TIMEOUT}) {
    m_stScript.nDarkStatus = nStatus;
    m_stScript.nBrightStatus = nStatus;
    for (const auto fnButton : {&DialogAcquisition::Dark, &DialogAcquisition::Bright}) {
      QPushButton *pButton = (this->*fnButton)();
      CModalAnswer answer;
      m_stScript.listCalls.clear();
      pButton->setFocus();
      for (int nPress = 0; nPress < 2; ++nPress) {
        ASSERT_EQ(m_pDialog->focusWidget(), pButton) << nStatus;
        QTest::keyClick(m_pDialog->focusWidget(), Qt::Key_Space);
        EXPECT_EQ(m_pDialog->focusWidget(), pButton) << nStatus;
      }
      const char *pCall = pButton == Dark() ? "dark" : "bright";
      EXPECT_EQ(std::count(m_stScript.listCalls.begin(), m_stScript.listCalls.end(), pCall), 2);
    }
  }
}

TEST_F(DialogAcquisition, TheFocusThatTheUserMovesMeanwhileStaysThere)
{
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  Dark()->setFocus();
  m_stScript.fnMeanwhile = [this] { GrayBox()->setFocus(); };
  Click(Dark());
  EXPECT_EQ(m_pDialog->focusWidget(), GrayBox());
  Dark()->setFocus();
  m_stScript.fnMeanwhile = [this] { m_pDialog->clearFocus(); };
  Click(Dark());
  EXPECT_EQ(m_pDialog->focusWidget(), Dark()) << "nobody else has it";
}

TEST_F(DialogAcquisition, AHostThatNeverRunsOutOfEventsDoesNotKeepTheButton)
{
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  QTimer timer;
  timer.start(0);
  Click(Dark());
  EXPECT_TRUE(Dark()->isEnabled());
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}
