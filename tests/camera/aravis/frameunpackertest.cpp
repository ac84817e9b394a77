#include "camera/aravis/frameunpacker.h"

#include <gtest/gtest.h>

#include "camera/aravis/framequeue.h"

using ffc::camera::EBufferHandling;
using ffc::camera::FindPackedFormat;
using ffc::camera::GetKeptFrames;
using ffc::camera::GetPackedSize;
using ffc::camera::GetUnpackedSize;
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

TEST(FrameUnpacker, SamplesOfLessThan8BitsAreSpreadOver8)
{
  const auto fnUnpack = [](uint32_t nCode, const std::vector<uint8_t> &listPacked, std::size_t nSamples) {
    const ffc::genapi::SPixelFormat &stFormat = *FindPackedFormat(nCode);
    EXPECT_EQ(GetPackedSize(stFormat, nSamples), listPacked.size());
    std::vector<uint8_t> listSamples(GetUnpackedSize(stFormat, nSamples));
    UnpackSamples(stFormat, listPacked.data(), nSamples, listSamples.data());
    return listSamples;
  };
  EXPECT_EQ(fnUnpack(0x01010037, {0x05, 0x01}, 9), (std::vector<uint8_t>{255, 0, 255, 0, 0, 0, 0, 0, 255}));
  EXPECT_EQ(fnUnpack(0x01020038, {0xE4, 0x03}, 5), (std::vector<uint8_t>{0, 85, 170, 255, 255}));
  EXPECT_EQ(fnUnpack(0x01040039, {0xF1, 0x0A}, 3), (std::vector<uint8_t>{17, 255, 170}));
}

// Bit by bit, for every format whose samples are a stream, and for every length of the rest at the end.
TEST(FrameUnpacker, EveryStreamIsUnpackedAsASlowTwinDoes)
{
  for (uint32_t nCode = 0x01010000; nCode < 0x01110000; ++nCode) {
    const ffc::genapi::SPixelFormat *pFormat = FindPackedFormat(nCode);
    if (pFormat == nullptr || pFormat->ePacking != ffc::genapi::EPacking::Stream || pFormat->nBitDepth < 8) {
      continue;
    }
    for (std::size_t nSamples = 1; nSamples < 20; ++nSamples) {
      std::vector<uint8_t> listPacked(GetPackedSize(*pFormat, nSamples));
      for (std::size_t nByte = 0; nByte < listPacked.size(); ++nByte) {
        listPacked[nByte] = uint8_t(nByte * 167 + 91);
      }
      std::vector<uint16_t> listExpected(nSamples);
      for (std::size_t nBit = 0; nBit < nSamples * pFormat->nBitDepth; ++nBit) {
        const uint32_t nValue = listPacked[nBit / 8] >> (nBit % 8) & 1U;
        listExpected[nBit / pFormat->nBitDepth] |= uint16_t(nValue << (nBit % pFormat->nBitDepth));
      }
      EXPECT_EQ(Unpack(nCode, listPacked, nSamples), listExpected) << pFormat->pName << " " << nSamples;
    }
  }
}

TEST(FrameUnpacker, EveryPackedFormatIsUnpackedToOneOfWholeBytesAndNoOther)
{
  std::size_t nFound = 0;
  for (uint32_t nCode = 0x01000000; nCode < 0x02600200; ++nCode) {
    const ffc::genapi::SPixelFormat *pFormat = FindPackedFormat(nCode);
    if (pFormat == nullptr) {
      continue;
    }
    ++nFound;
    const ffc::genapi::SPixelFormat *pUnpacked = ffc::genapi::FindUnpackedFormat(*pFormat);
    ASSERT_NE(pUnpacked, nullptr) << pFormat->pName;
    EXPECT_EQ(GetUnpackedSize(*pFormat, 6), 6 * pUnpacked->GetBytesPerPixel()) << pFormat->pName;
    EXPECT_EQ(pUnpacked->eLayout, pFormat->eLayout);
  }
  // Mono 1, 2, 4, 10, 12 and 14 bits, Bayer 4, 10, 12 and 14, and 10 and 12 of each in the shared layout.
  EXPECT_EQ(nFound, 6U + 16U + 10U);
  EXPECT_EQ(FindPackedFormat(0), nullptr);
}

TEST(FrameQueue, TheHandlingModeSaysHowManyFramesWait)
{
  EXPECT_EQ(GetKeptFrames(EBufferHandling::OldestFirst, 16), 16U);
  EXPECT_EQ(GetKeptFrames(EBufferHandling::OldestFirstOverwrite, 16), 8U);
  EXPECT_EQ(GetKeptFrames(EBufferHandling::NewestOnly, 16), 1U);
}
