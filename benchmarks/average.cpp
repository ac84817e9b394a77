// Adding frames and averaging the sums.
#include <cstring>
#include <string>

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include "benchmarks/registration.h"
#include "platform/zeroedmemory.h"
#include "pluginobject/shadingcorrection/imagecalc/frameaverage.h"

using ffc::imagecalc::AddFrame;
using ffc::imagecalc::AddFrameNarrow;
using ffc::imagecalc::AverageFrames;
using ffc::imagecalc::AverageFramesNarrow;
using ffc::platform::GiveZeroedMemory;
using ffc::platform::TakeZeroedMemory;

namespace {

cv::Mat Wrap(const SFrameSize &stSize, int nType, const void *pData)
{
  return cv::Mat(stSize.nHeight, stSize.nWidth, nType, const_cast<void *>(pData));
}

int GetPixelType(int32_t nBitDepth)
{
  return nBitDepth == 8 ? CV_8U : CV_16U;
}

int64_t ReadPixel(const CArena &arena, std::size_t nIndex)
{
  int64_t nValue = 0;
  std::memcpy(&nValue, static_cast<const uint8_t *>(arena.Source()) + nIndex * arena.GetBytesPerPixel(),
              arena.GetBytesPerPixel());
  return nValue;
}

void RegisterAccumulation(int32_t nBitDepth)
{
  const auto fnArena = [=]() -> CArena & { return CArena::ForDepth(nBitDepth); };
  CKernelBenchmarks("accumulation " + std::to_string(nBitDepth) + " bit")
    .Ours([=](const SFrameSize &stSize) {
      AddFrame(fnArena().Source(), nBitDepth, static_cast<int64_t>(stSize.CountPixels()), fnArena().Sums());
    })
    .Limit([=](const SFrameSize &stSize) {
      CArena &arena = fnArena();
      return SStream{arena.Source(), stSize.CountPixels() * arena.GetBytesPerPixel(), nullptr, nullptr, 0,
                     arena.Sums(),   stSize.CountPixels() * sizeof(uint32_t),         nullptr, 0};
    })
    .OpenCv("add",
            [=](const SFrameSize &stSize) {
              const cv::Mat sums = Wrap(stSize, CV_32S, fnArena().Sums());
              cv::add(Wrap(stSize, GetPixelType(nBitDepth), fnArena().Source()), sums, sums, cv::noArray(), CV_32S);
            })
    .OpenCv("accumulate",
            [=](const SFrameSize &stSize) {
              // Floats in the place of integers; their values do not matter.
              cv::Mat sums = Wrap(stSize, CV_32F, fnArena().Sums());
              cv::accumulate(Wrap(stSize, GetPixelType(nBitDepth), fnArena().Source()), sums);
            })
    .Twin([=](const SFrameSize &stSize) {
      for (std::size_t i = 0; i < stSize.CountPixels(); ++i) {
        fnArena().Sums()[i] = static_cast<uint32_t>(fnArena().Sums()[i] + ReadPixel(fnArena(), i));
      }
    });
}

// The same into sums of 16 bits, as an acquisition of few frames does, and their average.
void RegisterNarrow(int32_t nBitDepth, uint32_t nFrameCount)
{
  const auto fnArena = [=]() -> CArena & { return CArena::ForDepth(nBitDepth); };
  CKernelBenchmarks("accumulation " + std::to_string(nBitDepth) + " bit, narrow")
    .Ours([=](const SFrameSize &stSize) {
      (void)AddFrameNarrow(fnArena().Source(), nBitDepth, static_cast<int64_t>(stSize.CountPixels()), fnArena().Sums());
    })
    .Limit([=](const SFrameSize &stSize) {
      CArena &arena = fnArena();
      return SStream{arena.Source(), stSize.CountPixels() * arena.GetBytesPerPixel(), nullptr, nullptr, 0,
                     arena.Sums(),   stSize.CountPixels() * sizeof(uint16_t),         nullptr, 0};
    });
  CKernelBenchmarks("average " + std::to_string(nBitDepth) + " bit, " + std::to_string(nFrameCount) + " frames, narrow")
    .Ours([=](const SFrameSize &stSize) {
      (void)AverageFramesNarrow(fnArena().Sums(), static_cast<int64_t>(stSize.CountPixels()), nFrameCount, nBitDepth,
                                fnArena().Destination());
    })
    .Limit([=](const SFrameSize &stSize) {
      CArena &arena = fnArena();
      return SStream{
        arena.Sums(),        stSize.CountPixels() * sizeof(uint16_t),        nullptr, nullptr, 0, nullptr, 0,
        arena.Destination(), stSize.CountPixels() * arena.GetBytesPerPixel()};
    });
}

// The first frame of an acquisition, added into sums that were just taken; and into sums that were used before.
void RegisterFreshSums(int32_t nBitDepth)
{
  const auto fnAdd = [=](const SFrameSize &stSize, void *pSums) {
    (void)AddFrameNarrow(CArena::ForDepth(nBitDepth).Source(), nBitDepth, static_cast<int64_t>(stSize.CountPixels()),
                         pSums);
  };
  CKernelBenchmarks("first frame " + std::to_string(nBitDepth) + " bit")
    .ByClock("fresh sums",
             [=](const SFrameSize &stSize) {
               void *const pSums = TakeZeroedMemory(stSize.CountPixels() * sizeof(uint32_t));
               fnAdd(stSize, pSums);
               GiveZeroedMemory(pSums);
             })
    .ByClock("used sums", [=](const SFrameSize &stSize) { fnAdd(stSize, CArena::ForDepth(nBitDepth).Sums()); });
}

void RegisterAverageOf(int32_t nBitDepth, uint32_t nFrameCount)
{
  const auto fnArena = [=]() -> CArena & { return CArena::ForDepth(nBitDepth); };
  CKernelBenchmarks("average " + std::to_string(nBitDepth) + " bit, " + std::to_string(nFrameCount) + " frames")
    .Ours([=](const SFrameSize &stSize) {
      AverageFrames(fnArena().Sums(), static_cast<int64_t>(stSize.CountPixels()), nFrameCount, nBitDepth,
                    fnArena().Destination());
    })
    .Limit([=](const SFrameSize &stSize) {
      CArena &arena = fnArena();
      return SStream{
        arena.Sums(),        stSize.CountPixels() * sizeof(uint32_t),        nullptr, nullptr, 0, nullptr, 0,
        arena.Destination(), stSize.CountPixels() * arena.GetBytesPerPixel()};
    })
    .OpenCv("convertTo",
            [=](const SFrameSize &stSize) {
              cv::Mat average = Wrap(stSize, GetPixelType(nBitDepth), fnArena().Destination());
              Wrap(stSize, CV_32S, fnArena().Sums()).convertTo(average, GetPixelType(nBitDepth), 1.0 / nFrameCount);
            })
    .Twin([=](const SFrameSize &stSize) {
      for (std::size_t i = 0; i < stSize.CountPixels(); ++i) {
        const int64_t nValue = int64_t{fnArena().Sums()[i]} / nFrameCount;
        std::memcpy(static_cast<uint8_t *>(fnArena().Destination()) + i * fnArena().GetBytesPerPixel(), &nValue,
                    fnArena().GetBytesPerPixel());
      }
    });
}

} // namespace

void RegisterAverage()
{
  for (const int32_t nBitDepth : {8, 12}) {
    RegisterAccumulation(nBitDepth);
    RegisterFreshSums(nBitDepth);
    for (const uint32_t nFrameCount : {16U}) {
      RegisterAverageOf(nBitDepth, nFrameCount);
      RegisterNarrow(nBitDepth, nFrameCount);
    }
  }
}
