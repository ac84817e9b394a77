// A library that is loaded, works on large frames and is unloaded again takes its threads with it.
#include "ombrix/ombrix.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <memory>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <malloc.h>
#include <pthread.h>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr uint32_t WIDTH = 2592;
constexpr uint32_t HEIGHT = 1944;
constexpr uint32_t THREADS = 3; // OMBRIX_THREADS of this program

std::size_t CountThreads()
{
  using std::filesystem::directory_iterator;
  return static_cast<std::size_t>(std::distance(directory_iterator("/proc/self/task"), directory_iterator()));
}

class CLoadedOmbrix {
public:
  CLoadedOmbrix()
    : m_pLibrary(dlopen(OMBRIX_FILE, RTLD_NOW | RTLD_LOCAL)), m_listFrame(std::size_t{WIDTH} * HEIGHT, 100),
      m_listTable(m_listFrame.size(), 8192)
  {
  }
  ~CLoadedOmbrix() { dlclose(m_pLibrary); }
  CLoadedOmbrix(const CLoadedOmbrix &) = delete;
  CLoadedOmbrix &operator=(const CLoadedOmbrix &) = delete;

  // Doubles a frame of 100.
  bool Correct()
  {
    const auto fnApply = reinterpret_cast<decltype(&OmbrixApplyFlatField)>(dlsym(m_pLibrary, "OmbrixApplyFlatField"));
    std::fill(m_listFrame.begin(), m_listFrame.end(), uint8_t{100});
    const auto nSize = static_cast<uint32_t>(2 * m_listTable.size());
    return fnApply(m_listFrame.data(), m_listFrame.data(), 8, WIDTH, HEIGHT, m_listTable.data(), &nSize) == 0 &&
           std::count(m_listFrame.begin(), m_listFrame.end(), 200) == std::ptrdiff_t{WIDTH} * HEIGHT;
  }

private:
  void *m_pLibrary;
  std::vector<uint8_t> m_listFrame;
  std::vector<uint16_t> m_listTable;
};

} // namespace

TEST(OmbrixUnload, TakesItsThreadsAlong)
{
  std::thread([] {}).join(); // what a sanitizer starts with a program's first thread counts before
  const std::size_t nBefore = CountThreads();
  for (int n = 0; n < 8; ++n) {
    CLoadedOmbrix library;
    EXPECT_EQ(CountThreads(), nBefore) << "none before the first large frame";
    EXPECT_TRUE(library.Correct());
    EXPECT_TRUE(library.Correct());
    EXPECT_EQ(CountThreads(), nBefore + THREADS - 1);
  }
  EXPECT_EQ(CountThreads(), nBefore);
  EXPECT_EQ(dlopen(OMBRIX_FILE, RTLD_NOW | RTLD_NOLOAD), nullptr) << "still loaded";
}

TEST(OmbrixUnload, AForkedProcessHasThreadsOfItsOwnAndUnloadsThemToo)
{
#if defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "the thread sanitizer follows no threads into a forked process";
#endif
  auto pLibrary = std::make_unique<CLoadedOmbrix>();
  ASSERT_TRUE(pLibrary->Correct());
  const pid_t nChild = fork();
  if (nChild == 0) {
    alarm(60);
    bool bRight = CountThreads() == 1 && pLibrary->Correct() && CountThreads() == THREADS;
    pLibrary.reset();
    bRight = bRight && CountThreads() == 1;
    _exit(bRight ? 0 : 1);
  }
  int nStatus = -1;
  EXPECT_EQ(waitpid(nChild, &nStatus, 0), nChild);
  EXPECT_TRUE(WIFEXITED(nStatus) && WEXITSTATUS(nStatus) == 0) << nStatus;
}

TEST(OmbrixUnload, AFrameAllocatesNothing)
{
  CLoadedOmbrix library;
  EXPECT_TRUE(library.Correct());
  const auto nBefore = mallinfo2().uordblks;
  for (int n = 0; n < 20; ++n) {
    EXPECT_TRUE(library.Correct());
  }
  EXPECT_EQ(mallinfo2().uordblks, nBefore);
}

TEST(OmbrixUnload, ItsThreadsTakeNoSignals)
{
  static volatile std::sig_atomic_t s_nThread = 0;
  CLoadedOmbrix library;
  EXPECT_TRUE(library.Correct());
  const auto fnBefore = std::signal(SIGUSR1, [](int) { s_nThread = gettid(); });
  sigset_t stBlocked;
  sigemptyset(&stBlocked);
  sigaddset(&stBlocked, SIGUSR1);
  // The one thread that may take it does not: it stays with the process.
  pthread_sigmask(SIG_BLOCK, &stBlocked, nullptr);
  kill(getpid(), SIGUSR1);
  EXPECT_TRUE(library.Correct());
  EXPECT_EQ(s_nThread, 0);
  pthread_sigmask(SIG_UNBLOCK, &stBlocked, nullptr);
  EXPECT_EQ(s_nThread, gettid());
  (void)std::signal(SIGUSR1, fnBefore);
}

TEST(OmbrixUnload, AProcessorSetOfOneGetsTheSameFrame)
{
  cpu_set_t stBefore;
  ASSERT_EQ(sched_getaffinity(0, sizeof stBefore, &stBefore), 0);
  cpu_set_t stOne;
  CPU_ZERO(&stOne);
  CPU_SET(sched_getcpu(), &stOne);
  ASSERT_EQ(sched_setaffinity(0, sizeof stOne, &stOne), 0);
  {
    CLoadedOmbrix library;
    EXPECT_TRUE(library.Correct());
  }
  EXPECT_EQ(sched_setaffinity(0, sizeof stBefore, &stBefore), 0);
}
