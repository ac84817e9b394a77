#include "quality/pictures.h"

#include <QImage>

#include <gtest/gtest.h>

#include "quality/profileplot.h"
#include "tests/quality/syntheticscene.h"

using namespace ffc::quality;
using ffc::genapi::EColor;
using ffc::genapi::EColorLayout;
using ffc::genapi::GetPixelColor;

TEST(Pictures, AMosaicIsShownInColourAtHalfSize)
{
  SSyntheticScene stScene{6, 4, 10, nullptr, 0};
  stScene.fnLevel = [](uint32_t nX, uint32_t nY) {
    const EColor eColor = GetPixelColor(EColorLayout::BayerGB, nX, nY);
    return eColor == EColor::Red ? 1023.0 : eColor == EColor::Green ? 511.5 : 0.0;
  };
  const QImage imgView = MakeViewPicture(stScene.MakeStack(stScene.MakeFrames(1, 1)), EColorLayout::BayerGB);
  ASSERT_EQ(imgView.size(), QSize(3, 2));
  EXPECT_EQ(imgView.pixel(2, 1), qRgb(255, 128, 0));
}

TEST(Pictures, BothContrastPicturesShareOneStretch)
{
  SSyntheticScene stScene{64, 32, 12, nullptr, 0};
  stScene.fnLevel = [](uint32_t nX, uint32_t) { return nX < 32 ? 900.0 : 1100.0; };
  const CFrameStack stBefore = stScene.MakeStack(stScene.MakeFrames(1, 1));
  stScene.fnLevel = [](uint32_t nX, uint32_t) { return nX < 32 ? 1980.0 : 2020.0; };
  const CFrameStack stAfter = stScene.MakeStack(stScene.MakeFrames(1, 1));

  const double dRange = GetContrastRange(stBefore, EColorLayout::Mono);
  EXPECT_NEAR(dRange, 0.1, 1e-12);
  const QImage imgBefore = MakeContrastPicture(stBefore, EColorLayout::Mono, dRange);
  EXPECT_EQ(imgBefore.constScanLine(0)[0], 0);
  EXPECT_EQ(imgBefore.constScanLine(0)[63], 255);
  const QImage imgAfter = MakeContrastPicture(stAfter, EColorLayout::Mono, dRange);
  EXPECT_NEAR(imgAfter.constScanLine(0)[0], 127.5 - 12.75, 1);
  EXPECT_NEAR(imgAfter.constScanLine(0)[63], 127.5 + 12.75, 1);
}

TEST(RowProfile, IsTheMeanOfTheMiddleLines)
{
  SSyntheticScene stScene{10, 96, 12, nullptr, 0};
  stScene.fnLevel = [](uint32_t nX, uint32_t nY) { return nY < 32 || nY >= 64 ? 4000.0 : 100.0 + nX + (nY % 2); };
  const SProfile stProfile = MakeRowProfile(stScene.MakeStack(stScene.MakeFrames(2, 1)), EColorLayout::Mono);
  ASSERT_EQ(stProfile.listGrays.size(), 10);
  EXPECT_EQ(stProfile.listPositions[3], 3);
  EXPECT_EQ(stProfile.listGrays[3], 103.5);
}

TEST(RowProfile, OfAMosaicShowsItsGreenPixels)
{
  SSyntheticScene stScene{8, 8, 12, nullptr, 0};
  stScene.fnLevel = [](uint32_t nX, uint32_t nY) {
    return GetPixelColor(EColorLayout::BayerGR, nX, nY) == EColor::Green ? 700.0 : 9.0;
  };
  const SProfile stProfile = MakeRowProfile(stScene.MakeStack(stScene.MakeFrames(1, 1)), EColorLayout::BayerGR);
  EXPECT_EQ(stProfile.listGrays, QVector<double>(4, 700.0));
  EXPECT_EQ(stProfile.listPositions, QVector<double>({0.5, 2.5, 4.5, 6.5}));
}

TEST(ProfilePlot, DrawsBothCurves)
{
  const SProfile stBefore{{0, 1, 2}, {50, 60, 50}};
  const SProfile stAfter{{0, 1, 2}, {100, 100, 100}};
  const QImage imgBoth = DrawProfilePlot(stBefore, stAfter, "title");
  ASSERT_FALSE(imgBoth.isNull());
  EXPECT_NE(imgBoth, DrawProfilePlot(stBefore, stBefore, "title"));
  EXPECT_NE(imgBoth, DrawProfilePlot(stAfter, stAfter, "title"));
  EXPECT_FALSE(DrawProfilePlot({}, {}, "empty").isNull());
}

TEST(ColumnProfile, IsTheMeanOfTheMiddleColumns)
{
  SSyntheticScene stScene{96, 10, 12, nullptr, 0};
  stScene.fnLevel = [](uint32_t nX, uint32_t nY) { return nX < 32 || nX >= 64 ? 4000.0 : 100.0 + nY + (nX % 2); };
  const CFrameStack stStack = stScene.MakeStack(stScene.MakeFrames(2, 1));
  const SProfile stProfile = MakeColumnProfile(stStack, GetWholeImagePlane());
  ASSERT_EQ(stProfile.listGrays.size(), 10);
  EXPECT_EQ(stProfile.listPositions[7], 7);
  EXPECT_EQ(stProfile.listGrays[7], 107.5);
}

TEST(ColumnProfile, OfAMosaicsPlaneComesInPairsOfLines)
{
  SSyntheticScene stScene{7, 6, 12, nullptr, 0};
  stScene.fnLevel = [](uint32_t nX, uint32_t nY) {
    return GetPixelColor(EColorLayout::BayerRG, nX, nY) == EColor::Blue ? 100.0 + nY : 9.0;
  };
  const CFrameStack stStack = stScene.MakeStack(stScene.MakeFrames(1, 1));
  const SProfile stProfile = MakeColumnProfile(stStack, GetColorPlanes(EColorLayout::BayerRG)[2]);
  EXPECT_EQ(stProfile.listPositions, QVector<double>({0.5, 2.5, 4.5}));
  EXPECT_EQ(stProfile.listGrays, QVector<double>({101, 103, 105}));
}
