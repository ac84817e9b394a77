#include "host/recording/framerecorder.h"

#include <future>
#include <thread>

#include <gtest/gtest.h>

using namespace ffc::host;

namespace {

/// A disk that writes when it is told to.
class CSlowDisk {
public:
  ffc::Result<> Write(const SRecordedFrame &stFrame)
  {
    m_listIds.push_back(stFrame.nFrameId);
    if (m_listIds.size() == 1) {
      m_begun.set_value();
      m_release.get_future().wait();
    }
    return {};
  }

  /// Until it is busy with the first frame.
  void WaitUntilBusy() { m_begun.get_future().wait(); }
  void Release() { m_release.set_value(); }

  std::vector<uint64_t> m_listIds;

private:
  std::promise<void> m_begun;
  std::promise<void> m_release;
};

void Add(CFrameRecorder &recorder, uint64_t nFrameId)
{
  const uint8_t nPixel = 7;
  ffc::camera::SCameraFrame stFrame;
  stFrame.pBuffer = &nPixel;
  stFrame.nSize = 1;
  stFrame.nFrameId = nFrameId;
  recorder.Add({&stFrame, nullptr});
}

} // namespace

TEST(FrameRecorder, FramesAreWrittenInTheirOrderAndNoMoreThanAskedFor)
{
  std::vector<uint64_t> listIds;
  CFrameRecorder recorder({3, false, 8}, [&](const SRecordedFrame &stFrame) {
    EXPECT_EQ(stFrame.stCopy.listBytes, std::vector<uint8_t>{7});
    EXPECT_GT(stFrame.nTime, 0);
    listIds.push_back(stFrame.nFrameId);
    return ffc::Result<>();
  });
  for (uint64_t nFrameId = 10; nFrameId < 20; ++nFrameId) {
    Add(recorder, nFrameId);
  }
  EXPECT_TRUE(recorder.IsFull());
  EXPECT_EQ(recorder.Finish().GetError(), "");
  EXPECT_EQ(listIds, (std::vector<uint64_t>{10, 11, 12}));
  EXPECT_EQ(recorder.GetCounts().nWritten, 3U);
  EXPECT_EQ(recorder.GetCounts().GetLost(), 0U);
}

TEST(FrameRecorder, ASlowDiskLosesTheFramesThatFindNoPlaceAndTheyAreCounted)
{
  CSlowDisk disk;
  CFrameRecorder recorder({6, false, 3}, [&](const SRecordedFrame &stFrame) { return disk.Write(stFrame); });
  Add(recorder, 0);
  disk.WaitUntilBusy();
  for (uint64_t nFrameId = 1; nFrameId < 8; ++nFrameId) {
    Add(recorder, nFrameId);
  }
  EXPECT_FALSE(recorder.IsFull());
  EXPECT_EQ(recorder.GetCounts().nDropped, 5U) << "three have a place, the one that is being written too";
  disk.Release();
  EXPECT_EQ(recorder.Finish().GetError(), "");
  EXPECT_EQ(disk.m_listIds, (std::vector<uint64_t>{0, 1, 2}));
  EXPECT_EQ(recorder.GetCounts().nMissing, 0U) << "what was dropped did come";
}

TEST(FrameRecorder, GapsInTheNumbersAreFramesThatNeverCame)
{
  CFrameRecorder recorder({10, false, 8}, [](const SRecordedFrame &) { return ffc::Result<>(); });
  for (const uint64_t nFrameId : {5U, 6U, 9U, 10U, 20U}) {
    Add(recorder, nFrameId);
  }
  EXPECT_EQ(recorder.Finish().GetError(), "");
  EXPECT_EQ(recorder.GetCounts().nMissing, 11U);
  EXPECT_EQ(recorder.GetCounts().nWritten, 5U);
}

TEST(FrameRecorder, ItStopsAtTheFirstLossWhenToldTo)
{
  CFrameRecorder recorder({10, true, 8}, [](const SRecordedFrame &) { return ffc::Result<>(); });
  Add(recorder, 1);
  EXPECT_FALSE(recorder.IsFull());
  Add(recorder, 3);
  Add(recorder, 4);
  EXPECT_TRUE(recorder.IsFull());
  EXPECT_EQ(recorder.Finish().GetError(), "");
  EXPECT_EQ(recorder.GetCounts().nWritten, 1U);
  EXPECT_EQ(recorder.GetCounts().nMissing, 1U);
}

TEST(FrameRecorder, AFrameThatCannotBeWrittenEndsIt)
{
  int nCalls = 0;
  CFrameRecorder recorder({10, false, 8}, [&](const SRecordedFrame &) {
    return ++nCalls == 2 ? ffc::Result<>(ffc::Failure("the disk is full")) : ffc::Result<>();
  });
  for (uint64_t nFrameId = 0; nFrameId < 5; ++nFrameId) {
    Add(recorder, nFrameId);
  }
  EXPECT_EQ(recorder.Finish().GetError(), "the disk is full");
  EXPECT_TRUE(recorder.IsDone()) << "although frames still wait";
  EXPECT_EQ(recorder.GetCounts().nWritten, 1U);
  EXPECT_EQ(nCalls, 2);
}

TEST(FrameRecorder, WhatWaitsIsDiscardedOnRequestAndTheFrameThatIsBeingWrittenIsNot)
{
  CSlowDisk disk;
  CFrameRecorder recorder({10}, [&](const SRecordedFrame &stFrame) { return disk.Write(stFrame); });
  for (uint64_t nFrameId = 0; nFrameId < 3; ++nFrameId) {
    Add(recorder, nFrameId);
  }
  disk.WaitUntilBusy();
  EXPECT_FALSE(recorder.IsFull());
  auto ended = std::async(std::launch::async, [&recorder] { return recorder.Discard().GetError(); });
  while (!recorder.IsFull()) {
    std::this_thread::yield();
  }
  EXPECT_FALSE(recorder.IsDone()) << "one is being written";
  disk.Release();
  EXPECT_EQ(ended.get(), "");
  EXPECT_EQ(disk.m_listIds, std::vector<uint64_t>{0});
  EXPECT_EQ(recorder.GetCounts().nTaken, 3U);
}

TEST(FrameRecorder, AFrameThatIsCorrectedIsTakenThatWayAndOneThatIsLargerThanTheQueueFindsAPlaceAlone)
{
  std::vector<SRecordedFrame> listFrames;
  CFrameRecorder recorder({1, false, 1}, [&](const SRecordedFrame &stFrame) {
    listFrames.push_back(stFrame);
    return ffc::Result<>();
  });
  const uint8_t listRaw[2] = {7, 7};
  const uint8_t listCorrected[2] = {8, 9};
  ffc::camera::SCameraFrame stRaw;
  stRaw.pBuffer = listRaw;
  stRaw.nSize = 2;
  stRaw.nWidth = 2;
  recorder.Add({&stRaw, listCorrected});
  EXPECT_EQ(recorder.Finish().GetError(), "");
  ASSERT_EQ(listFrames.size(), 1U);
  EXPECT_EQ(listFrames[0].stCopy.listBytes, (std::vector<uint8_t>{8, 9}));
  EXPECT_TRUE(listFrames[0].stCopy.bCorrected);
  EXPECT_EQ(listFrames[0].stCopy.nWidth, 2U);
}
