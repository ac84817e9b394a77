#include "host/window/displaypicture.h"

#include <gtest/gtest.h>

#include "host/window/frameanalysis.h"
#include "tests/host/window/madeframe.h"

using namespace ffc::host;
using ffc::genapi::EColor;
using ffc::genapi::EColorLayout;
using ffc::genapi::FindSensorFormat;
using ffc::genapi::GetPixelColor;
using ffc::genapi::SSensorFormat;

namespace {

/// What the picture of a mosaic should be, pixel by pixel, by the definition: the mean of the pixels of a colour
/// among the nine around, mirrored at the edges.
QRgb InterpolateSlowly(const FnSample &fnSample, EColorLayout eLayout, int nWidth, int nHeight, int nX, int nY)
{
  const auto Mirror = [](int n, int nSize) { return n < 0 ? -n : n >= nSize ? 2 * nSize - 2 - n : n; };
  double adSum[3] = {};
  int anCount[3] = {};
  for (int nDown = -1; nDown <= 1; ++nDown) {
    for (int nAcross = -1; nAcross <= 1; ++nAcross) {
      const uint32_t nAtX = static_cast<uint32_t>(Mirror(nX + nAcross, nWidth));
      const uint32_t nAtY = static_cast<uint32_t>(Mirror(nY + nDown, nHeight));
      const int nColor = static_cast<int>(GetPixelColor(eLayout, nAtX, nAtY));
      const bool bOwn =
        nColor == static_cast<int>(GetPixelColor(eLayout, static_cast<uint32_t>(nX), static_cast<uint32_t>(nY)));
      if (!bOwn || (nAcross == 0 && nDown == 0)) {
        adSum[nColor] += fnSample(nAtX, nAtY);
        ++anCount[nColor];
      }
    }
  }
  return qRgb(static_cast<int>(adSum[0] / anCount[0]), static_cast<int>(adSum[1] / anCount[1]),
              static_cast<int>(adSum[2] / anCount[2]));
}

} // namespace

TEST(DisplayPicture, OfMonoIsItsHighestEightBits)
{
  const SFrameCopy stFrame = MakeFrame("Mono12", 3, 2, [](uint32_t nX, uint32_t nY) { return 1000 * nX + 16 * nY; });
  const QImage imgPicture = MakeDisplayPicture(stFrame, {});
  ASSERT_EQ(imgPicture.size(), QSize(3, 2));
  EXPECT_EQ(qGray(imgPicture.pixel(0, 0)), 0);
  EXPECT_EQ(qGray(imgPicture.pixel(0, 1)), 1);
  EXPECT_EQ(qGray(imgPicture.pixel(2, 1)), 126);
}

TEST(DisplayPicture, OfAMosaicEqualsTheSlowTwinInEveryLayoutAndOddSizes)
{
  const FnSample fnSample = [](uint32_t nX, uint32_t nY) { return (nX * 37 + nY * 59 + nX * nY * 11) % 256; };
  for (const char *pFormat : {"BayerRG8", "BayerGR8", "BayerGB8", "BayerBG8"}) {
    const EColorLayout eLayout = FindSensorFormat(std::string(pFormat))->eLayout;
    for (const auto &[nWidth, nHeight] : {std::pair(2, 2), {3, 5}, {8, 7}}) {
      const QImage imgPicture = MakeDisplayPicture(
        MakeFrame(pFormat, static_cast<uint32_t>(nWidth), static_cast<uint32_t>(nHeight), fnSample), {});
      for (int nY = 0; nY < nHeight; ++nY) {
        for (int nX = 0; nX < nWidth; ++nX) {
          const QRgb nExpected = InterpolateSlowly(fnSample, eLayout, nWidth, nHeight, nX, nY);
          const QRgb nPixel = imgPicture.pixel(nX, nY);
          // Rounding of the means of means may differ by one or two.
          ASSERT_NEAR(qRed(nPixel), qRed(nExpected), 2) << pFormat << nX << "," << nY;
          ASSERT_NEAR(qGreen(nPixel), qGreen(nExpected), 2) << pFormat << nX << "," << nY;
          ASSERT_NEAR(qBlue(nPixel), qBlue(nExpected), 2) << pFormat << nX << "," << nY;
        }
      }
    }
  }
}

