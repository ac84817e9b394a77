// What a frame costs beside the bare kernel: a whole ProcessImage call that corrects it, and one poll for a request.
#include <algorithm>
#include <chrono>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <QApplication>

#include <benchmark/benchmark.h>

#include "benchmarks/pluginbench.h"
#include "ombrix/bandpool.h"
#include "ombrix/flatfield.h"
#include "pluginobject/shadingcorrection/process/acquisition/framebuffer.h"
#include "pluginobject/shadingcorrection/process/shadingcorrectionpro_pc.h"

using ffc::pluginobject::CFeatureAccess;
using ffc::process::CFrameBuffer;

namespace {

struct SFrame {
  const char *pName;
  int32_t nWidth;
  int32_t nHeight;
};

constexpr double SHORTEST_SECONDS = 0.3;
constexpr SFrame FRAMES[] = {{"0.003", 64, 48}, {"5", 2592, 1944}};

// Kept until the program ends: the application outlives it.
std::shared_ptr<CPluginBench> MakeBench(const SFrame &stFrame)
{
  auto pBench = std::make_shared<CPluginBench>("Mono8", stFrame.nWidth, stFrame.nHeight);
  return pBench->AcquireBright(1) && pBench->Execute() ? pBench : nullptr;
}

using TClock = std::chrono::steady_clock;

template <typename TWork>
double MeasureSeconds(TWork fnWork)
{
  const TClock::time_point start = TClock::now();
  fnWork();
  return std::chrono::duration<double>(TClock::now() - start).count();
}

double GetMedian(std::vector<double> &listValues)
{
  const auto itMiddle = listValues.begin() + static_cast<std::ptrdiff_t>(listValues.size() / 2);
  std::nth_element(listValues.begin(), itMiddle, listValues.end());
  return *itMiddle;
}

// The call and the kernel in turn, from the same frame into the same output, with tables in memory of the same kind. A
// machine that does other things too changes from one millisecond to the next, but hardly within a pair.
void ComparePairs(benchmark::State &state, CPluginBench &bench)
{
  const std::size_t nPixels = bench.GetFrameBytes();
  ffc::ombrix::CBandPool pool(1U);
  CFrameBuffer table;
  if (!table.Allocate(sizeof(uint16_t) * nPixels)) {
    state.SkipWithError("no memory");
    return;
  }
  // Pages that nobody has written to are all one page of zeros, which is always in the cache.
  std::memset(table.GetData(), 0x10, table.GetSize());
  std::vector<double> listCalls;
  std::vector<double> listKernels;
  std::vector<double> listRatios;
  for ([[maybe_unused]] auto _ : state) {
    bool bCorrected = false;
    listCalls.push_back(MeasureSeconds([&] { bCorrected = bench.Process(); }));
    listKernels.push_back(MeasureSeconds([&] {
      ffc::ombrix::ApplyTable({bench.GetFrame(), bench.GetOutput(), nPixels, 8}, {table.GetData(), false}, pool);
    }));
    listRatios.push_back(listCalls.back() / listKernels.back());
    if (!bCorrected) {
      state.SkipWithError("not corrected");
      return;
    }
  }
  state.counters["call_us"] = GetMedian(listCalls) * 1e6;
  state.counters["kernel_us"] = GetMedian(listKernels) * 1e6;
  state.counters["ratio"] = GetMedian(listRatios);
}

void RegisterFrame(const SFrame &stFrame, const std::shared_ptr<CPluginBench> &pBench)
{
  benchmark::RegisterBenchmark((std::string("frame|") + stFrame.pName + "|pairs").c_str(), [=](
                                                                                             benchmark::State &state) {
    ComparePairs(state, *pBench);
  })->MinTime(SHORTEST_SECONDS);
}

void PollRequest(benchmark::State &state)
{
  CShadingCorrectionPro_PC process{CFeatureAccess(nullptr), CFeatureAccess(nullptr)};
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(process.WaitImageRequest());
  }
}

} // namespace

int main(int argc, char **argv)
{
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("OMBRIX_THREADS", "1"); // as the bare kernel
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  for (const SFrame &stFrame : FRAMES) {
    const std::shared_ptr<CPluginBench> pBench = MakeBench(stFrame);
    if (pBench == nullptr) {
      return 1;
    }
    RegisterFrame(stFrame, pBench);
  }
  benchmark::RegisterBenchmark("poll|0|WaitImageRequest", PollRequest)->MinTime(SHORTEST_SECONDS);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::ClearRegisteredBenchmarks();
  return 0;
}
