// Block means and smoothing.
#include <string>
#include <vector>

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include "benchmarks/registration.h"
#include "pluginobject/shadingcorrection/imagecalc/blockmeans.h"
#include "pluginobject/shadingcorrection/imagecalc/smooth.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/slowtwin.h"

using ffc::imagecalc::BAYER_TYPE_MONO;
using ffc::imagecalc::BAYER_TYPE_RG;
using ffc::imagecalc::ComputeBlockMeans;
using ffc::imagecalc::SmoothPixels;
using ffc::test::CTestImage;

namespace {

constexpr int32_t BLOCK_SIDE = 32;

cv::Mat Wrap(const CArena &arena, const SFrameSize &stSize, const void *pData)
{
  return cv::Mat(stSize.nHeight, stSize.nWidth, arena.GetBitDepth() == 8 ? CV_8U : CV_16U, const_cast<void *>(pData));
}

BLOCK_PARAM MakeParam(const SFrameSize &stSize, int32_t nBayerType)
{
  return {stSize.nWidth, stSize.nHeight, BLOCK_SIDE, BLOCK_SIDE, nBayerType};
}

// Whole blocks only, which OpenCV's area filter needs to be fast.
cv::Mat GetWholeBlocks(const CArena &arena, const SFrameSize &stSize)
{
  const int nWidth = stSize.nWidth / BLOCK_SIDE * BLOCK_SIDE;
  const int nHeight = stSize.nHeight / BLOCK_SIDE * BLOCK_SIDE;
  return Wrap(arena, stSize, arena.Source())(cv::Rect(0, 0, nWidth, nHeight));
}

// The area filter on floats: on whole numbers it would round the means, which need their fractions. A row of blocks at
// a time, as the floats then stay in a cache.
void ResizeByArea(const CArena &arena, const SFrameSize &stSize)
{
  static cv::Mat s_floats;
  static cv::Mat s_means;
  const cv::Mat blocks = GetWholeBlocks(arena, stSize);
  for (int y = 0; y < blocks.rows; y += BLOCK_SIDE) {
    blocks.rowRange(y, y + BLOCK_SIDE).convertTo(s_floats, CV_32F);
    cv::resize(s_floats, s_means, cv::Size(blocks.cols / BLOCK_SIDE, 1), 0, 0, cv::INTER_AREA);
  }
}

// Sums down the columns of a row of blocks, then along them.
void ReduceBlocks(const CArena &arena, const SFrameSize &stSize)
{
  static cv::Mat s_columns;
  static cv::Mat s_sums;
  const cv::Mat blocks = GetWholeBlocks(arena, stSize);
  for (int y = 0; y < blocks.rows; y += BLOCK_SIDE) {
    cv::reduce(blocks.rowRange(y, y + BLOCK_SIDE), s_columns, 0, cv::REDUCE_SUM, CV_32F);
    cv::reduce(s_columns.reshape(0, blocks.cols / BLOCK_SIDE), s_sums, 1, cv::REDUCE_SUM, CV_64F);
  }
}

void SumEachBlock(const CArena &arena, const SFrameSize &stSize)
{
  static std::vector<double> s_listMeans;
  s_listMeans.clear();
  const cv::Mat blocks = GetWholeBlocks(arena, stSize);
  for (int y = 0; y < blocks.rows; y += BLOCK_SIDE) {
    for (int x = 0; x < blocks.cols; x += BLOCK_SIDE) {
      s_listMeans.push_back(cv::mean(blocks(cv::Rect(x, y, BLOCK_SIDE, BLOCK_SIDE)))[0]);
    }
  }
}

CTestImage MakeImage(const CArena &arena, const SFrameSize &stSize)
{
  CTestImage image(stSize.nWidth, stSize.nHeight, arena.GetBitDepth());
  for (int32_t i = 0; i < image.GetPixelCount(); ++i) {
    const auto nIndex = static_cast<std::size_t>(i);
    image.SetAt(i, arena.GetBitDepth() == 8 ? static_cast<const uint8_t *>(arena.Source())[nIndex]
                                            : static_cast<const uint16_t *>(arena.Source())[nIndex]);
  }
  return image;
}

void RegisterMeans(int32_t nBitDepth, int32_t nBayerType)
{
  const auto fnArena = [=]() -> CArena & { return CArena::ForDepth(nBitDepth); };
  CKernelBenchmarks means("block means " + std::to_string(nBitDepth) + " bit" + (nBayerType == 0 ? "" : ", Bayer"));
  means
    .Ours([=](const SFrameSize &stSize) {
      static std::vector<double> s_listMeans(3 * LARGEST_PIXELS / BLOCK_SIDE);
      ComputeBlockMeans(fnArena().Source(), nBitDepth, MakeParam(stSize, nBayerType), s_listMeans.data());
    })
    .Limit([=](const SFrameSize &stSize) {
      return SStream{fnArena().Source(),
                     stSize.CountPixels() * fnArena().GetBytesPerPixel(),
                     nullptr,
                     nullptr,
                     0,
                     nullptr,
                     0,
                     nullptr,
                     0};
    })
    .Twin([=](const SFrameSize &stSize) {
      static const CTestImage s_image = MakeImage(fnArena(), stSize);
      (void)ComputeBlockMeansSlowly(s_image, MakeParam(stSize, nBayerType));
    });
  if (nBayerType == 0) {
    means.OpenCv("resize", [=](const SFrameSize &stSize) { ResizeByArea(fnArena(), stSize); })
      .OpenCv("reduce", [=](const SFrameSize &stSize) { ReduceBlocks(fnArena(), stSize); })
      .OpenCv("mean", [=](const SFrameSize &stSize) { SumEachBlock(fnArena(), stSize); });
  }
}

void RegisterSmoothing(int32_t nBitDepth)
{
  const auto fnArena = [=]() -> CArena & { return CArena::ForDepth(nBitDepth); };
  CKernelBenchmarks("smoothing " + std::to_string(nBitDepth) + " bit")
    .Ours([=](const SFrameSize &stSize) {
      SmoothPixels({fnArena().Source(), stSize.nWidth, stSize.nHeight, nBitDepth}, fnArena().Destination(), 1);
    })
    .Limit([=](const SFrameSize &stSize) {
      CArena &arena = fnArena();
      return SStream{
        nullptr, 0, arena.Source(), arena.Destination(), stSize.CountPixels() * arena.GetBytesPerPixel(), nullptr, 0,
        nullptr, 0};
    })
    .OpenCv("blur",
            [=](const SFrameSize &stSize) {
              cv::Mat smooth = Wrap(fnArena(), stSize, fnArena().Destination());
              cv::blur(Wrap(fnArena(), stSize, fnArena().Source()), smooth, cv::Size(3, 3));
            })
    .OpenCv("filter2D",
            [=](const SFrameSize &stSize) {
              cv::Mat smooth = Wrap(fnArena(), stSize, fnArena().Destination());
              cv::sepFilter2D(Wrap(fnArena(), stSize, fnArena().Source()), smooth, -1, cv::Mat(3, 1, CV_32F, 1.0F / 3),
                              cv::Mat(3, 1, CV_32F, 1.0F / 3));
            })
    .Twin([=](const SFrameSize &stSize) {
      static const CTestImage s_image = MakeImage(fnArena(), stSize);
      (void)SmoothSlowly(s_image, false);
    });
}

} // namespace

void RegisterStatistics()
{
  for (const int32_t nBitDepth : {8, 12}) {
    RegisterMeans(nBitDepth, BAYER_TYPE_MONO);
    RegisterMeans(nBitDepth, BAYER_TYPE_RG);
    RegisterSmoothing(nBitDepth);
  }
}
