#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include "camera/sensorformat.h"

namespace {

/// Colour letters of a layout's cell, row by row, from its name alone.
std::string GetCell(const std::string &strLayout)
{
  const std::string strFirst = strLayout.substr(5);
  const std::string strOpposite = strFirst.find('R') != std::string::npos ? "B" : "R";
  return strFirst + (strFirst[0] == 'G' ? strOpposite + "G" : "G" + strOpposite);
}

} // namespace

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
    EXPECT_EQ(pFormat->strName.find(GetLayoutName(pFormat->eLayout)), 0U) << stExpected.pName;
    // Bits per pixel in memory stand in the code's second byte.
    EXPECT_EQ(pFormat->GetBytesPerPixel() * 8, (stExpected.nCode >> 16) & 0xFF);
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
  EXPECT_EQ(listFormats.front().strName, "BayerGB8");
  EXPECT_EQ(listFormats.back().strName, "BayerGB16");
  EXPECT_EQ(listFormats.back().GetMaxValue(), 65535U);
}

TEST(SensorFormat, ColorsStandWhereTheLayoutsNameSays)
{
  for (const EColorLayout eLayout :
       {EColorLayout::BayerGR, EColorLayout::BayerRG, EColorLayout::BayerGB, EColorLayout::BayerBG}) {
    const std::string strCell = GetCell(GetLayoutName(eLayout));
    for (uint32_t nY = 0; nY < 4; ++nY) {
      for (uint32_t nX = 0; nX < 4; ++nX) {
        const char cColor = "RGB"[static_cast<int>(GetPixelColor(eLayout, nX, nY))];
        EXPECT_EQ(cColor, strCell[(nY % 2) * 2 + nX % 2]) << strCell << " " << nX << "," << nY;
      }
    }
  }
  EXPECT_EQ(GetPixelColor(EColorLayout::Mono, 1, 0), EColor::Green);
}
