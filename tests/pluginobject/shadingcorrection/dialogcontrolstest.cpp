// Frame count and expected grey.
#include <new>

#include "pluginobject/shadingcorrection/framecountposition.h"
#include "tests/pluginobject/shadingcorrection/dialogfixture.h"

using ffc::dialog::FrameCountToPosition;
using ffc::dialog::PositionToFrameCount;
using ffc::dialog::SnapPosition;

using DialogControls = CDialogTest;

TEST(FrameCountPosition, CountsAndPositionsBelongTogether)
{
  const int anPairs[][2] = {{1, 0}, {2, 4}, {4, 8}, {8, 12}, {16, 16}};
  for (const auto &pair : anPairs) {
    EXPECT_EQ(FrameCountToPosition(pair[0]), pair[1]);
    EXPECT_EQ(PositionToFrameCount(pair[1]), pair[0]);
  }
  for (const int nOther : {-1, 0, 3, 5, 15, 17, 100}) {
    EXPECT_EQ(FrameCountToPosition(nOther), 0);
  }
}

TEST(FrameCountPosition, APositionSnapsDown)
{
  const int anExpected[] = {0, 0, 0, 0, 4, 4, 4, 4, 8, 8, 8, 8, 12, 12, 12, 12, 16};
  for (int nPosition = 0; nPosition <= 16; ++nPosition) {
    EXPECT_EQ(SnapPosition(nPosition), anExpected[nPosition]);
  }
  EXPECT_EQ(SnapPosition(-5), 0);
  EXPECT_EQ(SnapPosition(99), 16);
}

TEST_F(DialogControls, DraggingTheFrameCountToSevenLeavesItAtFourWithTwoFrames)
{
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  FrameSlider()->setValue(7);
  EXPECT_EQ(FrameSlider()->value(), 4);
  EXPECT_EQ(m_stScript.listCalls, std::vector<std::string>{"FFCFrameCount_2"});
}

TEST_F(DialogControls, EveryFrameCountIsSentByItsEntryName)
{
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  for (const int nPosition : {16, 12, 8, 4, 0}) {
    FrameSlider()->setValue(nPosition);
  }
  EXPECT_EQ(m_stScript.listCalls, (std::vector<std::string>{"FFCFrameCount_16", "FFCFrameCount_8", "FFCFrameCount_4",
                                                            "FFCFrameCount_2", "FFCFrameCount_1"}));
}

TEST_F(DialogControls, ARefusedFrameCountPutsTheHandleBack)
{
  m_stScript.stInfo.nFrameCount = 4;
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  m_stScript.nFrameCountStatus = PLUGIN_STATUS_FEATURE_ERROR;
  EXPECT_EQ(BoxOf([&] { FrameSlider()->setValue(16); }), "Failure to operation device feature");
  EXPECT_EQ(FrameSlider()->value(), 8);
}

TEST_F(DialogControls, WhatIsThrownMeanwhileIsReportedAndPutsTheHandleBack)
{
  m_stScript.stInfo.nFrameCount = 4;
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  m_stScript.fnNoted = [](const std::string &) { throw std::bad_alloc(); };
  EXPECT_EQ(BoxOf([&] { FrameSlider()->setValue(16); }), "Out of memory");
  EXPECT_EQ(FrameSlider()->value(), 8);
  m_stScript.fnNoted = [](const std::string &) { throw 42; };
  EXPECT_EQ(BoxOf([&] { FrameSlider()->setValue(3); }), "Unknown error");
  EXPECT_EQ(FrameSlider()->value(), 8);
}

TEST_F(DialogControls, WithoutAProcessTheFrameCountIsRefused)
{
  m_stScript.stInfo.nFrameCount = 4;
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  m_pDialog->ReleaseProcess();
  EXPECT_EQ(BoxOf([&] { FrameSlider()->setValue(16); }), "Invalid input param");
  EXPECT_EQ(FrameSlider()->value(), 8);
}

TEST_F(DialogControls, SliderAndSpinBoxOfTheExpectedGrayFollowEachOther)
{
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  GraySlider()->setValue(77);
  EXPECT_EQ(GrayBox()->value(), 77);
  GrayBox()->setValue(255);
  EXPECT_EQ(GraySlider()->value(), 255);
  EXPECT_EQ(m_stScript.listCalls, (std::vector<std::string>{"gray 77", "gray 255"}));
}

TEST_F(DialogControls, TypingThreeHundredPutsBackTheLastAcceptedValue)
{
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  GrayBox()->setValue(120);
  GrayBox()->setFocus();
  GrayBox()->selectAll();
  QTest::keyClicks(GrayBox(), QStringLiteral("300"));
  QTest::keyClick(GrayBox(), Qt::Key_Return);
  EXPECT_EQ(GrayBox()->value(), 30) << "each digit counts";
  GrayBox()->setValue(120);
  m_stScript.listCalls.clear();
  for (const int nTooLarge : {256, 300, 4095}) {
    GrayBox()->setValue(nTooLarge);
    EXPECT_EQ(GrayBox()->value(), 120) << nTooLarge;
    EXPECT_EQ(GraySlider()->value(), 120) << nTooLarge;
  }
  EXPECT_TRUE(m_stScript.listCalls.empty());
}

TEST_F(DialogControls, ARefusedExpectedGrayPutsSliderAndSpinBoxBack)
{
  m_stScript.stInfo.nExpectGray = 100;
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  m_stScript.nExpectGrayStatus = PLUGIN_STATUS_FEATURE_ERROR;
  EXPECT_EQ(BoxOf([&] { GraySlider()->setValue(200); }), "Failure to operation device feature");
  EXPECT_EQ(GraySlider()->value(), 100);
  EXPECT_EQ(GrayBox()->value(), 100);
  EXPECT_EQ(m_stScript.listCalls, std::vector<std::string>{"gray 200"});
}

TEST_F(DialogControls, ARefusalThroughTheSpinBoxShowsOneMessage)
{
  m_stScript.stInfo.nExpectGray = 100;
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  m_stScript.nExpectGrayStatus = PLUGIN_STATUS_FEATURE_ERROR;
  EXPECT_EQ(BoxOf([&] { GrayBox()->setValue(200); }), "Failure to operation device feature");
  EXPECT_EQ(GraySlider()->value(), 100);
  EXPECT_EQ(GrayBox()->value(), 100);
}

TEST_F(DialogControls, WithoutAProcessTheExpectedGrayIsRefused)
{
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  m_pDialog->ReleaseProcess();
  EXPECT_EQ(BoxOf([&] { GraySlider()->setValue(5); }), "Invalid input param");
}

TEST_F(DialogControls, ThePromptSlotSetsTheText)
{
  ASSERT_EQ(Open(), PLUGIN_STATUS_SUCCESS);
  m_pDialog->Slot_objPromptInformation_label_clicked(QStringLiteral("some text"));
  EXPECT_EQ(Prompt(), "some text");
}
