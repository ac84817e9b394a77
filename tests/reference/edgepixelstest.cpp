// What is worked on around edges: all of it, and as if there were nothing else.
#include <algorithm>
#include <cstdlib>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "reference/edgepixels.h"
#include "reference/totalvariation.h"

using namespace ffc::reference;

namespace {

constexpr uint32_t IMAGE_WIDTH = 150;
constexpr uint32_t IMAGE_HEIGHT = 90;

/// Edges at these places, (column, line).
bool FindAround(CEdgePixels &pixels, const std::vector<std::pair<uint32_t, uint32_t>> &listEdges)
{
  std::fill_n(pixels.GetMarks(), IMAGE_WIDTH * IMAGE_HEIGHT, uint8_t{0});
  for (const auto &[nX, nY] : listEdges) {
    pixels.GetMarks()[nY * IMAGE_WIDTH + nX] = 1;
  }
  return pixels.Find(IMAGE_WIDTH, IMAGE_HEIGHT);
}

/// Pixels within 7 of an edge along both axes, and not within 9 of the border.
std::vector<uint32_t> FindSlowly(const std::vector<std::pair<uint32_t, uint32_t>> &listEdges)
{
  std::vector<uint32_t> listPixels;
  for (int nY = 9; nY < int{IMAGE_HEIGHT} - 9; ++nY) {
    for (int nX = 9; nX < int{IMAGE_WIDTH} - 9; ++nX) {
      if (std::any_of(listEdges.begin(), listEdges.end(), [&](const auto &edge) {
            return std::abs(static_cast<int>(edge.first) - nX) <= 7 &&
                   std::abs(static_cast<int>(edge.second) - nY) <= 7;
          })) {
        listPixels.push_back(static_cast<uint32_t>(nY) * IMAGE_WIDTH + static_cast<uint32_t>(nX));
      }
    }
  }
  return listPixels;
}

} // namespace

TEST(ReferenceEdgePixels, AreThoseOfTheSlowTwinAtTheBordersToo)
{
  CEdgePixels pixels(IMAGE_WIDTH);
  const std::vector<std::pair<uint32_t, uint32_t>> listEdges = {{0, 0},   {1, 30},  {2, 50}, {IMAGE_WIDTH - 2, 40},
                                                                {70, 40}, {77, 41}, {90, 1}, {60, IMAGE_HEIGHT - 1},
                                                                {61, 64}, {128, 70}};
  EXPECT_TRUE(FindAround(pixels, listEdges));
  EXPECT_EQ(pixels.GetAll(), FindSlowly(listEdges));
  EXPECT_TRUE(FindAround(pixels, {{40, 40}})) << "nothing is left of an image before";
  EXPECT_EQ(pixels.GetAll(), FindSlowly({{40, 40}}));
  EXPECT_FALSE(FindAround(pixels, {}));
  EXPECT_FALSE(FindAround(pixels, {{0, 0}, {IMAGE_WIDTH - 1, IMAGE_HEIGHT - 1}})) << "too near to the border";
}

TEST(ReferenceEdgePixels, ArePatternWhereTheyAreHalfOfAll)
{
  CEdgePixels pixels(IMAGE_WIDTH);
  std::vector<std::pair<uint32_t, uint32_t>> listEdges;
  for (uint32_t nX = 5; nX < IMAGE_WIDTH; nX += 10) {
    for (uint32_t nY = 5; nY < IMAGE_HEIGHT; nY += 10) {
      listEdges.emplace_back(nX, nY);
    }
  }
  EXPECT_FALSE(FindAround(pixels, listEdges));
}

TEST(ReferenceEdgePixels, RunsAndBoxesHaveAllOfThem)
{
  CEdgePixels pixels(IMAGE_WIDTH);
  std::vector<std::pair<uint32_t, uint32_t>> listEdges = {{20, 70}, {47, 70}, {130, 20}};
  for (uint32_t nX = 20; nX < 110; ++nX) {
    listEdges.emplace_back(nX, 40);
  }
  ASSERT_TRUE(FindAround(pixels, listEdges));
  std::size_t nSeen = 0;
  pixels.ForEachRun([&](std::size_t nFirst, std::size_t nCount) {
    EXPECT_EQ(nFirst, nSeen);
    EXPECT_LE(nCount, CEdgePixels::LONGEST_RUN);
    EXPECT_EQ(pixels.GetAll()[nFirst + nCount - 1], pixels.GetAll()[nFirst] + nCount - 1) << "side by side";
    nSeen += nCount;
  });
  EXPECT_EQ(nSeen, pixels.GetAll().size());
  std::vector<int> listCovered(IMAGE_WIDTH * IMAGE_HEIGHT);
  pixels.ForEachBox([&](const SBox &stBox) {
    EXPECT_LE(std::max(stBox.GetWidth(), stBox.GetHeight()), CEdgePixels::BOX_SIDE);
    for (uint32_t nY = stBox.nFirstLine; nY < stBox.nEndLine; ++nY) {
      for (uint32_t nX = stBox.nFirstColumn; nX < stBox.nEndColumn; ++nX) {
        ++listCovered[nY * IMAGE_WIDTH + nX];
      }
    }
  });
  EXPECT_EQ(*std::max_element(listCovered.begin(), listCovered.end()), 1);
  EXPECT_TRUE(std::all_of(pixels.GetAll().begin(), pixels.GetAll().end(),
                          [&](uint32_t nPixel) { return listCovered[nPixel] == 1; }));
}

TEST(ReferenceVariation, ABoxIsWhatItIsInTheWholeImage)
{
  std::mt19937 random(4);
  std::vector<float> listSamples(IMAGE_WIDTH * IMAGE_HEIGHT);
  for (std::size_t n = 0; n < listSamples.size(); ++n) {
    listSamples[n] = (n % IMAGE_WIDTH < 70 ? 100.0F : 104.0F) + static_cast<float>(random() >> 29U);
  }
  const SImage samples = {listSamples.data(), IMAGE_WIDTH, IMAGE_HEIGHT};
  std::vector<float> listWhole(listSamples.size());
  std::vector<float> listParts(listSamples.size(), -1);
  CTotalVariation variation(listSamples.size());
  variation.Smooth(samples, {0, 0, IMAGE_WIDTH, IMAGE_HEIGHT}, 2, {listWhole.data(), IMAGE_WIDTH, IMAGE_HEIGHT});
  const SBox astBoxes[] = {{64, 30, 70, 33}, {0, 0, 5, 20}, {140, 80, IMAGE_WIDTH, IMAGE_HEIGHT}};
  for (const SBox &stBox : astBoxes) {
    variation.Smooth(samples, stBox, 2, {listParts.data(), IMAGE_WIDTH, IMAGE_HEIGHT});
  }
  for (std::size_t n = 0; n < listParts.size(); ++n) {
    const bool bInside = std::any_of(std::begin(astBoxes), std::end(astBoxes), [n](const SBox &stBox) {
      return n % IMAGE_WIDTH >= stBox.nFirstColumn && n % IMAGE_WIDTH < stBox.nEndColumn &&
             n / IMAGE_WIDTH >= stBox.nFirstLine && n / IMAGE_WIDTH < stBox.nEndLine;
    });
    ASSERT_EQ(listParts[n], bInside ? listWhole[n] : -1.0F) << n % IMAGE_WIDTH << ", " << n / IMAGE_WIDTH;
  }
}
