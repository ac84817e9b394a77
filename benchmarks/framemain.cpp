// What a frame costs beside the bare kernel: a whole ProcessImage call that corrects it, and one poll for a request.
#include <memory>
#include <string>

#include <QApplication>

#include <benchmark/benchmark.h>

#include "benchmarks/pluginbench.h"
#include "ombrix/flatfield.h"
#include "pluginobject/shadingcorrection/process/framebuffer.h"
#include "pluginobject/shadingcorrection/process/shadingcorrectionpro_pc.h"

namespace {

struct SFrame {
  const char *pName;
  int32_t nWidth;
  int32_t nHeight;
};

constexpr double SHORTEST_SECONDS = 0.1;
constexpr SFrame FRAMES[] = {{"0.003", 64, 48}, {"5", 2592, 1944}};

// Kept until the program ends: the application outlives it.
std::shared_ptr<CPluginBench> MakeBench(const SFrame &stFrame)
{
  auto pBench = std::make_shared<CPluginBench>("Mono8", stFrame.nWidth, stFrame.nHeight);
  return pBench->AcquireBright(1) && pBench->Execute() ? pBench : nullptr;
}

// Both work from the same frame into the same output, with a table in memory of the same kind.
void RegisterFrame(const SFrame &stFrame, const std::shared_ptr<CPluginBench> &pBench)
{
  const std::string strPrefix = std::string("frame|") + stFrame.pName + "|";
  benchmark::RegisterBenchmark((strPrefix + "ProcessImage").c_str(), [=](benchmark::State &state) {
    for ([[maybe_unused]] auto _ : state) {
      if (!pBench->Process()) {
        state.SkipWithError("not corrected");
        break;
      }
    }
  })->MinTime(SHORTEST_SECONDS);
  const std::size_t nPixels = pBench->GetFrameBytes();
  const auto pTable = std::make_shared<CFrameBuffer>();
  if (!pTable->Allocate(4 * nPixels)) {
    return;
  }
  benchmark::RegisterBenchmark((strPrefix + "kernel").c_str(), [=](benchmark::State &state) {
    for ([[maybe_unused]] auto _ : state) {
      ApplyTable(pBench->GetFrame(), pBench->GetOutput(), 8, nPixels, pTable->GetData(), false);
      benchmark::ClobberMemory();
    }
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
