// How long a frame takes that two threads share, beside the same frame corrected by one: frame by frame in turn, on a
// machine that does nothing else, and beside a thread that keeps a processor busy. Prints "part name value" lines.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include "benchmarks/arena.h"
#include "ombrix/bandpool.h"
#include "ombrix/flatfield.h"

namespace {

constexpr uint32_t BIT_DEPTH = 12;
constexpr int WARM_UP_PAIRS = 20;

using TClock = std::chrono::steady_clock;

/// A thread that has always something to do.
class CNeighbour {
public:
  ~CNeighbour()
  {
    m_bStop = true;
    m_thread.join();
  }

private:
  std::atomic<bool> m_bStop{false};
  std::thread m_thread{[this] {
    while (!m_bStop) {
    }
  }};
};

/// Frames with a dark level, and what corrects them.
class CFrames {
public:
  explicit CFrames(const SFrameSize &stSize)
    : m_nPixels(stSize.CountPixels()), m_listSource(m_nPixels, 2000), m_listDestination(m_nPixels, 1),
      m_listTable(2 * m_nPixels, 4096)
  {
  }

  /// \return seconds
  double Correct(ffc::ombrix::CBandPool &pool)
  {
    const TClock::time_point start = TClock::now();
    ffc::ombrix::ApplyTable({m_listSource.data(), m_listDestination.data(), m_nPixels, BIT_DEPTH},
                            {m_listTable.data(), true}, pool);
    return std::chrono::duration<double>(TClock::now() - start).count();
  }

private:
  std::size_t m_nPixels;
  std::vector<uint16_t> m_listSource;
  std::vector<uint16_t> m_listDestination;
  std::vector<uint16_t> m_listTable;
};

void Print(const std::string &strPart, const char *pName, std::vector<double> listRatios)
{
  std::sort(listRatios.begin(), listRatios.end());
  for (const int nPercent : {50, 95, 99}) {
    const std::size_t nIndex = (listRatios.size() - 1) * static_cast<std::size_t>(nPercent) / 100;
    std::printf("%s %s_%d %.4f\n", strPart.c_str(), pName, nPercent, listRatios[nIndex]);
  }
}

// Of a frame that two threads share to the frame of one thread before it; and of one thread's frame to its one before,
// which tells how much of that is the machine's own scatter.
void Measure(const SFrameSize &stSize, int nPairs, const std::string &strState)
{
  ffc::ombrix::CBandPool alone(1U);
  ffc::ombrix::CBandPool shared(2U);
  CFrames frames(stSize);
  std::vector<double> listShared;
  std::vector<double> listAlone;
  double dBefore = 0.0;
  for (int nPair = -WARM_UP_PAIRS; nPair < nPairs; ++nPair) {
    const double dAlone = frames.Correct(alone);
    const double dShared = frames.Correct(shared);
    if (nPair >= 0) {
      listShared.push_back(dShared / dAlone);
      listAlone.push_back(dAlone / dBefore);
    }
    dBefore = dAlone;
  }
  const std::string strPart = std::string(stSize.pName) + "_" + strState;
  Print(strPart, "shared", std::move(listShared));
  Print(strPart, "alone", std::move(listAlone));
  std::fflush(stdout);
}

} // namespace

int main()
{
  for (const SFrameSize &stSize : FRAME_SIZES) {
    const std::size_t nPixels = stSize.CountPixels();
    if (nPixels < ffc::ombrix::SMALLEST_SPLIT_PIXELS || nPixels > 30'000'000) {
      continue;
    }
    const int nPairs = nPixels < 10'000'000 ? 1000 : 400;
    Measure(stSize, nPairs, "idle");
    const CNeighbour neighbour;
    Measure(stSize, nPairs, "busy");
  }
  return 0;
}
