// Time and memory of a whole bright acquisition of 16 frames of 26 megapixels, and of the execution, through the
// dialog. Prints "name value" lines. Linux only: it asks /proc.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <limits>
#include <string>
#include <vector>

#include <QApplication>

#include "benchmarks/pluginbench.h"
#include "pluginobject/shadingcorrection/imagecalc/frameaverage.h"

using ffc::imagecalc::AddFrame;
using ffc::imagecalc::AverageFrames;

namespace {

constexpr int32_t WIDTH = 6240;
constexpr int32_t HEIGHT = 4160;
constexpr int32_t FRAME_COUNT = 16;
constexpr int ROUNDS = 5; // of which the fastest counts

// Bytes of one line of /proc/self/status.
double ReadMemory(const std::string &strName)
{
  std::ifstream file("/proc/self/status");
  std::string strWord;
  double dKilobytes = 0.0;
  while (file >> strWord && strWord != strName + ":") {
  }
  file >> dKilobytes;
  return dKilobytes * 1024.0;
}

// Makes the peak start anew.
void ResetPeak()
{
  std::ofstream("/proc/self/clear_refs") << "5";
}

template <typename TWork>
double MeasureSeconds(TWork fnWork)
{
  double dFastest = std::numeric_limits<double>::max();
  for (int nRound = 0; nRound < ROUNDS; ++nRound) {
    const auto start = std::chrono::steady_clock::now();
    fnWork();
    dFastest = std::min(dFastest, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  }
  return dFastest;
}

// What the acquisition cannot do without: each frame copied and added, and the average. In buffers that were used
// before.
double MeasureBareWork(const CPluginBench &bench, int32_t nBitDepth)
{
  constexpr int64_t PIXELS = int64_t{WIDTH} * HEIGHT;
  std::vector<uint8_t> listFrame(bench.GetFrameBytes(), 1);
  std::vector<uint32_t> listSums(static_cast<std::size_t>(PIXELS), 1);
  std::vector<uint8_t> listAverage(bench.GetFrameBytes(), 1);
  return MeasureSeconds([&] {
    for (int32_t nFrame = 0; nFrame < FRAME_COUNT; ++nFrame) {
      std::memcpy(listFrame.data(), bench.GetFrame(), listFrame.size());
      AddFrame(listFrame.data(), nBitDepth, PIXELS, listSums.data());
    }
    AverageFrames(listSums.data(), PIXELS, FRAME_COUNT, nBitDepth, listAverage.data());
  });
}

bool Measure(const std::string &strPixelFormat, int32_t nBitDepth)
{
  CPluginBench bench(strPixelFormat, WIDTH, HEIGHT);
  const auto dFrame = static_cast<double>(bench.GetFrameBytes());
  // The first acquisition makes the dialog ready.
  bool bDone = bench.AcquireBright(1);
  const double dBefore = ReadMemory("VmRSS") - dFrame; // the bright frame that stays is one of the buffers
  ResetPeak();
  const double dBright = MeasureSeconds([&] { bDone = bench.AcquireBright(FRAME_COUNT) && bDone; });
  const double dExecute = MeasureSeconds([&] { bDone = bench.Execute() && bDone; });
  const double dPeak = ReadMemory("VmHWM") - dBefore;
  // The received frame, which becomes the bright one, and sums of 4 bytes per pixel. The execution has as much: the
  // bright frame, its gains of 2 bytes per pixel, and those that are in force.
  constexpr double PIXELS = double{WIDTH} * HEIGHT;
  const double dBuffers = dFrame + 4.0 * PIXELS;
  const char *const pName = strPixelFormat.c_str();
  std::printf("%s bare_seconds %.4f\n", pName, MeasureBareWork(bench, nBitDepth));
  std::printf("%s bright_seconds %.4f\n", pName, dBright);
  std::printf("%s execute_seconds %.4f\n", pName, dExecute);
  std::printf("%s peak_megabytes %.1f\n", pName, dPeak / 1e6);
  std::printf("%s peak_of_buffers %.3f\n", pName, dPeak / dBuffers);
  return bDone;
}

} // namespace

int main(int argc, char **argv)
{
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  const bool bDone = Measure("Mono8", 8) && Measure("Mono12", 12);
  if (!bDone) {
    std::fprintf(stderr, "The dialog did not do what was asked.\n");
  }
  return bDone ? 0 : 1;
}
