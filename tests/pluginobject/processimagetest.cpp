// The entry of every frame.
#include <new>
#include <thread>
#include <utility>

#include <QPushButton>

#include "tests/pluginobject/pluginfixture.h"
#include "tests/support/framepump.h"
#include "tests/support/modalanswer.h"

using namespace ffc::test;

namespace {

constexpr uint32_t REQUESTED = 0;
constexpr uint32_t NOT_REQUESTED = 258;

class ProcessImage : public CPluginTest {
protected:
  ProcessImage() : m_listInput(m_camera.MakeFrame(100)), m_listOutput(m_camera.MakeFrame(7)) {}

  void InitializeWithScript()
  {
    ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
    m_stScript.listCalls.clear();
    Describe();
  }

  void Describe()
  {
    m_stInput.nPixelFormat = static_cast<int32_t>(m_camera.GetPixelFormat());
    m_stInput.nWidth = static_cast<int32_t>(m_camera.Integer("Width").Peek());
    m_stInput.nHeight = static_cast<int32_t>(m_camera.Integer("Height").Peek());
    m_stInput.nPayloadSize = static_cast<int32_t>(m_listInput.size());
    m_stInput.pBuffer = m_listInput.data();
    m_stOutput = m_stInput;
    m_stOutput.pBuffer = m_listOutput.data();
  }

  int32_t Process() { return m_pPlugin->ProcessImage(&m_stInput, &m_stOutput, 1, &m_stResult); }

  // What the preview does once the coefficients are there.
  void StartCorrecting() { FindDialog()->Slot_objExecuteShadingCorrection_Button_clicked(); }

  std::vector<uint8_t> m_listInput;
  std::vector<uint8_t> m_listOutput;
  PLUGIN_IMAGE_INFO m_stInput;
  PLUGIN_IMAGE_INFO m_stOutput;
  PLUGIN_PROCESS_RESULT m_stResult;
};

} // namespace

