#include "host/viewer/framepipeline.h"

#include <cstring>
#include <thread>

#include <gtest/gtest.h>

#include "tests/host/fakeplugin.h"

using namespace ffc::host;
using ffc::camera::SCameraFrame;

namespace {

/// A pipeline with a fake plug-in, and frames of 4 x 2 bytes.
class FramePipeline : public testing::Test {
protected:
  FramePipeline() { m_pipeline.SetPlugin(&m_plugin); }

  void Deliver(uint8_t nValue, uint32_t nPixelFormat = 0x01080001)
  {
    const std::vector<uint8_t> listBytes(8, nValue);
    SCameraFrame stFrame;
    stFrame.pBuffer = listBytes.data();
    stFrame.nSize = 8;
    stFrame.nWidth = 4;
    stFrame.nHeight = 2;
    stFrame.nPixelFormat = nPixelFormat;
    m_pipeline.Receive(stFrame);
  }

  /// Writes input + 100 into every byte of the output, and the flag as said.
  void CorrectWithFlag(bool bFlag, int32_t nStatus = 0)
  {
    m_plugin.m_fnProcess = [=](const PLUGIN_IMAGE_INFO &stInput, PLUGIN_IMAGE_INFO &stOutput,
                               PLUGIN_PROCESS_RESULT &stResult) {
      EXPECT_EQ(stResult.bCorrected, 0) << "the host clears the flag before each call";
      EXPECT_EQ(stOutput.nPayloadSize, stInput.nPayloadSize);
      // Copies: the records are packed, and no reference may bind to their pointers.
      const uint8_t *pInput = static_cast<const uint8_t *>(stInput.pBuffer);
      uint8_t *pOutput = static_cast<uint8_t *>(stOutput.pBuffer);
      EXPECT_NE(pInput, pOutput);
      std::memset(pOutput, *pInput + 100, static_cast<std::size_t>(stOutput.nPayloadSize));
      stResult.bCorrected = bFlag ? 1 : 0;
      return nStatus;
    };
  }

  CFakePlugin m_plugin;
  CFramePipeline m_pipeline;
};

} // namespace

TEST_F(FramePipeline, AFrameThatIsNoSensorsOwnPassesThePlugInBy)
{
  SFrameCopy stCopy;
  CorrectWithFlag(true);
  for (const uint32_t nPixelFormat : {0x02180014U, 0x0210001FU, 0x011000B8U, 0x81080001U}) {
    Deliver(5, nPixelFormat);
    ASSERT_TRUE(m_pipeline.TakeLatest(stCopy));
    EXPECT_FALSE(stCopy.bCorrected) << nPixelFormat;
    EXPECT_EQ(stCopy.listBytes[0], 5) << nPixelFormat;
  }
}

TEST_F(FramePipeline, ShowsTheOutputOnlyWhenTheFlagIsSet)
{
  SFrameCopy stCopy;
  CorrectWithFlag(true);
  Deliver(5);
  ASSERT_TRUE(m_pipeline.TakeLatest(stCopy));
  EXPECT_TRUE(stCopy.bCorrected);
  EXPECT_EQ(stCopy.listBytes, std::vector<uint8_t>(8, 105));
  EXPECT_EQ(m_plugin.m_nMode, PLUGIN_PROCESS_MODE_FRAME);

  CorrectWithFlag(false);
  Deliver(6);
  ASSERT_TRUE(m_pipeline.TakeLatest(stCopy));
  EXPECT_FALSE(stCopy.bCorrected);
  EXPECT_EQ(stCopy.listBytes, std::vector<uint8_t>(8, 6));

  CorrectWithFlag(true, -3);
  Deliver(7);
  ASSERT_TRUE(m_pipeline.TakeLatest(stCopy));
  EXPECT_FALSE(stCopy.bCorrected) << "a failed call has no output";
  EXPECT_EQ(stCopy.listBytes, std::vector<uint8_t>(8, 7));
}

TEST_F(FramePipeline, KeepsWhatACorrectedFrameWasMadeOfOnRequestOnly)
{
  SFrameCopy stCopy;
  CorrectWithFlag(true);
  Deliver(5);
  ASSERT_TRUE(m_pipeline.TakeLatest(stCopy));
  EXPECT_EQ(stCopy.pRaw, nullptr);
  EXPECT_EQ(m_pipeline.GetCounts().nCopiedBytes, 0U);
  m_pipeline.KeepRaw(true);
  for (const uint8_t nValue : std::vector<uint8_t>{6, 7, 8}) {
    Deliver(nValue);
    ASSERT_TRUE(m_pipeline.TakeLatest(stCopy));
    ASSERT_NE(stCopy.pRaw, nullptr);
    EXPECT_EQ(stCopy.pRaw->listBytes, std::vector<uint8_t>(8, nValue));
    EXPECT_EQ(stCopy.listBytes[0], nValue + 100);
    EXPECT_EQ(stCopy.pRaw->nHeight, 2U);
    EXPECT_FALSE(stCopy.pRaw->bCorrected);
  }
  CorrectWithFlag(false);
  Deliver(9);
  ASSERT_TRUE(m_pipeline.TakeLatest(stCopy));
  EXPECT_EQ(stCopy.pRaw, nullptr) << "the frame itself is raw";
}

