// Time and memory of a whole bright acquisition of 16 frames of 26 megapixels, and of the execution, through the
// dialog. Prints "name value" lines. Linux only: it asks /proc.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <limits>
#include <string>

#include <QApplication>

#include "benchmarks/pluginbench.h"
#include "pluginobject/shadingcorrection/imagecalc/frameaverage.h"
#include "pluginobject/shadingcorrection/imagecalc/framesums.h"
#include "pluginobject/shadingcorrection/process/acquisition/framebuffer.h"

using ffc::imagecalc::AddFrame;
using ffc::imagecalc::AverageFrames;
using ffc::imagecalc::CFrameSums;
using ffc::process::CFrameBuffer;

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
double TakeSeconds(TWork fnWork)
{
  const auto start = std::chrono::steady_clock::now();
  fnWork();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// What the acquisition cannot do without: each frame copied and added, and the average. In buffers of the module's kind
// that were used before.
class CBareWork {
public:
  CBareWork(const CPluginBench &bench, int32_t nBitDepth) : m_bench(bench), m_nBitDepth(nBitDepth)
  {
    m_bReady = Take(m_frame, bench.GetFrameBytes()) && Take(m_sums, sizeof(uint32_t) * PIXELS) &&
               Take(m_average, bench.GetFrameBytes());
  }

  bool IsReady() const { return m_bReady; }

  // With sums as the acquisition has them.
  void Run()
  {
    CFrameSums sums(m_sums.GetData()); // of whatever is there: values do not matter
    for (int32_t nFrame = 0; nFrame < FRAME_COUNT; ++nFrame) {
      std::memcpy(m_frame.GetData(), m_bench.GetFrame(), m_frame.GetSize());
      (void)sums.Add(m_frame.GetData(), m_nBitDepth, PIXELS);
    }
    (void)sums.Average(FRAME_COUNT, m_nBitDepth, PIXELS, m_average.GetData());
  }

  // With sums of 32 bits.
  void RunWide()
  {
    auto *const pSums = reinterpret_cast<uint32_t *>(m_sums.GetData());
    for (int32_t nFrame = 0; nFrame < FRAME_COUNT; ++nFrame) {
      std::memcpy(m_frame.GetData(), m_bench.GetFrame(), m_frame.GetSize());
      AddFrame(m_frame.GetData(), m_nBitDepth, PIXELS, pSums);
    }
    AverageFrames(pSums, PIXELS, FRAME_COUNT, m_nBitDepth, m_average.GetData());
  }

private:
  static constexpr int64_t PIXELS = int64_t{WIDTH} * HEIGHT;

  static bool Take(CFrameBuffer &buffer, uint64_t nSize)
  {
    if (!buffer.Allocate(nSize)) {
      return false;
    }
    std::memset(buffer.GetData(), 1, nSize);
    return true;
  }

  const CPluginBench &m_bench;
  const int32_t m_nBitDepth;
  CFrameBuffer m_frame;
  CFrameBuffer m_sums;
  CFrameBuffer m_average;
  bool m_bReady = false;
};

bool Measure(const std::string &strPixelFormat, int32_t nBitDepth)
{
  CPluginBench bench(strPixelFormat, WIDTH, HEIGHT);
  CBareWork bareWork(bench, nBitDepth);
  const auto dFrame = static_cast<double>(bench.GetFrameBytes());
  // The first acquisition makes the dialog ready.
  bool bDone = bareWork.IsReady() && bench.AcquireBright(1);
  if (!bDone) {
    return false;
  }
  const double dBefore = ReadMemory("VmRSS") - dFrame; // the bright frame that stays is one of the buffers
  ResetPeak();
  double dBare = std::numeric_limits<double>::max();
  double dBareWide = dBare;
  double dBright = dBare;
  double dExecute = dBare;
  // In turn: what slows the machine for a while slows all.
  for (int nRound = 0; nRound < ROUNDS; ++nRound) {
    dBare = std::min(dBare, TakeSeconds([&] { bareWork.Run(); }));
    dBareWide = std::min(dBareWide, TakeSeconds([&] { bareWork.RunWide(); }));
    dBright = std::min(dBright, TakeSeconds([&] { bDone = bench.AcquireBright(FRAME_COUNT) && bDone; }));
  }
  const double dBrightPeak = ReadMemory("VmHWM") - dBefore;
  ResetPeak();
  for (int nRound = 0; nRound < ROUNDS; ++nRound) {
    dExecute = std::min(dExecute, TakeSeconds([&] { bDone = bench.Execute() && bDone; }));
  }
  const double dExecutePeak = ReadMemory("VmHWM") - dBefore;
  // The received frame, which becomes the bright one, and sums of 2 bytes per pixel; then the bright frame, its gains
  // of 2 bytes per pixel, and those that are in force.
  constexpr double PIXELS = double{WIDTH} * HEIGHT;
  const double dBrightBuffers = dFrame + 2.0 * PIXELS;
  const double dExecuteBuffers = dFrame + 4.0 * PIXELS;
  const char *const pName = strPixelFormat.c_str();
  std::printf("%s bare_seconds %.4f\n", pName, dBare);
  std::printf("%s bare_wide_seconds %.4f\n", pName, dBareWide);
  std::printf("%s bright_seconds %.4f\n", pName, dBright);
  std::printf("%s execute_seconds %.4f\n", pName, dExecute);
  std::printf("%s bright_megabytes %.1f\n", pName, dBrightPeak / 1e6);
  std::printf("%s bright_of_buffers %.3f\n", pName, dBrightPeak / dBrightBuffers);
  std::printf("%s execute_megabytes %.1f\n", pName, dExecutePeak / 1e6);
  std::printf("%s execute_of_buffers %.3f\n", pName, dExecutePeak / dExecuteBuffers);
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