TEST_F(ProcessImage, NeedsBothBuffers)
{
  InitializeWithScript();
  m_stScript.nWaitResult = REQUESTED;
  m_stInput.pBuffer = nullptr;
  EXPECT_EQ(Process(), PLUGIN_STATUS_INVALID_PARAM);
  Describe();
  m_stOutput.pBuffer = nullptr;
  EXPECT_EQ(Process(), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(m_pPlugin->ProcessImage(nullptr, &m_stOutput, 1, &m_stResult), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(m_pPlugin->ProcessImage(&m_stInput, nullptr, 1, &m_stResult), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_TRUE(m_stScript.listCalls.empty());
  EXPECT_TRUE(m_stScript.listStopFlags.empty());
}

TEST_F(ProcessImage, KnowsOneModeOnly)
{
  InitializeWithScript();
  StartCorrecting();
  for (const uint32_t nMode : {0U, 2U, 0xFFFFFFFFU}) {
    EXPECT_EQ(m_pPlugin->ProcessImage(&m_stInput, &m_stOutput, nMode, &m_stResult), PLUGIN_STATUS_INVALID_PARAM);
    EXPECT_EQ(m_stResult.bCorrected, 0);
  }
}

TEST_F(ProcessImage, BeforeInitialisationAndAfterUninitialisingLetsFramesPass)
{
  Describe();
  EXPECT_EQ(Process(), PLUGIN_STATUS_SUCCESS);
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  m_pPlugin->Uninitialize();
  EXPECT_EQ(Process(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_stResult.bCorrected, 0);
  EXPECT_EQ(m_listOutput, m_camera.MakeFrame(7));
}

TEST_F(ProcessImage, ADialogThatWasDeletedBehindThePlugInLetsFramesPass)
{
  InitializeWithScript();
  StartCorrecting();
  delete FindDialog();
  EXPECT_EQ(Process(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_stResult.bCorrected, 0);
}

TEST_F(ProcessImage, HandsARequestedFrameOverAndDoesNotCorrectIt)
{
  InitializeWithScript();
  StartCorrecting();
  m_stScript.listCalls.clear();
  m_stScript.nWaitResult = REQUESTED;
  EXPECT_EQ(Process(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_stScript.listCalls, (std::vector<std::string>{"receive " + std::to_string(m_listInput.size()), "ready"}));
  EXPECT_EQ(m_stResult.bCorrected, 0);
}

TEST_F(ProcessImage, HandsNothingOfAFrameWithANegativeSizeOver)
{
  InitializeWithScript();
  m_stScript.nWaitResult = REQUESTED;
  for (const int32_t nPayloadSize : {-1, INT32_MIN}) {
    m_stScript.listCalls.clear();
    m_stInput.nPayloadSize = nPayloadSize;
    EXPECT_EQ(Process(), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(m_stScript.listCalls, (std::vector<std::string>{"receive 0", "ready"}));
  }
}

TEST_F(ProcessImage, KeepsNoFrameThatNobodyRequested)
{
  InitializeWithScript();
  for (const uint32_t nWaitResult : {NOT_REQUESTED, 0xFFFFFFFFU}) {
    m_stScript.nWaitResult = nWaitResult;
    EXPECT_EQ(Process(), PLUGIN_STATUS_SUCCESS);
  }
  EXPECT_TRUE(m_stScript.listCalls.empty());
}

TEST_F(ProcessImage, WithoutPreviewLeavesTheResultAsItWas)
{
  InitializeWithScript();
  for (const uint8_t nBefore : {uint8_t{0}, uint8_t{1}}) {
    m_stResult.bCorrected = nBefore;
    EXPECT_EQ(Process(), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(m_stResult.bCorrected, nBefore);
  }
}

TEST_F(ProcessImage, ReportsACorrectedFrame)
{
  InitializeWithScript();
  StartCorrecting();
  m_stResult.nReserved = 1234;
  EXPECT_EQ(Process(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_stResult.bCorrected, 1);
  EXPECT_EQ(m_stResult.nReserved, 1234);
}

TEST_F(ProcessImage, NeedsNoPlaceForTheResult)
{
  InitializeWithScript();
  StartCorrecting();
  EXPECT_EQ(m_pPlugin->ProcessImage(&m_stInput, &m_stOutput, 1, nullptr), PLUGIN_STATUS_SUCCESS);
}

TEST_F(ProcessImage, AFailingCorrectionSucceedsWithoutAResultAndEndsThePreview)
{
  InitializeWithScript();
  StartCorrecting();
  m_stScript.nCorrectStatus = PLUGIN_STATUS_INVALID_PARAM;
  EXPECT_EQ(Process(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_stResult.bCorrected, 0);
  EXPECT_FALSE(FindDialog()->IsApplyingCorrection());
  m_stScript.nCorrectStatus = PLUGIN_STATUS_SUCCESS;
  EXPECT_EQ(Process(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_stResult.bCorrected, 0);
}

TEST_F(ProcessImage, AFrameShorterThanItsPixelsIsLeftAloneAndThePreviewGoesOn)
{
  InitializeWithScript();
  StartCorrecting();
  for (const bool bWords : {false, true}) {
    m_stInput.nPixelFormat = bWords ? 0x01100005 : 0x01080001;
    const int32_t nWhole = m_stInput.nWidth * m_stInput.nHeight * (bWords ? 2 : 1);
    for (const int32_t nPayloadSize : {nWhole - 1, nWhole / 2, 1, 0, -1, INT32_MIN}) {
      m_stInput.nPayloadSize = nPayloadSize;
      EXPECT_EQ(Process(), PLUGIN_STATUS_SUCCESS);
      EXPECT_EQ(m_stResult.bCorrected, 0) << nPayloadSize;
    }
    EXPECT_TRUE(FindDialog()->IsApplyingCorrection());
    m_stInput.nPayloadSize = nWhole;
    EXPECT_EQ(Process(), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(m_stResult.bCorrected, 1);
    m_stResult = PLUGIN_PROCESS_RESULT();
  }
}

TEST_F(ProcessImage, TheSidesOfAFrameDoNotOverflowItsSize)
{
  InitializeWithScript();
  StartCorrecting();
  for (const int32_t nFormat : {0x01080001, 0x01100005}) {
    m_stInput.nPixelFormat = nFormat;
    m_stInput.nPayloadSize = INT32_MAX;
    for (const auto &[nWidth, nHeight] : {std::pair{INT32_MAX, INT32_MAX}, {1 << 16, 1 << 16}, {INT32_MAX, 2}}) {
      m_stInput.nWidth = nWidth;
      m_stInput.nHeight = nHeight;
      EXPECT_EQ(Process(), PLUGIN_STATUS_SUCCESS);
      EXPECT_EQ(m_stResult.bCorrected, 0) << nWidth;
    }
  }
}

TEST_F(ProcessImage, WhatIsThrownWhileAFrameIsTakenStaysWithinAndTheNextFrameIsTaken)
{
  InitializeWithScript();
  m_stScript.nWaitResult = REQUESTED;
  m_stScript.fnNoted = [](const std::string &) { throw std::bad_alloc(); };
  EXPECT_EQ(Process(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_stResult.bCorrected, 0);
  m_stScript.fnNoted = [](const std::string &) {};
  m_stScript.listCalls.clear();
  EXPECT_EQ(Process(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_stScript.listCalls.size(), 2U);
  EXPECT_EQ(m_pPlugin->Uninitialize(), PLUGIN_STATUS_SUCCESS) << "no frame counts as under way";
}

TEST_F(ProcessImage, AMonochromeCamerasFormatIsNotLookedAt)
{
  InitializeWithScript();
  for (const int32_t nFormat : {0x01080001, 0x02180014, 0}) {
    m_stInput.nPixelFormat = nFormat;
    EXPECT_EQ(Process(), PLUGIN_STATUS_SUCCESS);
  }
  EXPECT_EQ(m_stScript.listStopFlags, (std::vector<bool>{false, false, false}));
}

TEST_F(ProcessImage, AColourCamerasUnsupportedFormatStopsTheAcquisition)
{
  m_stScript.bColor = true;
  m_stScript.nWaitResult = REQUESTED;
  InitializeWithScript();
  // Mono8, RGB8, a packed format of unknown depth, and none at all.
  for (const int32_t nFormat : {0x01080001, 0x02180014, 0x010E0104, 0}) {
    m_stScript.listStopFlags.clear();
    m_stInput.nPixelFormat = nFormat;
    EXPECT_EQ(Process(), PLUGIN_STATUS_INVALID_PARAM);
    EXPECT_EQ(m_stScript.listStopFlags, std::vector<bool>{true});
  }
  EXPECT_TRUE(m_stScript.listCalls.empty());
  EXPECT_EQ(m_stResult.bCorrected, 0);
}

TEST_F(ProcessImage, AColourCamerasBayerFormatTakesTheStopBack)
{
  m_stScript.bColor = true;
  InitializeWithScript();
  m_stInput.nPixelFormat = 0x01080001;
  EXPECT_EQ(Process(), PLUGIN_STATUS_INVALID_PARAM);
  for (const int32_t nFormat : {0x01080008, 0x0108000B, 0x010A0052, 0x010C0059, 0x0110000F, 0x01100031, 0x010E0105}) {
    m_stScript.listStopFlags.clear();
    m_stInput.nPixelFormat = nFormat;
    EXPECT_EQ(Process(), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(m_stScript.listStopFlags, std::vector<bool>{false});
  }
}

TEST_F(ProcessImage, TheDialogMayBeUninitialisedWhileFramesArrive)
{
  CFramePump pump([](std::vector<uint8_t> &, uint64_t) {},
                  [this](const std::vector<uint8_t> &) {
                    PLUGIN_PROCESS_RESULT stResult;
                    EXPECT_EQ(DeliverFrame(&stResult), PLUGIN_STATUS_SUCCESS);
                  },
                  0.0);
  for (int i = 0; i < 20; ++i) {
    ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
    const uint64_t nBefore = pump.GetFrameCount();
    while (pump.GetFrameCount() < nBefore + 3) {
      std::this_thread::yield();
    }
    EXPECT_EQ(m_pPlugin->Uninitialize(), PLUGIN_STATUS_SUCCESS);
  }
  pump.Stop();
}

TEST_F(ProcessImage, FramesAcquiredAndCorrectedThroughItBecomeFlat)
{
  // The left half of the sensor sees half of the light.
  const auto shade = [this](std::vector<uint8_t> &listFrame) {
    listFrame = m_camera.MakeFrame(120);
    for (std::size_t i = 0; i < listFrame.size(); ++i) {
      listFrame[i] = i % 64 < 32 ? uint8_t{60} : uint8_t{120};
    }
  };
  m_pPlugin = std::make_unique<CShadingCorrectionPlugin>();
  ASSERT_EQ(Initialize(), PLUGIN_STATUS_SUCCESS);
  shade(m_listInput);
  Describe();
  CModalAnswer answer;
  {
    CFramePump pump([&](std::vector<uint8_t> &listFrame, uint64_t) { shade(listFrame); },
                    [this](const std::vector<uint8_t> &listFrame) {
                      PLUGIN_IMAGE_INFO stImage = m_stInput;
                      std::vector<uint8_t> listCopy = listFrame;
                      stImage.pBuffer = listCopy.data();
                      EXPECT_EQ(m_pPlugin->ProcessImage(&stImage, &stImage, 1, nullptr), PLUGIN_STATUS_SUCCESS);
                    });
    FindDialog()->findChild<QPushButton *>(QStringLiteral("AcquisitionBrightFrame_Button"))->click();
  }
  EXPECT_EQ(Process(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_stResult.bCorrected, 0);
  FindDialog()->findChild<QPushButton *>(QStringLiteral("ExecuteShadingCorrection_Button"))->click();
  EXPECT_EQ(Process(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(m_stResult.bCorrected, 1);
  EXPECT_EQ(m_listOutput, m_camera.MakeFrame(120));
  EXPECT_TRUE(answer.GetBoxes().empty());
}