TEST_F(FramePipeline, AFlagOfAnEarlierFrameDoesNotStick)
{
  CorrectWithFlag(true);
  Deliver(1);
  m_plugin.m_fnProcess = nullptr; // returns 0 and touches nothing
  Deliver(2);
  SFrameCopy stCopy;
  ASSERT_TRUE(m_pipeline.TakeLatest(stCopy));
  EXPECT_FALSE(stCopy.bCorrected);
  EXPECT_EQ(stCopy.listBytes, std::vector<uint8_t>(8, 2));
}

TEST_F(FramePipeline, WithoutPlugInFramesPassUncorrected)
{
  m_pipeline.SetPlugin(nullptr);
  Deliver(9);
  SFrameCopy stCopy;
  ASSERT_TRUE(m_pipeline.TakeLatest(stCopy));
  EXPECT_FALSE(stCopy.bCorrected);
  EXPECT_EQ(stCopy.nWidth, 4U);
  EXPECT_EQ(stCopy.nHeight, 2U);
  EXPECT_EQ(stCopy.nPixelFormat, 0x01080001U);
}

TEST_F(FramePipeline, EachFrameIsTakenOnce)
{
  SFrameCopy stCopy;
  EXPECT_FALSE(m_pipeline.TakeLatest(stCopy));
  Deliver(1);
  EXPECT_TRUE(m_pipeline.TakeLatest(stCopy));
  EXPECT_FALSE(m_pipeline.TakeLatest(stCopy));
  EXPECT_EQ(m_pipeline.GetReceivedCount(), 1U);
}

TEST_F(FramePipeline, ARequestForCorrectedFramesPassesOverRawOnes)
{
  std::vector<int> listSeen;
  m_pipeline.Request(2, CFramePipeline::EWanted::Corrected, [&](const SProcessedFrame &stFrame) {
    listSeen.push_back(*static_cast<const uint8_t *>(stFrame.pRaw->pBuffer));
    listSeen.push_back(*static_cast<const uint8_t *>(stFrame.pCorrected));
  });
  CorrectWithFlag(false);
  Deliver(1);
  EXPECT_EQ(m_pipeline.WaitServed(0), 2U);
  CorrectWithFlag(true);
  Deliver(2);
  EXPECT_EQ(m_pipeline.WaitServed(0), 1U);
  Deliver(3);
  EXPECT_EQ(m_pipeline.WaitServed(0), 0U);
  Deliver(4);
  EXPECT_EQ(listSeen, std::vector<int>({2, 102, 3, 103}));
}

TEST_F(FramePipeline, ARequestForAnyFrameSeesNoOutputThatNobodyWrote)
{
  bool bSawOutput = true;
  m_pipeline.Request(1, CFramePipeline::EWanted::Any,
                     [&](const SProcessedFrame &stFrame) { bSawOutput = stFrame.pCorrected != nullptr; });
  CorrectWithFlag(false);
  Deliver(1);
  EXPECT_EQ(m_pipeline.WaitServed(0), 0U);
  EXPECT_FALSE(bSawOutput);
}

TEST_F(FramePipeline, ACancelledRequestIsNotServed)
{
  int nServed = 0;
  m_pipeline.Request(3, CFramePipeline::EWanted::Any, [&](const SProcessedFrame &) { ++nServed; });
  Deliver(1);
  m_pipeline.CancelRequest();
  Deliver(2);
  EXPECT_EQ(nServed, 1);
}

TEST_F(FramePipeline, WaitingEndsWhenAnotherThreadDelivers)
{
  m_pipeline.Request(50, CFramePipeline::EWanted::Any, [](const SProcessedFrame &) {});
  std::thread thread([this] {
    for (uint8_t nFrame = 0; nFrame < 50; ++nFrame) {
      Deliver(nFrame);
    }
  });
  while (m_pipeline.WaitServed(1000) > 0) {
  }
  thread.join();
  EXPECT_EQ(m_pipeline.GetReceivedCount(), 50U);
}

TEST_F(FramePipeline, ThroughputCountsCorrectedFramesAlone)
{
  CorrectWithFlag(false);
  Deliver(1);
  EXPECT_EQ(m_pipeline.GetThroughput().nFrames, 0U);
  CorrectWithFlag(true);
  Deliver(2);
  Deliver(3);
  EXPECT_EQ(m_pipeline.GetThroughput().nFrames, 2U);
  EXPECT_EQ(m_pipeline.GetThroughput().nPixels, 16U);
  m_pipeline.ResetThroughput();
  EXPECT_EQ(m_pipeline.GetThroughput().nFrames, 0U);
}

TEST_F(FramePipeline, TheObserverSeesEveryFrame)
{
  int nSeen = 0;
  m_pipeline.SetObserver([&] { ++nSeen; });
  Deliver(1);
  Deliver(2);
  EXPECT_EQ(nSeen, 2);
}

TEST(Throughput, NoTimeSpentIsNone)
{
  EXPECT_EQ(SThroughput().GetFramesPerSecond(), 0);
  EXPECT_EQ(SThroughput().GetMegapixelsPerSecond(), 0);
}
