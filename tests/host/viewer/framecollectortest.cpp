#include "host/viewer/framecollector.h"

#include <gtest/gtest.h>

#include "tests/support/framepump.h"

using namespace ffc::host;

namespace {

/// Delivers frames of one byte to the pipeline from a thread of their own.
class CPumpedPipeline {
public:
  CFramePipeline m_pipeline;

private:
  CFramePump m_pump{[](std::vector<uint8_t> &listFrame, uint64_t nIndex) { listFrame.assign(1, uint8_t(nIndex)); },
                    [this](const std::vector<uint8_t> &listFrame) {
                      SCameraFrame stFrame;
                      stFrame.pBuffer = listFrame.data();
                      stFrame.nSize = stFrame.nWidth = stFrame.nHeight = 1;
                      m_pipeline.Receive(stFrame);
                    }};
};

} // namespace

TEST(FrameCollector, CollectsConsecutiveFrames)
{
  CPumpedPipeline stream;
  std::vector<uint8_t> listSeen;
  ffc::host::CFrameCollector collector(stream.m_pipeline);
  const QString strError = collector.Collect(5, CFramePipeline::EWanted::Any, [&](const SProcessedFrame &stFrame) {
    listSeen.push_back(*static_cast<const uint8_t *>(stFrame.pRaw->pBuffer));
    return true;
  });
  EXPECT_EQ(strError.toStdString(), "");
  ASSERT_EQ(listSeen.size(), 5U);
  for (std::size_t nFrame = 1; nFrame < 5; ++nFrame) {
    EXPECT_EQ(listSeen[nFrame], uint8_t(listSeen[0] + nFrame));
  }
}

TEST(FrameCollector, GivesUpWhenNoWantedFrameComes)
{
  CPumpedPipeline stream;
  ffc::host::CFrameCollector collector(stream.m_pipeline, 50);
  const QString strError =
    collector.Collect(3, CFramePipeline::EWanted::Corrected, [](const SProcessedFrame &) { return true; });
  EXPECT_EQ(strError.toStdString(), "no corrected frame came for 0.05 s, 0 of 3 were there");
}

TEST(FrameCollector, EndsWithTheReasonOfTheTroubleCheck)
{
  CPumpedPipeline stream;
  ffc::host::CFrameCollector collector(stream.m_pipeline);
  collector.SetTroubleCheck([] { return QStringLiteral("the lens fell off"); });
  EXPECT_EQ(collector.Collect(3, CFramePipeline::EWanted::Corrected, [](const SProcessedFrame &) { return true; })
              .toStdString(),
            "the lens fell off");
}

TEST(FrameCollector, EndsWhenAFrameCannotBeUsed)
{
  CPumpedPipeline stream;
  ffc::host::CFrameCollector collector(stream.m_pipeline);
  int nCalls = 0;
  const QString strError = collector.Collect(1000, CFramePipeline::EWanted::Any, [&](const SProcessedFrame &) {
    ++nCalls;
    return false;
  });
  EXPECT_TRUE(strError.contains("another size"));
  EXPECT_EQ(nCalls, 1);
}

TEST(FrameCollector, WaitUntilReturnsTheLastAnswer)
{
  CFramePipeline pipeline;
  const ffc::host::CFrameCollector collector(pipeline, 30);
  int nAsked = 0;
  EXPECT_TRUE(collector.WaitUntil([&] { return ++nAsked == 2; }));
  EXPECT_FALSE(collector.WaitUntil([] { return false; }));
}
