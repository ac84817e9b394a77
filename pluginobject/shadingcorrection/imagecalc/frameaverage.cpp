#include "pluginobject/shadingcorrection/imagecalc/frameaverage.h"

#include "pluginobject/shadingcorrection/imagecalc/pixeltype.h"

void AddFrame(const void *pFrame, int32_t nBitDepth, int64_t nPixelCount, uint32_t *pAccumulator)
{
  WithPixelType(nBitDepth, [=](auto pixel) {
    const auto *const pPixels = static_cast<const decltype(pixel) *>(pFrame);
    for (int64_t i = 0; i < nPixelCount; ++i) {
      pAccumulator[i] += pPixels[i];
    }
  });
}

void AverageFrames(const uint32_t *pAccumulator, int64_t nPixelCount, uint32_t nFrameCount, int32_t nBitDepth,
                   void *pFrame)
{
  WithPixelType(nBitDepth, [=](auto pixel) {
    using TPixel = decltype(pixel);
    auto *const pPixels = static_cast<TPixel *>(pFrame);
    for (int64_t i = 0; i < nPixelCount; ++i) {
      pPixels[i] = static_cast<TPixel>(pAccumulator[i] / nFrameCount);
    }
  });
}
