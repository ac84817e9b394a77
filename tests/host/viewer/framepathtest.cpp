/// \file
/// What the way of a frame costs: copies, and who loses frames when the display is slow.

#include <set>

#include <gtest/gtest.h>

#include "host/viewer/framepipeline.h"
#include "tests/host/fakeplugin.h"

using namespace ffc::host;
using ffc::camera::SCameraFrame;

namespace {

constexpr uint32_t WIDTH = 2448;
constexpr uint32_t HEIGHT = 2048;
constexpr uint32_t FRAME_BYTES = WIDTH * HEIGHT * 2; ///< 12 bits in 16
constexpr uint32_t MONO12 = 0x01100005;

/// A camera of 5 megapixels, a plug-in that writes every output, and a display that looks now and then.
class FramePath : public testing::Test {
protected:
  FramePath() : m_listRaw(FRAME_BYTES, 0x12)
  {
    m_plugin.m_fnProcess = [this](const PLUGIN_IMAGE_INFO &, PLUGIN_IMAGE_INFO &stOutput,
                                  PLUGIN_PROCESS_RESULT &stResult) {
      m_pWritten = stOutput.pBuffer;
      static_cast<uint8_t *>(m_pWritten)[0] = m_nMark;
      stResult.bCorrected = m_bCorrects ? 1 : 0;
      return 0;
    };
    m_pipeline.SetPlugin(&m_plugin);
  }

  void Deliver(uint64_t nFrameId)
  {
    SCameraFrame stFrame;
    stFrame.pBuffer = m_listRaw.data();
    stFrame.nSize = FRAME_BYTES;
    stFrame.nWidth = WIDTH;
    stFrame.nHeight = HEIGHT;
    stFrame.nPixelFormat = MONO12;
    stFrame.nFrameId = nFrameId;
    m_pipeline.Receive(stFrame);
  }

  CFakePlugin m_plugin;
  CFramePipeline m_pipeline;
  std::vector<uint8_t> m_listRaw;
  bool m_bCorrects = true;
  uint8_t m_nMark = 0;
  void *m_pWritten = nullptr;
};

} // namespace

TEST_F(FramePath, ACorrectedFrameIsNeverCopied)
{
  std::set<const void *> setBuffers;
  SFrameCopy stShown;
  for (uint8_t nFrame = 0; nFrame < 12; ++nFrame) {
    m_nMark = nFrame;
    Deliver(nFrame);
    ASSERT_TRUE(m_pipeline.TakeLatest(stShown));
    EXPECT_EQ(stShown.listBytes.data(), m_pWritten) << "the display has the buffer that the plug-in wrote";
    EXPECT_EQ(stShown.listBytes[0], nFrame);
    setBuffers.insert(stShown.listBytes.data());
  }
  EXPECT_EQ(m_pipeline.GetCounts().nCopiedBytes, 0U);
  EXPECT_LE(setBuffers.size(), 3U) << "buffers change places, and no new ones are made";
}

TEST_F(FramePath, ARawFrameIsCopiedOnce)
{
  m_bCorrects = false;
  for (uint64_t nFrame = 0; nFrame < 12; ++nFrame) {
    Deliver(nFrame);
  }
  const SFrameCounts stCounts = m_pipeline.GetCounts();
  RecordProperty("bytes per frame", static_cast<int>(FRAME_BYTES));
  EXPECT_EQ(FRAME_BYTES, 10027008U);
  EXPECT_EQ(stCounts.nCopiedBytes, 12ULL * FRAME_BYTES);
}

TEST_F(FramePath, ASlowDisplayDropsDisplayFramesAndNoCameraFrames)
{
  SFrameCopy stShown;
  uint64_t nShown = 0;
  for (uint64_t nFrame = 0; nFrame < 24; ++nFrame) {
    m_bCorrects = nFrame % 2 == 0;
    Deliver(nFrame);
    nShown += nFrame % 6 == 5 && m_pipeline.TakeLatest(stShown) ? 1U : 0U;
  }
  const SFrameCounts stCounts = m_pipeline.GetCounts();
  EXPECT_EQ(stCounts.nReceived, 24U);
  EXPECT_EQ(stCounts.nCorrected, 12U);
  EXPECT_EQ(stCounts.nLost, 0U);
  EXPECT_EQ(nShown, 4U);
  EXPECT_EQ(stCounts.nOverwritten, 20U);
  EXPECT_EQ(stCounts.nCopiedBytes, 12ULL * FRAME_BYTES) << "the raw half, once each";
}

TEST_F(FramePath, GapsInTheFrameNumbersAreLostFrames)
{
  for (const uint64_t nFrameId : {5U, 6U, 9U, 0U, 1U, 3U}) {
    Deliver(nFrameId);
  }
  EXPECT_EQ(m_pipeline.GetCounts().nLost, 3U) << "7, 8, and 2 of the stream that began anew";
}

TEST_F(FramePath, WithheldFramesAreShownAndThePlugInDoesNotSeeThem)
{
  m_pipeline.Withhold(true);
  Deliver(0);
  SFrameCopy stShown;
  ASSERT_TRUE(m_pipeline.TakeLatest(stShown));
  EXPECT_FALSE(stShown.bCorrected);
  EXPECT_EQ(m_pWritten, nullptr);
  m_pipeline.Withhold(false);
  Deliver(1);
  ASSERT_TRUE(m_pipeline.TakeLatest(stShown));
  EXPECT_TRUE(stShown.bCorrected);
}
