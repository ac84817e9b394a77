// The correction of a frame, out of place and in place, and the making of a table.
#include <cstring>
#include <string>
#include <vector>

#include <opencv2/core.hpp>

#include "benchmarks/registration.h"
#include "ombrix/flatfield.h"
#include "tests/ombrix/reference.h"

namespace {

std::size_t CountTableBytes(const SFrameSize &stSize, bool bDark)
{
  return stSize.CountPixels() * (bDark ? 4 : 2);
}

// The arena's dark levels stand behind the gains of its largest frame, but any words serve as levels here.
void ApplyOurs(CArena &arena, const SFrameSize &stSize, const void *pSource, bool bDark)
{
  ApplyTable(pSource, arena.Destination(), static_cast<uint32_t>(arena.GetBitDepth()), stSize.CountPixels(),
             arena.Table(), bDark);
}

uint32_t ReadPixel(const CArena &arena, std::size_t nIndex)
{
  if (arena.GetBitDepth() == 8) {
    return static_cast<const uint8_t *>(arena.Source())[nIndex];
  }
  uint16_t nWord = 0;
  std::memcpy(&nWord, static_cast<const uint8_t *>(arena.Source()) + 2 * nIndex, sizeof nWord);
  return nWord;
}

void ApplySlowly(CArena &arena, const SFrameSize &stSize, bool bDark)
{
  const auto *const pTable = static_cast<const uint16_t *>(arena.Table());
  auto *const pTo = static_cast<uint8_t *>(arena.Destination());
  for (std::size_t i = 0; i < stSize.CountPixels(); ++i) {
    const int64_t nValue =
      GetReferencePixel(ReadPixel(arena, i), bDark ? pTable[LARGEST_PIXELS + i] : 0, pTable[i], arena.GetBitDepth());
    std::memcpy(pTo + i * arena.GetBytesPerPixel(), &nValue, arena.GetBytesPerPixel());
  }
}

// Wraps memory; nothing is copied.
cv::Mat Wrap(const SFrameSize &stSize, int nType, const void *pData)
{
  return cv::Mat(stSize.nHeight, stSize.nWidth, nType, const_cast<void *>(pData));
}

int GetPixelType(const CArena &arena)
{
  return arena.GetBitDepth() == 8 ? CV_8U : CV_16U;
}

// OpenCV's own forms keep what suits them: dark frames as pixels, gains as floats or as fixed point. Its rounding is
// another. Words are limited to their depth before and after, as here. Buffers stay from call to call.
struct SOpenCvBuffers {
  cv::Mat dark;
  cv::Mat floatGains;
  cv::Mat signal;
};

SOpenCvBuffers &GetBuffers(CArena &arena, const SFrameSize &stSize)
{
  static SOpenCvBuffers s_stBuffers;
  const cv::Size size(stSize.nWidth, stSize.nHeight);
  if (s_stBuffers.dark.size() != size || s_stBuffers.dark.type() != GetPixelType(arena)) {
    s_stBuffers.dark = cv::Mat(size, GetPixelType(arena), cv::Scalar(7));
    Wrap(stSize, CV_16U, arena.Table()).convertTo(s_stBuffers.floatGains, CV_32F, 1.0 / 4096);
    s_stBuffers.signal = cv::Mat(size, GetPixelType(arena), cv::Scalar(0));
  }
  return s_stBuffers;
}

void ApplyOpenCv(CArena &arena, const SFrameSize &stSize, bool bDark, bool bFloat)
{
  SOpenCvBuffers &stBuffers = GetBuffers(arena, stSize);
  const int nType = GetPixelType(arena);
  cv::Mat source = Wrap(stSize, nType, arena.Source());
  cv::Mat destination = Wrap(stSize, nType, arena.Destination());
  const int nMax = (1 << arena.GetBitDepth()) - 1;
  if (nType == CV_16U) {
    cv::min(source, nMax, stBuffers.signal);
    source = stBuffers.signal;
  }
  if (bDark) {
    cv::subtract(source, stBuffers.dark, stBuffers.signal);
    source = stBuffers.signal;
  }
  if (bFloat) {
    cv::multiply(source, stBuffers.floatGains, destination, 1.0, nType);
  } else {
    cv::multiply(source, Wrap(stSize, CV_16U, arena.Table()), destination, 1.0 / 4096, nType);
  }
  if (nType == CV_16U) {
    cv::min(destination, nMax, destination);
  }
}

void RegisterDepth(int32_t nBitDepth, bool bDark)
{
  const auto fnArena = [=]() -> CArena & { return CArena::ForDepth(nBitDepth); };
  const std::string strName = "correction " + std::to_string(nBitDepth) + " bit, gain" + (bDark ? " and dark" : "");
  CKernelBenchmarks(strName)
    .Ours([=](const SFrameSize &stSize) { ApplyOurs(fnArena(), stSize, fnArena().Source(), bDark); })
    .Limit([=](const SFrameSize &stSize) {
      CArena &arena = fnArena();
      const std::size_t nFrame = stSize.CountPixels() * arena.GetBytesPerPixel();
      return SStream{arena.Table(),
                     CountTableBytes(stSize, bDark),
                     arena.Source(),
                     arena.Destination(),
                     nFrame,
                     nullptr,
                     0,
                     nullptr,
                     0};
    })
    .OpenCv("fixed point", [=](const SFrameSize &stSize) { ApplyOpenCv(fnArena(), stSize, bDark, false); })
    .OpenCv("float", [=](const SFrameSize &stSize) { ApplyOpenCv(fnArena(), stSize, bDark, true); })
    .Twin([=](const SFrameSize &stSize) { ApplySlowly(fnArena(), stSize, bDark); });
}

void RegisterInPlace(int32_t nBitDepth)
{
  const auto fnArena = [=]() -> CArena & { return CArena::ForDepth(nBitDepth); };
  CKernelBenchmarks("correction " + std::to_string(nBitDepth) + " bit, gain, in place")
    .Ours([=](const SFrameSize &stSize) { ApplyOurs(fnArena(), stSize, fnArena().Destination(), false); })
    .Limit([=](const SFrameSize &stSize) {
      CArena &arena = fnArena();
      const std::size_t nFrame = stSize.CountPixels() * arena.GetBytesPerPixel();
      return SStream{
        arena.Table(), CountTableBytes(stSize, false), nullptr, nullptr, 0, arena.Destination(), nFrame, nullptr, 0};
    });
}

void RegisterTable(int32_t nBitDepth)
{
  const auto fnArena = [=]() -> CArena & { return CArena::ForDepth(nBitDepth); };
  // The table goes where the sums are, which are as large.
  CKernelBenchmarks("table " + std::to_string(nBitDepth) + " bit")
    .Ours([=](const SFrameSize &stSize) {
      ComputeTable(fnArena().Source(), nullptr, static_cast<uint32_t>(nBitDepth), stSize.CountPixels(),
                   200U << (nBitDepth - 8), fnArena().Sums());
    })
    .Limit([=](const SFrameSize &stSize) {
      CArena &arena = fnArena();
      return SStream{arena.Source(),
                     stSize.CountPixels() * arena.GetBytesPerPixel(),
                     nullptr,
                     nullptr,
                     0,
                     nullptr,
                     0,
                     arena.Sums(),
                     CountTableBytes(stSize, false)};
    })
    .Twin([=](const SFrameSize &stSize) {
      for (std::size_t i = 0; i < stSize.CountPixels(); ++i) {
        fnArena().Sums()[i] = static_cast<uint32_t>(
          GetReferenceGain(ReadPixel(fnArena(), i), 0, int64_t{200} << (nBitDepth - 8), nBitDepth));
      }
    });
}

} // namespace

void RegisterCorrection()
{
  for (const int32_t nBitDepth : {8, 12}) {
    for (const bool bDark : {false, true}) {
      RegisterDepth(nBitDepth, bDark);
    }
    RegisterInPlace(nBitDepth);
    RegisterTable(nBitDepth);
  }
}
