#include "pluginobject/shadingcorrection/liveframes.h"

#include <atomic>
#include <memory>
#include <new>
#include <optional>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/scriptedprocess.h"

using ffc::dialog::CFrameGate;
using ffc::dialog::CLiveFrames;

TEST(FrameGate, IsClosedAtFirst)
{
  CFrameGate gate;
  EXPECT_FALSE(CFrameGate::CPass(gate).IsGranted());
}

TEST(FrameGate, LetsFramesInWhileItIsOpen)
{
  CFrameGate gate;
  gate.Open();
  EXPECT_TRUE(CFrameGate::CPass(gate).IsGranted());
  gate.Close();
  EXPECT_FALSE(CFrameGate::CPass(gate).IsGranted());
  gate.Open();
  EXPECT_TRUE(CFrameGate::CPass(gate).IsGranted());
}

TEST(FrameGate, MayBeClosedTwiceAndWithoutHavingBeenOpen)
{
  CFrameGate gate;
  gate.Close();
  gate.Close();
  EXPECT_FALSE(CFrameGate::CPass(gate).IsGranted());
}

TEST(FrameGate, ClosingWaitsForAFrameThatIsWithin)
{
  CFrameGate gate;
  gate.Open();
  std::optional<CFrameGate::CPass> pass(std::in_place, gate);
  ASSERT_TRUE(pass->IsGranted());
  std::atomic<bool> bClosed{false};
  std::thread closer([&] {
    gate.Close();
    bClosed = true;
  });
  // Closed to new frames as soon as the closer has begun.
  while (CFrameGate::CPass(gate).IsGranted()) {
    std::this_thread::yield();
  }
  EXPECT_FALSE(bClosed);
  pass.reset();
  closer.join();
  EXPECT_TRUE(bClosed);
}

TEST(FrameGate, NoFrameEverMeetsWhatItsOwnerHasTakenAway)
{
  constexpr int THREADS = 3;
  constexpr int ROUNDS = 300;
  CFrameGate gate;
  // Not atomic on purpose: the gate alone keeps the threads apart.
  std::unique_ptr<int> pServed;
  std::atomic<bool> bStop{false};
  std::atomic<int> nGranted{0};
  std::vector<std::thread> listThreads;
  for (int i = 0; i < THREADS; ++i) {
    listThreads.emplace_back([&] {
      while (!bStop) {
        const CFrameGate::CPass pass(gate);
        if (pass.IsGranted()) {
          EXPECT_EQ(*pServed, 42);
          ++nGranted;
        } else {
          std::this_thread::yield();
        }
      }
    });
  }
  for (int nRound = 0; nRound < ROUNDS; ++nRound) {
    const int nBefore = nGranted;
    pServed = std::make_unique<int>(42);
    gate.Open();
    while (nGranted == nBefore) {
      std::this_thread::yield();
    }
    gate.Close();
    pServed.reset();
  }
  bStop = true;
  for (std::thread &thread : listThreads) {
    thread.join();
  }
  EXPECT_GE(nGranted, ROUNDS);
}

namespace {

constexpr uint32_t MONO8 = 0x01080001;

// Frames of one pixel for a process that corrects on the host.
class LiveFrames : public testing::Test {
protected:
  LiveFrames()
  {
    m_liveFrames.Attach([this](bool bCorrected) { m_listReports.push_back(bCorrected); });
    m_liveFrames.SetProcess(&m_process, true);
    m_stImage.nPixelFormat = MONO8;
    m_stImage.nWidth = 1;
    m_stImage.nHeight = 1;
    m_stImage.nPayloadSize = 1;
    m_stImage.pBuffer = &m_nPixel;
  }

  bool IsCorrected()
  {
    bool bCorrected = false;
    EXPECT_EQ(m_liveFrames.ProcessFrame(m_stImage, m_stImage, bCorrected), PLUGIN_STATUS_SUCCESS);
    return bCorrected;
  }

  SProcessScript m_stScript;
  CScriptedProcess m_process{m_stScript};
  CLiveFrames m_liveFrames;
  std::vector<bool> m_listReports;
  uint8_t m_nPixel = 0;
  PLUGIN_IMAGE_INFO m_stImage;
};

} // namespace

TEST_F(LiveFrames, AFrameReachesTheProcessOnlyThroughTheOpenGate)
{
  m_liveFrames.SetPreview(true);
  EXPECT_FALSE(IsCorrected());
  EXPECT_TRUE(m_stScript.listStopFlags.empty());
  m_liveFrames.Open();
  EXPECT_TRUE(IsCorrected());
  m_liveFrames.Close();
  EXPECT_FALSE(IsCorrected());
}

TEST_F(LiveFrames, OnlyTheFirstCorrectedFrameIsReported)
{
  m_liveFrames.Open();
  m_liveFrames.SetPreview(true);
  EXPECT_TRUE(IsCorrected());
  EXPECT_TRUE(IsCorrected());
  EXPECT_EQ(m_listReports, std::vector<bool>{true});
}

TEST_F(LiveFrames, AStoppedPreviewGoesOnWithoutAReport)
{
  m_liveFrames.Open();
  m_liveFrames.SetPreview(true);
  EXPECT_TRUE(IsCorrected());
  EXPECT_TRUE(m_liveFrames.StopPreview());
  EXPECT_FALSE(IsCorrected());
  EXPECT_FALSE(m_liveFrames.StopPreview());
  m_liveFrames.ResumePreview();
  EXPECT_TRUE(IsCorrected());
  EXPECT_EQ(m_listReports, std::vector<bool>{true});
}

TEST_F(LiveFrames, APreviewThatIsSwitchedOffForgetsItsReport)
{
  m_liveFrames.Open();
  m_liveFrames.SetPreview(true);
  m_liveFrames.SetPreview(false);
  m_liveFrames.ResumePreview();
  EXPECT_TRUE(IsCorrected());
  EXPECT_TRUE(m_listReports.empty());
}

TEST_F(LiveFrames, FramesThatTheCameraCorrectsAreLeftAlone)
{
  m_liveFrames.SetProcess(&m_process, false);
  m_liveFrames.Open();
  m_liveFrames.SetPreview(true);
  EXPECT_FALSE(IsCorrected());
}

TEST_F(LiveFrames, ADialogThatHasGoneLeavesNothingToTheNextOne)
{
  m_liveFrames.Open();
  m_liveFrames.SetPreview(true);
  m_liveFrames.Detach();
  EXPECT_FALSE(IsCorrected());
  int nReports = 0;
  m_liveFrames.Attach([&nReports](bool) { ++nReports; });
  EXPECT_FALSE(m_liveFrames.IsPreviewOn());
  m_liveFrames.Open();
  EXPECT_FALSE(IsCorrected()) << "without a process";
  m_liveFrames.SetProcess(&m_process, true);
  EXPECT_FALSE(IsCorrected()) << "with the preview off";
  m_liveFrames.SetPreview(true);
  EXPECT_TRUE(IsCorrected());
  EXPECT_EQ(nReports, 1);
  EXPECT_TRUE(m_listReports.empty());
}

TEST_F(LiveFrames, AReportThatFindsNoMemoryComesWithTheNextFrame)
{
  int nReports = 0;
  m_liveFrames.Attach([&nReports](bool) {
    if (++nReports == 1) {
      throw std::bad_alloc();
    }
  });
  m_liveFrames.SetProcess(&m_process, true);
  m_liveFrames.Open();
  m_liveFrames.SetPreview(true);
  for (const int nExpected : {1, 2, 2}) {
    EXPECT_TRUE(IsCorrected());
    EXPECT_EQ(nReports, nExpected);
  }
}
