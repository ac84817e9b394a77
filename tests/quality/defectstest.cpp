#include "quality/defects.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "quality/defectreplacement.h"
#include "tests/quality/syntheticscene.h"

using namespace ffc::quality;
using ffc::genapi::EColorLayout;

namespace {

constexpr uint32_t WIDTH = 40;
constexpr uint32_t HEIGHT = 30;

/// Stacks of a shaded scene, with values of single pixels changed.
struct SDefectScene {
  std::vector<TestFrame> listBright;
  std::vector<TestFrame> listDark;
  SSyntheticScene stScene;

  SDefectScene()
  {
    stScene.nWidth = WIDTH;
    stScene.nHeight = HEIGHT;
    stScene.dNoise = 6;
    // Colours of very different brightness, and steep shading.
    stScene.fnLevel = [](uint32_t nColumn, uint32_t nLine) {
      return (nColumn % 2 == nLine % 2 ? 1500.0 : 700.0) + 15.0 * nColumn;
    };
    listBright = stScene.MakeFrames(8, 1);
    stScene.fnLevel = [](uint32_t, uint32_t) { return 50.0; };
    listDark = stScene.MakeFrames(8, 2);
  }

  void Set(std::vector<TestFrame> &listFrames, uint32_t nColumn, uint32_t nLine, int nTimes, int nAlternating = 0,
           int nMore = 0)
  {
    for (std::size_t n = 0; n < listFrames.size(); ++n) {
      uint16_t &nSample = listFrames[n][nLine * WIDTH + nColumn];
      nSample = static_cast<uint16_t>(nSample * nTimes / 100 + nMore + (n % 2 == 0 ? nAlternating : 0));
    }
  }

  std::vector<SDefect> Find(bool bNoise = true) const
  {
    CFrameStack stBright;
    CFrameStack stDark;
    for (auto [pStack, pFrames] : {std::pair(&stBright, &listBright), std::pair(&stDark, &listDark)}) {
      pStack->Prepare(WIDTH, HEIGHT, stScene.nBitDepth);
      EXPECT_TRUE(!bNoise || pStack->AlsoKeepSquares());
      for (const TestFrame &frame : *pFrames) {
        const std::vector<uint8_t> listBytes = PackFrame(frame, stScene.nBitDepth);
        pStack->Add(listBytes.data(), listBytes.size());
      }
    }
    return FindDefects(stBright, stDark, EColorLayout::BayerRG, {});
  }
};

QString Describe(const std::vector<SDefect> &listDefects)
{
  QString strText;
  for (const SDefect &stDefect : listDefects) {
    strText +=
      QStringLiteral("%1,%2 %3; ").arg(stDefect.nColumn).arg(stDefect.nLine).arg(GetKindNames(stDefect.nKinds));
  }
  return strText;
}

} // namespace

TEST(Defects, NothingIsFoundInAShadedMosaicWithoutAny)
{
  EXPECT_EQ(Describe(SDefectScene().Find()).toStdString(), "");
}

TEST(Defects, EveryKindIsFoundWhereItIs)
{
  SDefectScene stScene;
  stScene.Set(stScene.listBright, 10, 2, 80);
  stScene.Set(stScene.listBright, 20, 2, 125);
  stScene.Set(stScene.listBright, 0, 0, 4);
  stScene.Set(stScene.listBright, 39, 29, 250);
  stScene.Set(stScene.listDark, 5, 10, 100, 0, 400);
  stScene.Set(stScene.listBright, 17, 20, 100, 90);
  EXPECT_EQ(Describe(stScene.Find()).toStdString(),
            "0,0 stuck; 10,2 dark; 20,2 bright; 5,10 dark+hot; 17,20 noisy; 39,29 bright; ");
  EXPECT_EQ(Describe(stScene.Find(false)).toStdString(),
            "0,0 stuck; 10,2 dark; 20,2 bright; 5,10 dark+hot; 39,29 bright; ");
  EXPECT_EQ(SummarizeDefects(stScene.Find()).toStdString(),
            "6 defect pixels: 2 dark, 2 bright, 1 hot, 1 stuck, 1 noisy");
}

