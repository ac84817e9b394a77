#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include "genapi/sensorformat.h"

using ffc::genapi::EColorLayout;
using ffc::genapi::FindSensorFormat;
using ffc::genapi::GetLayoutName;
using ffc::genapi::GetSensorFormats;
using ffc::genapi::SSensorFormat;

TEST(SensorFormat, CodesAndDepthsFollowThePixelFormatNamingConvention)
{
  const struct {
    const char *pName;
    uint32_t nCode;
    uint32_t nBitDepth;
  } aExpected[] = {
    {"Mono8", 0x01080001, 8},      {"Mono10", 0x01100003, 10},    {"Mono12", 0x01100005, 12},
    {"Mono14", 0x01100025, 14},    {"Mono16", 0x01100007, 16},    {"BayerGR8", 0x01080008, 8},
    {"BayerRG8", 0x01080009, 8},   {"BayerGB8", 0x0108000A, 8},   {"BayerBG8", 0x0108000B, 8},
    {"BayerGR10", 0x0110000C, 10}, {"BayerRG10", 0x0110000D, 10}, {"BayerGB10", 0x0110000E, 10},
    {"BayerBG10", 0x0110000F, 10}, {"BayerGR12", 0x01100010, 12}, {"BayerRG12", 0x01100011, 12},
    {"BayerGB12", 0x01100012, 12}, {"BayerBG12", 0x01100013, 12}, {"BayerGR16", 0x0110002E, 16},
    {"BayerRG16", 0x0110002F, 16}, {"BayerGB16", 0x01100030, 16}, {"BayerBG16", 0x01100031, 16},
  };
  ASSERT_EQ(GetSensorFormats().size(), std::size(aExpected));
  for (const auto &stExpected : aExpected) {
    const SSensorFormat *pFormat = FindSensorFormat(std::string(stExpected.pName));
    ASSERT_NE(pFormat, nullptr) << stExpected.pName;
    EXPECT_EQ(pFormat->nCode, stExpected.nCode) << stExpected.pName;
    EXPECT_EQ(pFormat->nBitDepth, stExpected.nBitDepth) << stExpected.pName;
    EXPECT_EQ(FindSensorFormat(stExpected.nCode), pFormat);
    EXPECT_EQ(std::string(pFormat->pName).find(GetLayoutName(pFormat->eLayout)), 0U) << stExpected.pName;
    // Bits per pixel in memory stand in the code's second byte.
    EXPECT_EQ(pFormat->GetBytesPerPixel() * 8, ffc::genapi::GetBitsPerPixel(stExpected.nCode));
  }
}

TEST(SensorFormat, UnknownFormatsAreNotFound)
{
  EXPECT_EQ(FindSensorFormat(std::string("mono8")), nullptr);
  EXPECT_EQ(FindSensorFormat(std::string()), nullptr);
  EXPECT_EQ(FindSensorFormat(0x010C0006U), nullptr);
}

TEST(SensorFormat, ALayoutHasItsFourDepths)
{
  const auto listFormats = GetSensorFormats(EColorLayout::BayerGB);
  ASSERT_EQ(listFormats.size(), 4U);
  EXPECT_STREQ(listFormats.front().pName, "BayerGB8");
  EXPECT_STREQ(listFormats.back().pName, "BayerGB16");
  EXPECT_EQ(listFormats.back().GetMaxValue(), 65535U);
}