TEST(DisplayPicture, OfAMosaicShowsBareSamplesOnRequest)
{
  const SFrameCopy stFrame = MakeFrame("BayerRG10", 4, 4, [](uint32_t nX, uint32_t) { return nX % 2 == 0 ? 800 : 0; });
  SDisplayOptions stOptions;
  stOptions.bColor = false;
  const QImage imgPicture = MakeDisplayPicture(stFrame, stOptions);
  EXPECT_EQ(imgPicture.pixel(0, 0), qRgb(200, 200, 200));
  EXPECT_EQ(imgPicture.pixel(1, 0), qRgb(0, 0, 0));
}

TEST(DisplayPicture, OfAMosaicOfOneLineOrColumnIsGrey)
{
  for (const char *pFormat : {"BayerRG8", "BayerRG12"}) {
    for (const auto &[nWidth, nHeight] : {std::pair(1U, 3U), {3U, 1U}}) {
      const SFrameCopy stFrame = MakeFrame(pFormat, nWidth, nHeight, [](uint32_t, uint32_t) { return 200; });
      EXPECT_EQ(MakeDisplayPicture(stFrame, {}).format(), QImage::Format_Grayscale8) << pFormat << nWidth;
    }
  }
}

TEST(DisplayPicture, MarksOverexposedPixelsOnRequest)
{
  for (const auto &[pFormat, nLargest] : {std::pair("Mono8", 255U), {"Mono10", 1023U}, {"BayerGB12", 4095U}}) {
    const uint32_t nMaximum = nLargest; // a name that a lambda can have
    const SFrameCopy stFrame =
      MakeFrame(pFormat, 4, 4, [&](uint32_t nX, uint32_t nY) { return nX == 2 && nY == 1 ? nMaximum : nMaximum - 1; });
    SDisplayOptions stOptions;
    EXPECT_NE(MakeDisplayPicture(stFrame, stOptions).pixel(2, 1), OVEREXPOSED);
    stOptions.bMarkOverexposed = true;
    const QImage imgPicture = MakeDisplayPicture(stFrame, stOptions);
    for (int nPixel = 0; nPixel < 16; ++nPixel) {
      EXPECT_EQ(imgPicture.pixel(nPixel % 4, nPixel / 4) == OVEREXPOSED, nPixel == 6) << pFormat << nPixel;
    }
  }
}

TEST(DisplayPicture, ThereIsNoneOfAFrameThatDoesNotFitItsSize)
{
  SFrameCopy stFrame = MakeFrame("Mono12", 4, 4, [](uint32_t, uint32_t) { return 1; });
  stFrame.listBytes.pop_back();
  EXPECT_TRUE(MakeDisplayPicture(stFrame, {}).isNull());
  EXPECT_EQ(GetPixelText(stFrame, 0, 0), QString());
  EXPECT_TRUE(AnalyseFrame(stFrame).listPlanes.empty());
  stFrame.nPixelFormat = 0x02180014; // RGB8, which no camera here delivers
  EXPECT_TRUE(MakeDisplayPicture(stFrame, {}).isNull());
  EXPECT_TRUE(MakeDisplayPicture(SFrameCopy(), {}).isNull());
  for (const auto &[nWidth, nHeight] : {std::pair(0U, 4U), {4U, 0U}}) {
    EXPECT_TRUE(MakeDisplayPicture(MakeFrame("Mono8", nWidth, nHeight, {}), {}).isNull());
  }
}

