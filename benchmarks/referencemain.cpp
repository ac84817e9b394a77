// The weighted reference of 26 megapixels, in times of averaging 16 such frames, and the memory that it takes.
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <functional>
#include <optional>
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

struct SSeconds {
  double dClock = 1e9;
  double dProcessor = 1e9; ///< of all threads together
};

/// Of the fastest repetition, by each clock.
SSeconds Measure(const std::function<void()> &fnWork)
{
  SSeconds stFastest;
  for (int n = 0; n < REPETITIONS; ++n) {
    const auto tStart = std::chrono::steady_clock::now();
    const std::clock_t nStart = std::clock();
    fnWork();
    const double dProcessor = static_cast<double>(std::clock() - nStart) / CLOCKS_PER_SEC;
    const std::chrono::duration<double> duration = std::chrono::steady_clock::now() - tStart;
    stFastest = {std::min(stFastest.dClock, duration.count()), std::min(stFastest.dProcessor, dProcessor)};
  }
  return stFastest;
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

/// Whether a pixel lies in a spot of dust, 6 pixels in radius.
/// \param nSpacing from spot to spot, pixels
bool IsInDust(std::size_t nPixel, uint32_t nSpacing)
{
  constexpr int64_t RADIUS = 6;
  const int64_t nX = static_cast<int64_t>(nPixel % WIDTH % nSpacing) - RADIUS;
  const int64_t nY = static_cast<int64_t>(nPixel / WIDTH % nSpacing) - RADIUS;
  return nX * nX + nY * nY <= RADIUS * RADIUS;
}

/// Shading, a pattern and noise, from a small generator: the values decide nothing but which weights there are.
/// \param nDust spots of dust so far from each other; 0: none
void FillFrame(std::vector<uint16_t> &listFrame, uint32_t nFrame, uint32_t nDust)
{
  uint32_t nNoise = nFrame * 2654435761U + 1;
  for (std::size_t n = 0; n < listFrame.size(); ++n) {
    nNoise = nNoise * 1664525U + 1013904223U;
    const auto nPattern = static_cast<uint32_t>(n) * 2246822519U;
    const uint32_t nShading = static_cast<uint32_t>(n % WIDTH) / 16;
    const uint32_t nLight = nDust > 0 && IsInDust(n, nDust) ? 1800 : 2000;
    listFrame[n] = static_cast<uint16_t>(nLight + nShading + (nPattern >> 27U) + (nNoise >> 26U));
  }
}

/// Two frames, which averaging takes in turn. Their weighted reference takes as long as that of any other number.
class CMeasurement {
public:
  SSeconds Average(uint32_t nDust)
  {
    for (uint32_t nFrame = 0; nFrame < 2; ++nFrame) {
      std::swap(m_listFrame, m_listFormer);
      FillFrame(m_listFrame, nFrame, nDust);
    }
    m_meter = {};
    m_meter.Add(m_listFormer.data(), m_listFrame.data(), WIDTH, HEIGHT, 2);
    const SSeconds stSeconds = Measure([&] {
      std::fill(m_listSums.begin(), m_listSums.end(), 0U);
      for (int n = 0; n < FRAMES; ++n) {
        (void)m_calc.AccumulateFrame(n % 2 == 0 ? m_listFrame.data() : m_listFormer.data(), 12, PIXELS,
                                     m_listSums.data());
      }
      (void)m_calc.DivideFrame(m_listSums.data(), PIXELS, FRAMES, 12, m_listBright.data());
    });
    std::transform(m_listFrame.begin(), m_listFrame.end(), m_listFormer.begin(), m_listSums.begin(), std::plus<>());
    return stSeconds;
  }

  /// \return nothing when it fails
  std::optional<SSeconds> Weight(uint32_t nThreads)
  {
    ffc::reference::SReferenceInput stInput;
    stInput.nWidth = WIDTH;
    stInput.nHeight = HEIGHT;
    stInput.nBitDepth = 12;
    stInput.stBright = {m_listSums.data(), 2, 0, &m_meter};
    stInput.nThreads = nThreads;
    ffc::reference::SReferenceResult stResult;
    int32_t nStatus = 0;
    const SSeconds stSeconds = Measure(
      [&] { nStatus = ffc::reference::MakeWeightedReference(stInput, m_listBright.data(), nullptr, stResult); });
    return nStatus == ffc::reference::STATUS_SUCCESS ? std::optional(stSeconds) : std::nullopt;
  }

private:
  std::vector<uint16_t> m_listFrame = std::vector<uint16_t>(PIXELS);
  std::vector<uint16_t> m_listFormer = std::vector<uint16_t>(PIXELS);
  std::vector<uint32_t> m_listSums = std::vector<uint32_t>(PIXELS);
  std::vector<uint16_t> m_listBright = std::vector<uint16_t>(PIXELS);
  ffc::reference::CNoiseMeter m_meter;
  CImageCalc m_calc;
};

} // namespace

int main()
{
  CMeasurement measurement;
  std::printf(
    "\n## Weighted reference\n\nOf 16 frames of 26 megapixels, in times of averaging them on one thread; spots of "
    "dust, 12 pixels wide and 10 %% deep, one in each square of so many pixels:\n\n"
    "| dust | threads | x the average | processor time of all threads, x the average | bytes per pixel beside input "
    "and "
    "output |\n|---|---|---|---|---|\n");
  for (const uint32_t nDust : {0U, 100U, 40U}) {
    const SSeconds stAverage = measurement.Average(nDust);
    const double dMemoryBefore = GetPeakMemory();
    for (const uint32_t nThreads : {1U, ffc::platform::CountUsableProcessors()}) {
      const std::optional<SSeconds> stWeighted = measurement.Weight(nThreads);
      if (!stWeighted) {
        return 1;
      }
      const std::string strDust = nDust == 0 ? "none" : std::to_string(nDust) + " x " + std::to_string(nDust);
      std::printf("| %s | %u | %.1f | %.1f | ", strDust.c_str(), nThreads, stWeighted->dClock / stAverage.dClock,
                  stWeighted->dProcessor / stAverage.dProcessor);
      // The peak shows the first one's only.
      if (nDust == 0) {
        std::printf("%.1f |\n", (GetPeakMemory() - dMemoryBefore) / static_cast<double>(PIXELS));
      } else {
        std::printf("as above |\n");
      }
    }
  }
  return 0;
}
