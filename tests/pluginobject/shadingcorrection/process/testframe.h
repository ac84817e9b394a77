/// \file
/// Frames and frame formats for the tests of the processes.
#pragma once

#include <cstdint>
#include <cstring>

#include "pluginobject/shadingcorrection/process/acquisition/framebuffer.h"
#include "pluginobject/shadingcorrection/process/acquisition/frameformat.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/testimage.h"

namespace ffc::test {

/// PFNC codes of the formats that the tests use.
constexpr uint32_t MONO_8 = 0x01080001;
constexpr uint32_t MONO_10 = 0x01100003;
constexpr uint32_t MONO_10_PACKED = 0x010C0004;
constexpr uint32_t MONO_12 = 0x01100005;
constexpr uint32_t MONO_12_PACKED = 0x010C0006;
constexpr uint32_t MONO_14 = 0x01100025;
constexpr uint32_t MONO_16 = 0x01100007;
constexpr uint32_t BAYER_RG_8 = 0x01080009;
constexpr uint32_t UNKNOWN_FORMAT = 0x02200016;

/// A format whose frame size is what its pixels take, one byte each at 8 bits, else two.
inline process::SFrameFormat MakeFormat(uint32_t nPixelFormat, int64_t nWidth, int64_t nHeight)
{
  process::SFrameFormat stFormat;
  stFormat.nPixelFormat = nPixelFormat;
  stFormat.nWidth = nWidth;
  stFormat.nHeight = nHeight;
  stFormat.nFrameSize = stFormat.GetPixelCount() * (stFormat.GetBitDepth() == 8 ? 1 : 2);
  return stFormat;
}

/// Bytes that the pixels of an image take.
inline uint64_t GetImageSize(const CTestImage &image)
{
  return static_cast<uint64_t>(image.GetPixelCount()) * (image.GetBitDepth() == 8 ? 1U : 2U);
}

/// A buffer with the pixels of an image, exactly as large as they are.
inline process::CFrameBuffer MakeFrame(const CTestImage &image)
{
  process::CFrameBuffer frame;
  if (frame.Allocate(GetImageSize(image))) {
    std::memcpy(frame.GetData(), image.GetData(), frame.GetSize());
  }
  return frame;
}

/// The pixels of a buffer.
inline CTestImage MakeImage(const process::CFrameBuffer &frame, int32_t nWidth, int32_t nHeight, int32_t nBitDepth)
{
  CTestImage image(nWidth, nHeight, nBitDepth);
  std::memcpy(image.GetData(), frame.GetData(), GetImageSize(image));
  return image;
}

} // namespace ffc::test
