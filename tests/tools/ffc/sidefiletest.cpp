#include "frames/sidefile.h"

#include <gtest/gtest.h>

using namespace ffc::frames;

namespace {

SSideFile MakeSide()
{
  SSideFile stSide;
  stSide.nWidth = 640;
  stSide.nHeight = 480;
  stSide.strPixelFormat = "BayerRG12";
  stSide.eAlignment = EAlignment::Left;
  stSide.strCamera = "X";
  stSide.dGain = 1.5;
  stSide.nBrightFrames = 16;
  stSide.nExpectGray = 200;
  stSide.strMethod = "average";
  stSide.strSha256 = QString(64, 'a');
  return stSide;
}

} // namespace

TEST(SideFile, EverythingComesBack)
{
  const auto side = ParseSideFile(MakeSideFile(MakeSide()));
  ASSERT_EQ(side.GetError(), "");
  EXPECT_EQ(MakeSideFile(side.GetValue()), MakeSideFile(MakeSide()));
  EXPECT_EQ(side.GetValue().eAlignment, EAlignment::Left);
  EXPECT_EQ(side.GetValue().dGain, 1.5);
  EXPECT_FALSE(side.GetValue().dExposureTime.has_value());
}

TEST(SideFile, WhatIsNoneIsRefusedWithTheKey)
{
  EXPECT_EQ(ParseSideFile("").GetError(), "is no side file of a coefficient file.");
  EXPECT_EQ(ParseSideFile("[1, 2]").GetError(), "is no side file of a coefficient file.");
  const QByteArray byteGood = MakeSideFile(MakeSide());
  const auto fnReplace = [&byteGood](const char *pOld, const char *pNew) {
    QByteArray byteBad = byteGood;
    return ParseSideFile(byteBad.replace(pOld, pNew)).GetError();
  };
  EXPECT_NE(fnReplace("640", "\"640\"").find("\"width\""), std::string::npos);
  EXPECT_NE(fnReplace("640", "1e9").find("\"width\""), std::string::npos);
  EXPECT_NE(fnReplace("480", "-1").find("\"height\""), std::string::npos);
  EXPECT_NE(fnReplace("200", "256").find("\"expectedGray\""), std::string::npos);
  EXPECT_NE(fnReplace("200", "1.5").find("\"expectedGray\""), std::string::npos);
  EXPECT_NE(fnReplace("BayerRG12", "BayerRG12p").find("\"pixelFormat\""), std::string::npos);
  EXPECT_NE(fnReplace("left", "up").find("\"alignment\""), std::string::npos);
  EXPECT_NE(fnReplace("1.5", "\"much\"").find("\"gain\""), std::string::npos);
}