TEST(Defects, BothListsAreReadAsTheyWereWritten)
{
  const std::vector<SDefect> listDefects = {{3, 4, DEFECT_HOT, 0, 12.5, 0},
                                            {0, 7, DEFECT_DARK | DEFECT_NOISY, -30, 0, 9}};
  const QByteArray byteMap = MakeDefectsXml(listDefects, 40, 30);
  EXPECT_TRUE(byteMap.contains("width=\"40\""));
  EXPECT_TRUE(byteMap.contains("kind=\"dark+noisy\""));
  for (const QByteArray &byteList : {MakeDefectsCsv(listDefects), byteMap, QByteArray("3,4\r\n\n0, 7\n")}) {
    const auto parsed = ParseDefects(byteList);
    ASSERT_TRUE(parsed) << parsed.GetError();
    ASSERT_EQ(parsed.GetValue().size(), 2U);
    EXPECT_EQ(parsed.GetValue()[0].nColumn, 3U);
    EXPECT_EQ(parsed.GetValue()[1].nLine, 7U);
  }
}

TEST(Defects, ADamagedListIsRefusedWithItsLine)
{
  for (const char *pList : {"x,y\n1,2\n3\n", "x,y\n1,2\n-1,4\n", "x,y\n1,2\n3,four\n"}) {
    const auto parsed = ParseDefects(pList);
    ASSERT_FALSE(parsed) << pList;
    EXPECT_NE(parsed.GetError().find("line 3"), std::string::npos) << parsed.GetError();
  }
  EXPECT_FALSE(ParseDefects("<DefectPixelMap><Pixel x=\"1\"/></DefectPixelMap>"));
  EXPECT_FALSE(ParseDefects("<DefectPixelMap><Pixel x=\"1\" y=\"2\"/>"));
}

TEST(DefectReplacement, TakesTheMeanOfTheNearestGoodPixelsOfTheChannel)
{
  std::vector<uint16_t> listFrame(8 * 6);
  for (std::size_t n = 0; n < listFrame.size(); ++n) {
    listFrame[n] = static_cast<uint16_t>(n * n);
  }
  const std::vector<uint16_t> listBefore = listFrame;
  CDefectReplacement replacement;
  // The second is a neighbour of the first in the channel, and no source for it.
  const std::vector<SDefect> listDefects = {{3, 2, 0, 0, 0, 0}, {5, 2, 0, 0, 0, 0}, {0, 0, 0, 0, 0, 0}};
  ASSERT_TRUE(replacement.Prepare(listDefects, 8, 6, EColorLayout::BayerRG));
  EXPECT_EQ(replacement.GetCount(), 3U);
  replacement.Apply(listFrame.data(), 2);
  const auto fnAt = [&](uint32_t nColumn, uint32_t nLine) { return uint32_t{listBefore[nLine * 8 + nColumn]}; };
  EXPECT_EQ(listFrame[2 * 8 + 3], (fnAt(1, 2) + fnAt(3, 0) + fnAt(3, 4) + 1) / 3);
  EXPECT_EQ(listFrame[2 * 8 + 5], (fnAt(7, 2) + fnAt(5, 0) + fnAt(5, 4) + 1) / 3);
  EXPECT_EQ(listFrame[0], (fnAt(2, 0) + fnAt(0, 2) + 1) / 2);
  std::size_t nChanged = 0;
  for (std::size_t n = 0; n < listFrame.size(); ++n) {
    nChanged += listFrame[n] != listBefore[n] ? 1U : 0U;
  }
  EXPECT_EQ(nChanged, 3U);
}

TEST(DefectReplacement, AClusterIsFilledFromItsEdgeAndAPixelOutsideIsRefused)
{
  std::vector<SDefect> listDefects;
  for (uint32_t n = 0; n < 25; ++n) {
    listDefects.push_back({2 + n % 5, 2 + n / 5, 0, 0, 0, 0});
  }
  std::vector<uint8_t> listFrame(9 * 9, 100);
  for (const SDefect &stDefect : listDefects) {
    listFrame[stDefect.nLine * 9 + stDefect.nColumn] = 255;
  }
  CDefectReplacement replacement;
  ASSERT_TRUE(replacement.Prepare(listDefects, 9, 9, EColorLayout::Mono));
  replacement.Apply(listFrame.data(), 1);
  EXPECT_EQ(std::count(listFrame.begin(), listFrame.end(), 100), 81);
  EXPECT_EQ(replacement.GetLeftCount(), 0U);
  EXPECT_FALSE(replacement.Prepare(listDefects, 6, 9, EColorLayout::Mono));
  ASSERT_TRUE(replacement.Prepare({{0, 0, 0, 0, 0, 0}}, 1, 1, EColorLayout::Mono));
  EXPECT_EQ(replacement.GetLeftCount(), 1U);
}
