// The weighted reference of 26 megapixels, in times of averaging 16 such frames, and the memory that it takes.
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "platform/workerthread.h"
#include "pluginobject/shadingcorrection/imagecalc/imagecalc.h"
#include "reference/weightedreference.h"

namespace {

constexpr uint32_t WIDTH = 6240;
constexpr uint32_t HEIGHT = 4160;
constexpr std::size_t PIXELS = std::size_t{WIDTH} * HEIGHT;
constexpr int FRAMES = 16;
constexpr int REPETITIONS = 3;

/// Seconds of the fastest repetition.
double Measure(const std::function<void()> &fnWork)
{
  double dFastest = 1e9;
  for (int n = 0; n < REPETITIONS; ++n) {
    const auto tStart = std::chrono::steady_clock::now();
    fnWork();
    dFastest = std::min(dFastest, std::chrono::duration<double>(std::chrono::steady_clock::now() - tStart).count());
  }
  return dFastest;
}

/// Most memory that the process has had, bytes; 0 where the system does not say.
double GetPeakMemory()
{
  std::ifstream status("/proc/self/status");
  for (std::string strLine; std::getline(status, strLine);) {
    if (strLine.rfind("VmHWM:", 0) == 0) {
      return std::stod(strLine.substr(6)) * 1024;
    }
  }
  return 0;
}

/// Shading, a pattern and noise, from a small generator: the values decide nothing but which weights there are.
void FillFrame(std::vector<uint16_t> &listFrame, uint32_t nFrame)
{
  uint32_t nNoise = nFrame * 2654435761U + 1;
  for (std::size_t n = 0; n < listFrame.size(); ++n) {
    nNoise = nNoise * 1664525U + 1013904223U;
    const auto nPattern = static_cast<uint32_t>(n) * 2246822519U;
    const uint32_t nShading = static_cast<uint32_t>(n % WIDTH) / 16;
    listFrame[n] = static_cast<uint16_t>(2000 + nShading + (nPattern >> 27U) + (nNoise >> 26U));
  }
}

} // namespace

int main()
{
  std::vector<uint16_t> listFrame(PIXELS);
  std::vector<uint16_t> listFormer(PIXELS);
  std::vector<uint32_t> listSums(PIXELS);
  std::vector<uint16_t> listBright(PIXELS);
  ffc::reference::CNoiseMeter meter;
  CImageCalc calc;
  for (uint32_t nFrame = 0; nFrame < 2; ++nFrame) {
    std::swap(listFrame, listFormer);
    FillFrame(listFrame, nFrame);
  }
  meter.Add(listFormer.data(), listFrame.data(), WIDTH, HEIGHT, 2);
  const double dAverage = Measure([&] {
    std::fill(listSums.begin(), listSums.end(), 0U);
    for (int n = 0; n < FRAMES; ++n) {
      (void)calc.AccumulateFrame(n % 2 == 0 ? listFrame.data() : listFormer.data(), 12, PIXELS, listSums.data());
    }
    (void)calc.DivideFrame(listSums.data(), PIXELS, FRAMES, 12, listBright.data());
  });
  const double dMemoryBefore = GetPeakMemory();
  ffc::reference::SReferenceInput stInput;
  stInput.nWidth = WIDTH;
  stInput.nHeight = HEIGHT;
  stInput.nBitDepth = 12;
  stInput.stBright = {listSums.data(), FRAMES, 0, &meter};
  std::printf("\n## Weighted reference\n\nOf 16 frames of 26 megapixels, in times of averaging them on one thread:\n\n"
              "| threads | x the average | bytes per pixel beside input and output |\n|---|---|---|\n");
  for (const uint32_t nThreads : {1U, ffc::platform::CountUsableProcessors()}) {
    stInput.nThreads = nThreads;
    ffc::reference::SReferenceResult stResult;
    int32_t nStatus = 0;
    const double dWeighted =
      Measure([&] { nStatus = ffc::reference::MakeWeightedReference(stInput, listBright.data(), nullptr, stResult); });
    if (nStatus != ffc::reference::STATUS_SUCCESS) {
      return 1;
    }
    std::printf("| %u | %.1f | %.1f |\n", nThreads, dWeighted / dAverage,
                (GetPeakMemory() - dMemoryBefore) / static_cast<double>(PIXELS));
  }
  return 0;
}
