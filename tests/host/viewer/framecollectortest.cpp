#include "host/viewer/framecollector.h"

#include <gtest/gtest.h>

#include "host/measurement/freshframes.h"
#include "tests/support/framepump.h"

using namespace ffc::host;
using namespace ffc::test;
using ffc::camera::SCameraFrame;

namespace {

/// Delivers frames of one byte to the pipeline from a thread of their own.
class CPumpedPipeline {
public:
  CFramePipeline m_pipeline;

private:
  CFramePump m_pump{
    [](std::vector<uint8_t> &listFrame, uint64_t nIndex) { listFrame.assign(1, static_cast<uint8_t>(nIndex)); },
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
  CFrameCollector collector(stream.m_pipeline);
  const ffc::Result<> result = collector.Collect(5, CFramePipeline::EWanted::Any, [&](const SProcessedFrame &stFrame) {
    listSeen.push_back(*static_cast<const uint8_t *>(stFrame.pRaw->pBuffer));
    return true;
  });
  EXPECT_EQ(result.GetError(), "");
  ASSERT_EQ(listSeen.size(), 5U);
  for (std::size_t nFrame = 1; nFrame < 5; ++nFrame) {
    EXPECT_EQ(listSeen[nFrame], static_cast<uint8_t>(listSeen[0] + nFrame));
  }
}

TEST(FrameCollector, GivesUpWhenNoWantedFrameComes)
{
  CPumpedPipeline stream;
  CFrameCollector collector(stream.m_pipeline, 50);
  const ffc::Result<> result =
    collector.Collect(3, CFramePipeline::EWanted::Corrected, [](const SProcessedFrame &) { return true; });
  EXPECT_EQ(result.GetError(), "no corrected frame came for 0.05 s, 0 of 3 were there");
}

TEST(FrameCollector, FramesOfAFormatThatNobodyKnowsCannotBeMeasured)
{
  CPumpedPipeline stream;
  CFrameCollector collector(stream.m_pipeline);
  EXPECT_EQ(ReadStreamFormat(collector).GetError(), "Frames of the pixel format 0x00000000 cannot be measured.");
}

TEST(FrameCollector, EndsWithTheFailureOfTheCheck)
{
  CPumpedPipeline stream;
  CFrameCollector collector(stream.m_pipeline);
  collector.SetCheck([] { return ffc::Failure("the lens fell off"); });
  EXPECT_EQ(
    collector.Collect(3, CFramePipeline::EWanted::Corrected, [](const SProcessedFrame &) { return true; }).GetError(),
    "the lens fell off");
}

TEST(FrameCollector, EndsWhenAFrameCannotBeUsed)
{
  CPumpedPipeline stream;
  CFrameCollector collector(stream.m_pipeline);
  int nCalls = 0;
  const ffc::Result<> result = collector.Collect(1000, CFramePipeline::EWanted::Any, [&](const SProcessedFrame &) {
    ++nCalls;
    return false;
  });
  EXPECT_NE(result.GetError().find("another size"), std::string::npos);
  EXPECT_EQ(nCalls, 1);
}

TEST(FrameCollector, WaitUntilReturnsTheLastAnswer)
{
  CFramePipeline pipeline;
  const CFrameCollector collector(pipeline, 30);
  int nAsked = 0;
  EXPECT_TRUE(collector.WaitUntil([&] { return ++nAsked == 2; }));
  EXPECT_FALSE(collector.WaitUntil([] { return false; }));
}

TEST(FrameCollector, CountsTheFramesThatItHasTaken)
{
  CPumpedPipeline stream;
  CFrameCollector collector(stream.m_pipeline);
  uint32_t nSeen = 0;
  collector.SetCheck([&] {
    nSeen = collector.GetTakenCount();
    return nSeen < 3 ? ffc::Result<>() : ffc::Failure("enough");
  });
  const auto Take = [](const SProcessedFrame &) { return true; };
  EXPECT_EQ(collector.Collect(1000000, CFramePipeline::EWanted::Any, Take).GetError(), "enough");
  EXPECT_GE(nSeen, 3U);
  collector.SetCheck(nullptr);
  EXPECT_TRUE(collector.Collect(2, CFramePipeline::EWanted::Any, Take).IsOk());
  EXPECT_EQ(collector.GetTakenCount(), 2U);
}
