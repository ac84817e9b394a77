#include "camera/aravis/frameunpacker.h"

#include <gtest/gtest.h>

#include "camera/aravis/framequeue.h"

using ffc::camera::EBufferHandling;
using ffc::camera::FindPackedFormat;
using ffc::camera::GetKeptFrames;
using ffc::camera::GetPackedSize;
using ffc::camera::UnpackSamples;

namespace {

std::vector<uint16_t> Unpack(uint32_t nCode, const std::vector<uint8_t> &listPacked, std::size_t nSamples)
{
  const ffc::genapi::SPixelFormat *pFormat = FindPackedFormat(nCode);
  EXPECT_EQ(GetPackedSize(*pFormat, nSamples), listPacked.size());
  std::vector<uint16_t> listSamples(nSamples);
  UnpackSamples(*pFormat, listPacked.data(), nSamples, listSamples.data());
  return listSamples;
}

} // namespace

TEST(FrameUnpacker, TheSharedLayoutHasTheLowBitsInTheMiddleByte)
{
  EXPECT_EQ(Unpack(0x010C0006, {0xAB, 0x3C, 0x12}, 2), (std::vector<uint16_t>{0xABC, 0x123}));
  EXPECT_EQ(Unpack(0x010C0004, {0xFF, 0x21, 0x00}, 2), (std::vector<uint16_t>{0x3FD, 0x002}));
  EXPECT_EQ(Unpack(0x010C0006, {0xAB, 0x3C, 0x12, 0x80, 0x0F}, 3), (std::vector<uint16_t>{0xABC, 0x123, 0x80F}));
}

TEST(FrameUnpacker, TheStreamLayoutStartsWithTheLeastSignificantBit)
{
  EXPECT_EQ(Unpack(0x010C0047, {0xBC, 0x3A, 0x12}, 2), (std::vector<uint16_t>{0xABC, 0x123}));
  // 0x3FD, 0x002, 0x155, 0x2AA as 40 bits.
  EXPECT_EQ(Unpack(0x010A0046, {0xFD, 0x0B, 0x50, 0x95, 0xAA}, 4), (std::vector<uint16_t>{0x3FD, 0x002, 0x155, 0x2AA}));
  EXPECT_EQ(Unpack(0x010C0047, {0xFF, 0xFF, 0x00, 0x01, 0x00}, 3), (std::vector<uint16_t>{0xFFF, 0x00F, 0x001}));
}

TEST(FrameUnpacker, EveryPackedFormatOf10And12BitsIsUnpackedAndNoOther)
{
  std::size_t nFound = 0;
  for (const ffc::genapi::SPixelFormat &stFormat : ffc::genapi::PIXEL_FORMATS) {
    const bool bPacked = stFormat.ePacking != ffc::genapi::EPacking::None && stFormat.nBitDepth != 14;
    EXPECT_EQ(FindPackedFormat(stFormat.nCode), bPacked ? &stFormat : nullptr) << stFormat.pName;
    nFound += bPacked ? 1U : 0U;
  }
  EXPECT_EQ(nFound, 20U);
  EXPECT_EQ(FindPackedFormat(0), nullptr);
}

TEST(FrameQueue, TheHandlingModeSaysHowManyFramesWait)
{
  EXPECT_EQ(GetKeptFrames(EBufferHandling::OldestFirst, 16), 16U);
  EXPECT_EQ(GetKeptFrames(EBufferHandling::OldestFirstOverwrite, 16), 8U);
  EXPECT_EQ(GetKeptFrames(EBufferHandling::NewestOnly, 16), 1U);
}