TEST(DisplayPicture, OfComputedColoursAndCoordinatesIsShownAsItCame)
{
  const auto fnPixel = [](uint32_t nCode, const std::vector<uint8_t> &listBytes) {
    SFrameCopy stFrame;
    stFrame.nWidth = 2;
    stFrame.nHeight = 1;
    stFrame.nPixelFormat = nCode;
    stFrame.listBytes = listBytes;
    const QImage imgPicture = MakeDisplayPicture(stFrame, {});
    return imgPicture.isNull() ? QRgb(0) : imgPicture.pixel(1, 0);
  };
  EXPECT_EQ(fnPixel(0x02180014, {1, 2, 3, 4, 5, 6}), qRgb(4, 5, 6));
  EXPECT_EQ(fnPixel(0x02180015, {1, 2, 3, 4, 5, 6}), qRgb(6, 5, 4));
  EXPECT_EQ(fnPixel(0x02300033, {0, 1, 0, 2, 0, 3, 0, 4, 0, 5, 0, 6}), qRgb(4, 5, 6));
  EXPECT_EQ(fnPixel(0x0210001F, {100, 1, 100, 2}), qRgb(2, 2, 2));
  EXPECT_EQ(fnPixel(0x02100032, {1, 100, 2, 100}), qRgb(2, 2, 2));
  EXPECT_EQ(fnPixel(0x011000B8, {0, 1, 0, 2}), qRgb(2, 2, 2)) << "Coord3D_C16";
  EXPECT_EQ(fnPixel(0x81080001, {1, 2}), qRgb(2, 2, 2)) << "a maker's own";
  EXPECT_EQ(fnPixel(0x02180014, {1, 2, 3, 4, 5}), QRgb(0)) << "a byte is missing";
  EXPECT_EQ(fnPixel(0x026000C0, std::vector<uint8_t>(24)), QRgb(0)) << "three floats";
  EXPECT_NE(fnPixel(0x0110010A, {0, 0, 0, 0x20}), QRgb(0)) << "BayerRG14 is a sensor's own";
}

TEST(PixelText, SaysPlaceValueShareAndColour)
{
  const SFrameCopy stMono = MakeFrame("Mono12", 4, 3, [](uint32_t nX, uint32_t nY) { return nX * 1000 + nY; });
  EXPECT_EQ(GetPixelText(stMono, 2, 1).toStdString(), "x 2  y 1  2001 DN  48.9 %");
  const SFrameCopy stMosaic = MakeFrame("BayerRG8", 4, 4, [](uint32_t, uint32_t) { return 51; });
  EXPECT_EQ(GetPixelText(stMosaic, 0, 0).toStdString(), "x 0  y 0  R  51 DN  20.0 %");
  EXPECT_EQ(GetPixelText(stMosaic, 3, 3).toStdString(), "x 3  y 3  B  51 DN  20.0 %");
  for (const QPoint &ptOutside : {QPoint(-1, 0), QPoint(0, -1), QPoint(4, 0), QPoint(0, 4)}) {
    EXPECT_EQ(GetPixelText(stMosaic, ptOutside.x(), ptOutside.y()), QString());
  }
}

TEST(FrameAnalysis, HasProfilesHistogramAndBlocksOfEachPlane)
{
  const SFrameCopy stFrame = MakeFrame("BayerRG12", 64, 96, [](uint32_t nX, uint32_t nY) {
    const EColor eColor = GetPixelColor(EColorLayout::BayerRG, nX, nY);
    return eColor == EColor::Red ? 4095U : eColor == EColor::Green ? 16 * nX : 500U + (nY < 32 ? 0U : 100U);
  });
  const SFrameAnalysis stAnalysis = AnalyseFrame(stFrame);
  ASSERT_EQ(stAnalysis.listPlanes.size(), 3U);
  EXPECT_EQ(stAnalysis.nMaximum, 4095U);
  const SPlaneAnalysis &stRed = stAnalysis.listPlanes[0];
  EXPECT_EQ(stRed.strName.toStdString(), "R");
  EXPECT_EQ(stRed.listHistogram[255], 64.0 * 96 / 4);
  EXPECT_EQ(stRed.listHistogram[254], 0);
  EXPECT_EQ(stAnalysis.listPlanes[1].stRow.listGrays[3], 16 * 6.5) << "columns 6 and 7";
  EXPECT_EQ(stAnalysis.listPlanes[2].stColumn.listGrays.first(), 500);
  EXPECT_EQ(stAnalysis.listPlanes[2].stColumn.listGrays.last(), 600);
  ASSERT_EQ(stAnalysis.stBlocks.nColumns, 2U);
  ASSERT_EQ(stAnalysis.stBlocks.nLines, 3U);
  // Red 100 %; green 248 of 504; blue 500 of 1700 / 3.
  EXPECT_NEAR(stAnalysis.stBlocks.At(0, 0), (100.0 + 100.0 * 248 / 504 + 100.0 * 1500 / 1700) / 3, 1e-9);
}
