#include "genapi/pfnc.h"

#include <set>
#include <string>

#include <gtest/gtest.h>

using ffc::genapi::EColor;
using ffc::genapi::EColorLayout;
using ffc::genapi::EPacking;
using ffc::genapi::FindPixelFormat;
using ffc::genapi::PIXEL_FORMATS;
using ffc::genapi::SPixelFormat;

namespace {

constexpr EColorLayout BAYER_LAYOUTS[] = {EColorLayout::BayerRG, EColorLayout::BayerGB, EColorLayout::BayerGR,
                                          EColorLayout::BayerBG};

// What a format's name says it is: its colours, its bits, and how they are packed.
std::string MakeName(const SPixelFormat &stFormat)
{
  const std::string strColours = stFormat.nSamples == 1 ? ffc::genapi::GetLayoutName(stFormat.eLayout) : "RGB";
  const std::string strPacking = stFormat.ePacking == EPacking::Shared   ? "Packed"
                                 : stFormat.ePacking == EPacking::Stream ? "p"
                                                                         : "";
  return strColours + std::to_string(stFormat.nBitDepth) + strPacking;
}

// Bits that a pixel takes, from everything but the code.
uint32_t CountBits(const SPixelFormat &stFormat)
{
  switch (stFormat.ePacking) {
  case EPacking::None: return 8 * stFormat.GetBytesPerPixel();
  case EPacking::Shared: return 12;
  default: return stFormat.nBitDepth;
  }
}

} // namespace

TEST(Pfnc, EveryNameSaysWhatTheFormatIs)
{
  const std::set<std::string> setOthers = {"Mono8s", "R8", "G8", "B8", "BGR8"};
  std::size_t nOthers = 0;
  for (const SPixelFormat &stFormat : PIXEL_FORMATS) {
    if (setOthers.count(stFormat.pName) > 0) {
      ++nOthers;
      EXPECT_EQ(stFormat.nBitDepth, 8U) << stFormat.pName;
      EXPECT_FALSE(stFormat.IsBayer()) << stFormat.pName;
    } else {
      EXPECT_EQ(stFormat.pName, MakeName(stFormat));
    }
  }
  EXPECT_EQ(nOthers, setOthers.size());
}

TEST(Pfnc, EveryCodeSaysHowManyBitsAPixelTakes)
{
  for (const SPixelFormat &stFormat : PIXEL_FORMATS) {
    EXPECT_EQ(ffc::genapi::GetBitsPerPixel(stFormat.nCode), CountBits(stFormat)) << stFormat.pName;
    EXPECT_EQ(stFormat.nCode >> 24U, stFormat.nSamples == 1 ? 1U : 2U) << stFormat.pName;
  }
}

TEST(Pfnc, CodesRiseAndEveryFormatIsFoundByCodeAndByName)
{
  uint32_t nLast = 0;
  for (const SPixelFormat &stFormat : PIXEL_FORMATS) {
    EXPECT_GT(stFormat.nCode, nLast) << stFormat.pName;
    nLast = stFormat.nCode;
    EXPECT_EQ(FindPixelFormat(stFormat.nCode), &stFormat) << stFormat.pName;
    EXPECT_EQ(FindPixelFormat(stFormat.pName), &stFormat) << stFormat.pName;
    EXPECT_EQ(ffc::genapi::GetPixelFormatCode(stFormat.pName), stFormat.nCode) << stFormat.pName;
  }
}

TEST(Pfnc, WhatIsNotInTheTableIsNotFound)
{
  EXPECT_EQ(FindPixelFormat(0U), nullptr);
  EXPECT_EQ(FindPixelFormat(0x81080001U), nullptr);
  EXPECT_EQ(FindPixelFormat(0x01080003U), nullptr);
  EXPECT_EQ(FindPixelFormat("mono8"), nullptr);
  EXPECT_EQ(FindPixelFormat(""), nullptr);
}

TEST(Pfnc, EveryPackedFormatHasOneTwinInWholeBytes)
{
  for (const SPixelFormat &stFormat : PIXEL_FORMATS) {
    if (stFormat.ePacking == EPacking::None) {
      continue;
    }
    const SPixelFormat *pUnpacked = ffc::genapi::FindUnpackedFormat(stFormat);
    ASSERT_NE(pUnpacked, nullptr) << stFormat.pName;
    EXPECT_EQ(std::string(stFormat.pName).rfind(pUnpacked->pName, 0), 0U) << stFormat.pName;
    EXPECT_EQ(ffc::genapi::GetBitsPerPixel(pUnpacked->nCode), 16U) << stFormat.pName;
  }
}

