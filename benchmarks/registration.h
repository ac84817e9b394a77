/// \file
/// Naming and running the benchmarks of one kernel.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "benchmarks/arena.h"
#include "benchmarks/stream/streamkernels.h"

/// One way of doing a kernel's work on a frame.
using FnWork = std::function<void(const SFrameSize &stSize)>;

/// Streams at the instruction level that the kernels run at.
void Stream(const SStream &stStream);

/// Registers benchmarks "kernel|size|who": ours and the stream limit for every size, OpenCV's forms for 5 and 26
/// megapixels, the slow twin for the smallest.
class CKernelBenchmarks {
public:
  explicit CKernelBenchmarks(std::string strKernel) : m_strKernel(std::move(strKernel)) {}

  CKernelBenchmarks &Ours(const FnWork &fnWork);
  /// \param fnStream what the kernel's stream touches
  CKernelBenchmarks &Limit(const std::function<SStream(const SFrameSize &)> &fnStream);
  /// \param strForm which of OpenCV's functions
  CKernelBenchmarks &OpenCv(const std::string &strForm, const FnWork &fnWork);
  CKernelBenchmarks &Twin(const FnWork &fnWork);
  /// Another way of doing the work, for frames from 5 megapixels on, measured by the clock: of several threads it is
  /// not the caller's processor time that counts.
  CKernelBenchmarks &ByClock(const std::string &strWay, const FnWork &fnWork);

private:
  void Register(const SFrameSize &stSize, const std::string &strWho, const FnWork &fnWork, bool bByClock = false);

  std::string m_strKernel;
};

/// The families of kernels.
void RegisterCorrection();
void RegisterAverage();
void RegisterStatistics();
