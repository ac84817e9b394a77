#include "tests/quality/syntheticscene.h"

#include <algorithm>
#include <cmath>
#include <cstring>

using namespace ffc::quality;

std::vector<TestFrame> SSyntheticScene::MakeFrames(uint32_t nFrames, uint32_t nSeed) const
{
  std::mt19937 generator(nSeed);
  std::normal_distribution<double> noise(0.0, 1.0);
  const double dMaximum = static_cast<double>((1U << nBitDepth) - 1U);
  std::vector<TestFrame> listFrames;
  for (uint32_t nFrame = 0; nFrame < nFrames; ++nFrame) {
    TestFrame listSamples;
    for (uint32_t nLine = 0; nLine < nHeight; ++nLine) {
      for (uint32_t nColumn = 0; nColumn < nWidth; ++nColumn) {
        const double dValue = fnLevel(nColumn, nLine) + (dNoise > 0 ? dNoise * noise(generator) : 0.0);
        listSamples.push_back(static_cast<uint16_t>(std::lround(std::clamp(dValue, 0.0, dMaximum))));
      }
    }
    listFrames.push_back(listSamples);
  }
  return listFrames;
}

CFrameStack SSyntheticScene::MakeStack(const std::vector<TestFrame> &listFrames) const
{
  CFrameStack stStack;
  stStack.Prepare(nWidth, nHeight, nBitDepth);
  for (const TestFrame &listSamples : listFrames) {
    const std::vector<uint8_t> listBytes = PackFrame(listSamples, nBitDepth);
    stStack.Add(listBytes.data(), listBytes.size());
  }
  return stStack;
}

std::vector<uint8_t> PackFrame(const TestFrame &listSamples, uint32_t nBitDepth)
{
  if (nBitDepth == 8) {
    std::vector<uint8_t> listBytes;
    for (const uint16_t nSample : listSamples) {
      listBytes.push_back(static_cast<uint8_t>(nSample));
    }
    return listBytes;
  }
  std::vector<uint8_t> listBytes(listSamples.size() * 2);
  std::memcpy(listBytes.data(), listSamples.data(), listBytes.size());
  return listBytes;
}