TEST(Pfnc, NarrowFormatsAreReceivedAndNotCorrected)
{
  uint32_t nLast = 0;
  for (const SPixelFormat &stFormat : ffc::genapi::NARROW_FORMATS) {
    EXPECT_EQ(stFormat.pName, MakeName(stFormat));
    EXPECT_EQ(ffc::genapi::GetBitsPerPixel(stFormat.nCode), stFormat.nBitDepth) << stFormat.pName;
    EXPECT_GT(stFormat.nCode, nLast) << stFormat.pName;
    nLast = stFormat.nCode;
    EXPECT_EQ(ffc::genapi::FindReceivedFormat(stFormat.nCode), &stFormat) << stFormat.pName;
    EXPECT_EQ(FindPixelFormat(stFormat.nCode), nullptr) << "the plug-in's table is another: " << stFormat.pName;
    EXPECT_FALSE(ffc::genapi::IsCorrectable(stFormat.nCode)) << stFormat.pName;
    const SPixelFormat *pUnpacked = ffc::genapi::FindUnpackedFormat(stFormat);
    ASSERT_NE(pUnpacked, nullptr) << stFormat.pName;
    EXPECT_EQ(pUnpacked->nBitDepth, 8U);
    EXPECT_EQ(pUnpacked->eLayout, stFormat.eLayout);
  }
}

TEST(Pfnc, ComputedFormatsHaveANameAndAreNotCorrected)
{
  uint32_t nLast = 0;
  for (const ffc::genapi::SNamedFormat &stFormat : ffc::genapi::COMPUTED_FORMATS) {
    EXPECT_STREQ(ffc::genapi::FindFormatName(stFormat.nCode), stFormat.pName);
    EXPECT_EQ(ffc::genapi::FindReceivedFormat(stFormat.nCode), nullptr) << stFormat.pName;
    EXPECT_FALSE(ffc::genapi::IsCorrectable(stFormat.nCode)) << stFormat.pName;
    EXPECT_GT(stFormat.nCode, nLast) << stFormat.pName;
    nLast = stFormat.nCode;
  }
  EXPECT_STREQ(ffc::genapi::FindFormatName(0x01080001), "Mono8");
  EXPECT_STREQ(ffc::genapi::FindFormatName(0x01040039), "Mono4p");
  EXPECT_EQ(ffc::genapi::FindFormatName(0x81080001), nullptr);
  EXPECT_TRUE(ffc::genapi::IsCorrectable(0x01100005));
  EXPECT_FALSE(ffc::genapi::IsCorrectable(0x02180014)) << "RGB8";
  EXPECT_FALSE(ffc::genapi::IsCorrectable(0x81080001));
}

TEST(Pfnc, SizesAreThoseOfTheSamples)
{
  EXPECT_EQ(FindPixelFormat("Mono8")->GetBytesPerPixel(), 1U);
  EXPECT_EQ(FindPixelFormat("BayerRG10")->GetBytesPerPixel(), 2U);
  EXPECT_EQ(FindPixelFormat("RGB8")->GetBytesPerPixel(), 3U);
  EXPECT_EQ(FindPixelFormat("Mono12")->GetMaxValue(), 4095U);
  EXPECT_EQ(FindPixelFormat("Mono16")->GetMaxValue(), 65535U);
}

TEST(Pfnc, LayoutsAreFoundByTheirNameAndAnyOtherNameIsMono)
{
  for (const EColorLayout eLayout : BAYER_LAYOUTS) {
    EXPECT_EQ(ffc::genapi::GetColorLayout(ffc::genapi::GetLayoutName(eLayout)), eLayout);
  }
  for (const char *pName : {"Mono", "", "BayerXX", "bayerrg", "BayerRG8"}) {
    EXPECT_EQ(ffc::genapi::GetColorLayout(pName), EColorLayout::Mono) << pName;
  }
}

TEST(Pfnc, ColoursStandWhereTheLayoutsNameSays)
{
  for (const EColorLayout eLayout : BAYER_LAYOUTS) {
    const std::string strTop = std::string(ffc::genapi::GetLayoutName(eLayout)).substr(5);
    const std::string strOpposite = strTop.find('R') != std::string::npos ? "B" : "R";
    const std::string strCell = strTop + (strTop[0] == 'G' ? strOpposite + "G" : "G" + strOpposite);
    for (uint32_t nY = 0; nY < 4; ++nY) {
      for (uint32_t nX = 0; nX < 4; ++nX) {
        const char cColour = "RGB"[static_cast<int>(ffc::genapi::GetPixelColor(eLayout, nX, nY))];
        EXPECT_EQ(cColour, strCell[(nY % 2) * 2 + nX % 2]) << strCell << " " << nX << "," << nY;
      }
    }
  }
  EXPECT_EQ(ffc::genapi::GetPixelColor(EColorLayout::Mono, 1, 0), EColor::Green);
}
