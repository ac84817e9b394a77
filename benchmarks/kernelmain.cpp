// Every kernel beside the stream limit, OpenCV's best forms and the slow twin, on one thread.
#include <string>

#include <benchmark/benchmark.h>
#include <opencv2/core.hpp>

#include "benchmarks/registration.h"
#include "platform/instructionlevel.h"

using ffc::platform::GetInstructionLevel;
using ffc::platform::GetInstructionLevelName;

int main(int argc, char **argv)
{
  cv::setNumThreads(1);
  benchmark::AddCustomContext("instruction_level", GetInstructionLevelName(GetInstructionLevel()));
  RegisterCorrection();
  RegisterAverage();
  RegisterStatistics();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
    return 1;
  }
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
