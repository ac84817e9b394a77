#include "benchmarks/registration.h"

#include <benchmark/benchmark.h>

#include "ombrix/sharingjudge.h"
#include "platform/kernelchoice.h"

using ffc::platform::ChooseKernels;
using ffc::platform::GetInstructionLevel;

namespace {

constexpr const char *GOAL_SIZES[] = {"5", "26"};
constexpr double SHORTEST_SECONDS = 0.02;
// With threads that have learnt whether they are worth it.
constexpr uint32_t FRAMES_TO_WARM_UP = ffc::ombrix::FRAMES_TO_LEARN + 2;
constexpr std::size_t SMALLEST_BY_CLOCK = 5'000'000;
// Of sizes that only tell how the time grows; the others have as many as the command line says.
constexpr int GROWTH_REPETITIONS = 2;

bool IsGoalSize(const SFrameSize &stSize)
{
  for (const char *pName : GOAL_SIZES) {
    if (stSize.pName == std::string(pName)) {
      return true;
    }
  }
  return false;
}

// Pages, caches and threads are then as they stay.
void WarmUp(const SFrameSize &stSize, const FnWork &fnWork, bool bThreads)
{
  for (uint32_t n = 0; n < (bThreads ? FRAMES_TO_WARM_UP : 1); ++n) {
    fnWork(stSize);
  }
}

const SStreamKernels &STREAM = ChooseKernels(FindSStreamKernels, GetInstructionLevel());

} // namespace

void CKernelBenchmarks::Register(const SFrameSize &stSize, const std::string &strWho, const FnWork &fnWork,
                                 bool bByClock)
{
  const std::string strName = m_strKernel + "|" + stSize.pName + "|" + strWho;
  auto *const pBenchmark = benchmark::RegisterBenchmark(strName.c_str(),
                                                        [=](benchmark::State &state) {
                                                          WarmUp(stSize, fnWork, bByClock);
                                                          for ([[maybe_unused]] auto _ : state) {
                                                            fnWork(stSize);
                                                            benchmark::ClobberMemory();
                                                          }
                                                        })
                             ->Unit(benchmark::kMicrosecond)
                             ->MinTime(SHORTEST_SECONDS);
  if (!IsGoalSize(stSize)) {
    pBenchmark->Repetitions(GROWTH_REPETITIONS);
  }
  if (bByClock) {
    pBenchmark->UseRealTime();
  }
}

void Stream(const SStream &stStream)
{
  benchmark::DoNotOptimize(STREAM.fnStream(stStream));
}

CKernelBenchmarks &CKernelBenchmarks::Ours(const FnWork &fnWork)
{
  for (const SFrameSize &stSize : FRAME_SIZES) {
    Register(stSize, "ours", fnWork);
  }
  return *this;
}

CKernelBenchmarks &CKernelBenchmarks::Limit(const std::function<SStream(const SFrameSize &)> &fnStream)
{
  for (const SFrameSize &stSize : FRAME_SIZES) {
    Register(stSize, "limit", [=](const SFrameSize &stFrame) { Stream(fnStream(stFrame)); });
  }
  return *this;
}

CKernelBenchmarks &CKernelBenchmarks::OpenCv(const std::string &strForm, const FnWork &fnWork)
{
  for (const SFrameSize &stSize : FRAME_SIZES) {
    if (IsGoalSize(stSize)) {
      Register(stSize, "opencv " + strForm, fnWork);
    }
  }
  return *this;
}

CKernelBenchmarks &CKernelBenchmarks::Twin(const FnWork &fnWork)
{
  Register(FRAME_SIZES[0], "twin", fnWork);
  return *this;
}

CKernelBenchmarks &CKernelBenchmarks::ByClock(const std::string &strWay, const FnWork &fnWork)
{
  for (const SFrameSize &stSize : FRAME_SIZES) {
    if (stSize.CountPixels() >= SMALLEST_BY_CLOCK) {
      Register(stSize, strWay, fnWork, true);
    }
  }
  return *this;
}
