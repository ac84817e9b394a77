// The built library with threads of its own: OMBRIX_THREADS is set for this program.
#include "ombrix/ombrix.h"

#include <atomic>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "ombrix/bandpool.h"
#include "ombrix/flatfield.h"
#include "ombrix/kernels/flatfieldkernels.h"
#include "platform/kernelchoice.h"
#include "tests/ombrix/pixelbytes.h"

#if !defined(_WIN32)
#include <sys/wait.h>
#include <unistd.h>
#endif

using namespace ffc::ombrix;
using ffc::platform::ChooseKernels;
using ffc::platform::GetInstructionLevel;

namespace {

constexpr uint32_t WIDTH = 2593;
constexpr uint32_t HEIGHT = 1945;
constexpr std::size_t PIXELS = std::size_t{WIDTH} * HEIGHT;
constexpr uint32_t TARGET = 200;

// A frame of one bit depth, large enough to be shared, and what one thread makes of it.
struct SExample {
  explicit SExample(uint32_t nDepth) : nBitDepth(nDepth), listTable(4 * PIXELS), listCorrected(PIXELS * PixelBytes())
  {
    listBright = PackValues(MakeRandomValues(PIXELS, GetMaxStoredValue(nDepth), 1), PixelBytes());
    listDark = PackValues(MakeRandomValues(PIXELS, 40, 2), PixelBytes());
    const SFlatFieldKernels &stKernels = ChooseKernels(FindSFlatFieldKernels, GetInstructionLevel());
    const uint32_t nIndex = nDepth - FLATFIELD_MIN_BIT_DEPTH;
    unsigned char *const pLevels = listTable.data() + 2 * PIXELS;
    stKernels.afnCompute[nIndex][1](
      {listBright.data(), listDark.data(), PIXELS, TARGET << nIndex, listTable.data(), pLevels});
    stKernels.afnApply[nIndex][1][0]({listBright.data(), listCorrected.data(), PIXELS, listTable.data(), pLevels});
  }

  std::size_t PixelBytes() const { return GetBytesPerPixel(nBitDepth); }

  bool ComputesTheSameTable() const
  {
    const OMBRIX_FFC_PARAM stParam = {listBright.data(), listDark.data(), WIDTH, HEIGHT, nBitDepth, 0};
    const uint32_t nTarget = TARGET << (nBitDepth - 8);
    auto nSize = static_cast<uint32_t>(listTable.size());
    TBytes listResult(nSize);
    return OmbrixComputeFlatField(stParam, listResult.data(), &nSize, &nTarget) == OMBRIX_STATUS_SUCCESS &&
           listResult == listTable;
  }

  bool CorrectsToTheSameFrame(bool bInPlace) const
  {
    const auto nSize = static_cast<uint32_t>(listTable.size());
    TBytes listResult = bInPlace ? listBright : TBytes(listBright.size());
    return OmbrixApplyFlatField(bInPlace ? listResult.data() : listBright.data(), listResult.data(), nBitDepth, WIDTH,
                                HEIGHT, listTable.data(), &nSize) == OMBRIX_STATUS_SUCCESS &&
           listResult == listCorrected;
  }

  uint32_t nBitDepth;
  TBytes listBright;
  TBytes listDark;
  TBytes listTable;
  TBytes listCorrected;
};

} // namespace

TEST(OmbrixThreads, TablesAndFramesAreThoseOfOneThread)
{
  for (const uint32_t nBitDepth : {8U, 12U, 16U}) {
    const SExample stExample(nBitDepth);
    EXPECT_TRUE(stExample.ComputesTheSameTable()) << nBitDepth;
    EXPECT_TRUE(stExample.CorrectsToTheSameFrame(false)) << nBitDepth;
    EXPECT_TRUE(stExample.CorrectsToTheSameFrame(true)) << nBitDepth;
  }
}

// The first frame of a pool is shared, however busy the machine is.
TEST(OmbrixThreads, BandsOfAFirstFrameAreThoseOfOneThread)
{
  const SExample stExample(12);
  TBytes listTable(stExample.listTable.size());
  CBandPool poolForTable(3);
  ComputeTable({stExample.listBright.data(), stExample.listDark.data(), PIXELS, 12}, TARGET << 4, listTable.data(),
               poolForTable);
  EXPECT_TRUE(listTable == stExample.listTable);
  TBytes listCorrected(stExample.listCorrected.size());
  CBandPool poolForFrame(3);
  ApplyTable({stExample.listBright.data(), listCorrected.data(), PIXELS, 12}, {listTable.data(), true}, poolForFrame);
  EXPECT_TRUE(listCorrected == stExample.listCorrected);
}

TEST(OmbrixThreads, SeveralCallersAtOnceGetTheirOwnFrames)
{
  const SExample aExamples[] = {SExample(8), SExample(12)};
  std::vector<std::thread> listCallers;
  std::vector<int> listRight(4);
  for (std::size_t nCaller = 0; nCaller < listRight.size(); ++nCaller) {
    listCallers.emplace_back([&, nCaller] {
      for (int n = 0; n < 5; ++n) {
        listRight[nCaller] += aExamples[nCaller % 2].CorrectsToTheSameFrame(nCaller < 2) ? 1 : 0;
        listRight[nCaller] += aExamples[nCaller % 2].ComputesTheSameTable() ? 1 : 0;
      }
    });
  }
  for (std::thread &caller : listCallers) {
    caller.join();
  }
  EXPECT_EQ(listRight, std::vector<int>(4, 10));
}

#if !defined(_WIN32)
TEST(OmbrixThreads, AForkedProcessCorrectsFramesToo)
{
#if defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "the thread sanitizer follows no threads into a forked process";
#endif
  const SExample stExample(8);
  // Threads are there, and some of the forks fall into a frame of another thread.
  ASSERT_TRUE(stExample.CorrectsToTheSameFrame(false));
  std::atomic<bool> bStop{false};
  std::thread busy([&] {
    while (!bStop) {
      (void)stExample.CorrectsToTheSameFrame(false);
    }
  });
  for (int n = 0; n < 8; ++n) {
    const pid_t nChild = fork();
    if (nChild == 0) {
      alarm(60);
      _exit(stExample.CorrectsToTheSameFrame(true) && stExample.CorrectsToTheSameFrame(false) ? 0 : 1);
    }
    int nStatus = -1;
    EXPECT_EQ(waitpid(nChild, &nStatus, 0), nChild);
    EXPECT_TRUE(WIFEXITED(nStatus) && WEXITSTATUS(nStatus) == 0) << nStatus;
  }
  bStop = true;
  busy.join();
}
#endif
