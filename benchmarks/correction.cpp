// The correction of a frame, out of place and in place, and the making of a table.
#include <cstring>
#include <string>
#include <vector>

#include <opencv2/core.hpp>

#include "benchmarks/registration.h"
#include "ombrix/bandpool.h"
#include "ombrix/flatfield.h"
#include "tests/ombrix/reference.h"

namespace {

std::size_t CountTableBytes(const SFrameSize &stSize, bool bDark)
{
  return stSize.CountPixels() * (bDark ? 4 : 2);
}

constexpr uint32_t MOST_THREADS = 2; // of the machines that the goals are for

ffc::ombrix::CBandPool &GetPool(uint32_t nThreads)
{
  static ffc::ombrix::CBandPool s_aPools[MOST_THREADS] = {ffc::ombrix::CBandPool(1U), ffc::ombrix::CBandPool(2U)};
  return s_aPools[nThreads - 1];
}

// The bytes that a correction touches, streamed by one thread or, band by band, by several.
SStream GetCorrectionStream(CArena &arena, bool bDark, std::size_t nFirst, std::size_t nPixels)
{
  const auto nPixelBytes = arena.GetBytesPerPixel();
  const std::size_t nTableBytes = bDark ? 4 : 2;
  return {static_cast<const uint8_t *>(arena.Table()) + nFirst * nTableBytes,
          nPixels * nTableBytes,
          static_cast<const uint8_t *>(arena.Source()) + nFirst * nPixelBytes,
          static_cast<uint8_t *>(arena.Destination()) + nFirst * nPixelBytes,
          nPixels * nPixelBytes,
          nullptr,
          0,
          nullptr,
          0};
}

struct SStreamFrame {
  CArena &arena;
  bool bDark;
};

void StreamBand(const void *pContext, std::size_t nFirst, std::size_t nPixels)
{
  const auto &stFrame = *static_cast<const SStreamFrame *>(pContext);
  Stream(GetCorrectionStream(stFrame.arena, stFrame.bDark, nFirst, nPixels));
}

void StreamShared(CArena &arena, const SFrameSize &stSize, bool bDark, uint32_t nThreads)
{
  const SStreamFrame stFrame = {arena, bDark};
  const auto nKind = static_cast<uintptr_t>(arena.GetBitDepth()) * 2 + (bDark ? 1 : 0);
  GetPool(nThreads).Run(stSize.CountPixels(), StreamBand, &stFrame, nKind);
}

// The arena's dark levels stand behind the gains of its largest frame, but any words serve as levels here.
void ApplyOurs(CArena &arena, const SFrameSize &stSize, const void *pSource, bool bDark, uint32_t nThreads = 1)
{
  ffc::ombrix::ApplyTable(
    {pSource, arena.Destination(), stSize.CountPixels(), static_cast<uint32_t>(arena.GetBitDepth())},
    {arena.Table(), bDark}, GetPool(nThreads));
}

uint32_t ReadPixel(const void *pPixels, const CArena &arena, std::size_t nIndex)
{
  if (arena.GetBitDepth() == 8) {
    return static_cast<const uint8_t *>(pPixels)[nIndex];
  }
  uint16_t nWord = 0;
  std::memcpy(&nWord, static_cast<const uint8_t *>(pPixels) + 2 * nIndex, sizeof nWord);
  return nWord;
}

void ApplySlowly(CArena &arena, const SFrameSize &stSize, bool bDark)
{
  const auto *const pTable = static_cast<const uint16_t *>(arena.Table());
  auto *const pTo = static_cast<uint8_t *>(arena.Destination());
  for (std::size_t i = 0; i < stSize.CountPixels(); ++i) {
    const int64_t nValue = GetReferencePixel(ReadPixel(arena.Source(), arena, i),
                                             bDark ? pTable[LARGEST_PIXELS + i] : 0, pTable[i], arena.GetBitDepth());
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
  cv::Mat floatSignal;
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
    .Limit([=](const SFrameSize &stSize) { return GetCorrectionStream(fnArena(), bDark, 0, stSize.CountPixels()); })
    .OpenCv("fixed point", [=](const SFrameSize &stSize) { ApplyOpenCv(fnArena(), stSize, bDark, false); })
    .OpenCv("float", [=](const SFrameSize &stSize) { ApplyOpenCv(fnArena(), stSize, bDark, true); })
    .Twin([=](const SFrameSize &stSize) { ApplySlowly(fnArena(), stSize, bDark); })
    .ByClock("1 thread", [=](const SFrameSize &stSize) { ApplyOurs(fnArena(), stSize, fnArena().Source(), bDark); })
    .ByClock("2 threads", [=](const SFrameSize &stSize) { ApplyOurs(fnArena(), stSize, fnArena().Source(), bDark, 2); })
    .ByClock("stream, 1 thread", [=](const SFrameSize &stSize) { StreamShared(fnArena(), stSize, bDark, 1); })
    .ByClock("stream, 2 threads", [=](const SFrameSize &stSize) { StreamShared(fnArena(), stSize, bDark, 2); });
}

void RegisterInPlace(int32_t nBitDepth, bool bDark)
{
  const auto fnArena = [=]() -> CArena & { return CArena::ForDepth(nBitDepth); };
  CKernelBenchmarks("correction " + std::to_string(nBitDepth) + " bit, gain" + (bDark ? " and dark" : "") +
                    ", in place")
    .Ours([=](const SFrameSize &stSize) { ApplyOurs(fnArena(), stSize, fnArena().Destination(), bDark); })
    .Limit([=](const SFrameSize &stSize) {
      CArena &arena = fnArena();
      const std::size_t nFrame = stSize.CountPixels() * arena.GetBytesPerPixel();
      return SStream{
        arena.Table(), CountTableBytes(stSize, bDark), nullptr, nullptr, 0, arena.Destination(), nFrame, nullptr, 0};
    });
}

constexpr uint8_t TARGET = 200; // on an 8-bit scale

const void *FindDark(const CArena &arena, bool bDark)
{
  return bDark ? arena.Dark() : nullptr;
}

// The table goes where the sums are, which are as large.
void ComputeOurs(CArena &arena, const SFrameSize &stSize, bool bDark, uint32_t nThreads)
{
  const auto nBitDepth = static_cast<uint32_t>(arena.GetBitDepth());
  ffc::ombrix::ComputeTable({arena.Source(), FindDark(arena, bDark), stSize.CountPixels(), nBitDepth},
                            uint32_t{TARGET} << (nBitDepth - 8), arena.Sums(), GetPool(nThreads));
}

// Quotients rounded to even, and 0 where there is no signal.
void ComputeOpenCv(CArena &arena, const SFrameSize &stSize, bool bDark, bool bFloat)
{
  const int nType = GetPixelType(arena);
  const double dScaledTarget = (TARGET << (arena.GetBitDepth() - 8)) * 4096.0;
  cv::Mat signal = Wrap(stSize, nType, arena.Source());
  cv::Mat gains = Wrap(stSize, CV_16U, arena.Sums());
  SOpenCvBuffers &stBuffers = GetBuffers(arena, stSize);
  if (bDark) {
    const cv::Mat dark = Wrap(stSize, nType, arena.Dark());
    cv::Mat levels = Wrap(stSize, CV_16U, reinterpret_cast<uint16_t *>(arena.Sums()) + stSize.CountPixels());
    dark.convertTo(levels, CV_16U, 1 << (16 - arena.GetBitDepth()));
    cv::subtract(signal, dark, stBuffers.signal);
    signal = stBuffers.signal;
  }
  if (bFloat) {
    signal.convertTo(stBuffers.floatSignal, CV_32F);
    cv::divide(dScaledTarget, stBuffers.floatSignal, stBuffers.floatSignal);
    stBuffers.floatSignal.convertTo(gains, CV_16U);
  } else {
    cv::divide(dScaledTarget, signal, gains, CV_16U);
  }
}

void ComputeSlowly(CArena &arena, const SFrameSize &stSize, bool bDark)
{
  const int nBitDepth = arena.GetBitDepth();
  auto *const pTable = reinterpret_cast<uint16_t *>(arena.Sums());
  for (std::size_t i = 0; i < stSize.CountPixels(); ++i) {
    const uint32_t nDark = bDark ? ReadPixel(arena.Dark(), arena, i) : 0;
    pTable[i] = static_cast<uint16_t>(
      GetReferenceGain(ReadPixel(arena.Source(), arena, i), nDark, int64_t{TARGET} << (nBitDepth - 8), nBitDepth));
    if (bDark) {
      pTable[stSize.CountPixels() + i] = static_cast<uint16_t>(nDark << (16 - nBitDepth));
    }
  }
}

void RegisterTable(int32_t nBitDepth, bool bDark)
{
  const auto fnArena = [=]() -> CArena & { return CArena::ForDepth(nBitDepth); };
  CKernelBenchmarks("table " + std::to_string(nBitDepth) + " bit" + (bDark ? ", dark" : ""))
    .Ours([=](const SFrameSize &stSize) { ComputeOurs(fnArena(), stSize, bDark, 1); })
    .Limit([=](const SFrameSize &stSize) {
      CArena &arena = fnArena();
      const std::size_t nFrame = stSize.CountPixels() * arena.GetBytesPerPixel();
      auto *const pTable = reinterpret_cast<uint8_t *>(arena.Sums());
      const std::size_t nTable = CountTableBytes(stSize, bDark);
      // With a dark frame, its bytes are copied into the table and the rest of that is written.
      const std::size_t nCopied = bDark ? nFrame : 0;
      return SStream{arena.Source(), nFrame, FindDark(arena, bDark), pTable,          nCopied,
                     nullptr,        0,      pTable + nCopied,       nTable - nCopied};
    })
    .OpenCv("integer quotient", [=](const SFrameSize &stSize) { ComputeOpenCv(fnArena(), stSize, bDark, false); })
    .OpenCv("float quotient", [=](const SFrameSize &stSize) { ComputeOpenCv(fnArena(), stSize, bDark, true); })
    .Twin([=](const SFrameSize &stSize) { ComputeSlowly(fnArena(), stSize, bDark); });
}

} // namespace

void RegisterCorrection()
{
  for (const int32_t nBitDepth : {8, 12}) {
    for (const bool bDark : {false, true}) {
      RegisterDepth(nBitDepth, bDark);
    }
    for (const bool bDark : {false, true}) {
      RegisterInPlace(nBitDepth, bDark);
      RegisterTable(nBitDepth, bDark);
    }
  }
}
