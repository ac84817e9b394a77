// The goals of the weighted reference, on the frames of a real camera.
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <random>

#include <gtest/gtest.h>

#include "frames/recordedframes.h"
#include "ombrix/ombrix.h"
#include "tests/reference/sensor.h"

using namespace ffc::test;
using namespace ffc::reference;

namespace {

constexpr uint32_t WIDTH = 640;
constexpr uint32_t HEIGHT = 480;
constexpr std::size_t FIRST_FRESH = 20;

using Frame = std::vector<uint16_t>;

/// Dust before the sensor: what it leaves of the light, and where it is.
struct SDust {
  std::vector<double> listLight = std::vector<double>(std::size_t{WIDTH} * HEIGHT, 1.0);
  std::vector<bool> listInside = std::vector<bool>(std::size_t{WIDTH} * HEIGHT, false);
};

/// \param bHard with an edge; else it fades
SDust MakeDust(bool bHard)
{
  SDust stDust;
  std::mt19937 random(1);
  const auto fnRandom = [&random](double dFrom, double dTo) {
    return dFrom + (dTo - dFrom) * static_cast<double>(random()) / 4294967296.0;
  };
  for (int nSpot = 0; nSpot < 40; ++nSpot) {
    const double dX = fnRandom(20, WIDTH - 20);
    const double dY = fnRandom(20, HEIGHT - 20);
    const double dRadius = fnRandom(4, 12);
    const double dDepth = fnRandom(0.02, 0.1);
    for (std::size_t n = 0; n < stDust.listLight.size(); ++n) {
      const double dDistance =
        std::hypot(static_cast<double>(n % WIDTH) - dX, static_cast<double>(n / WIDTH) - dY) / dRadius;
      const double dShape = bHard ? (dDistance <= 1 ? 1 : 0) : std::exp(-2 * dDistance * dDistance);
      stDust.listLight[n] *= 1 - dDepth * dShape;
      stDust.listInside[n] = stDust.listInside[n] || dDistance <= 1;
    }
  }
  return stDust;
}

class RealFrames : public testing::Test {
protected:
  void SetUp() override
  {
    const char *pData = std::getenv("FFC_TEST_DATA");
    if (pData == nullptr) {
      GTEST_SKIP() << "FFC_TEST_DATA names no recorded frames";
    }
    const auto frames = ffc::frames::LoadRecordedFrames(std::string(pData) + "/emva1288_set001", std::nullopt);
    if (!frames) {
      GTEST_SKIP() << frames.GetError();
    }
    for (const auto &listBytes : frames.GetValue().listBright) {
      m_listBright.push_back(ToFrame(listBytes));
    }
    for (const auto &listBytes : frames.GetValue().listDark) {
      m_listDark.push_back(ToFrame(listBytes));
    }
    ASSERT_EQ(m_listBright.size(), 40U);
  }

  static Frame ToFrame(const std::vector<uint8_t> &listBytes)
  {
    Frame frame(listBytes.size() / 2);
    std::memcpy(frame.data(), listBytes.data(), listBytes.size());
    return frame;
  }

  void Cover(const SDust &stDust)
  {
    for (Frame &frame : m_listBright) {
      for (std::size_t n = 0; n < frame.size(); ++n) {
        frame[n] = static_cast<uint16_t>(std::lround((frame[n] - 14.75) * stDust.listLight[n] + 14.75));
      }
    }
  }

  /// The table of the first frames, weighted.
  std::vector<uint8_t> MakeTable(uint32_t nBright) const
  {
    const uint32_t nDark = std::min<uint32_t>(nBright, 8);
    std::vector<uint32_t> listBrightSums(m_listBright[0].size());
    std::vector<uint32_t> listDarkSums(m_listBright[0].size());
    CNoiseMeter meterBright;
    CNoiseMeter meterDark;
    AddUp(m_listBright, nBright, listBrightSums, meterBright);
    AddUp(m_listDark, nDark, listDarkSums, meterDark);
    SReferenceInput stInput;
    stInput.nWidth = WIDTH;
    stInput.nHeight = HEIGHT;
    stInput.nBitDepth = 12;
    stInput.stBright = {listBrightSums.data(), nBright, 0, &meterBright};
    stInput.stDark = {listDarkSums.data(), nDark, 0, &meterDark};
    stInput.nThreads = 2;
    Frame bright(listBrightSums.size());
    Frame dark(listBrightSums.size());
    SReferenceResult stResult;
    EXPECT_EQ(MakeWeightedReference(stInput, bright.data(), dark.data(), stResult), STATUS_SUCCESS);
    std::vector<uint8_t> listTable(bright.size() * 4);
    auto nSize = static_cast<uint32_t>(listTable.size());
    const uint32_t nTarget = 124U << 8U;
    EXPECT_EQ(
      OmbrixComputeFlatField({bright.data(), dark.data(), WIDTH, HEIGHT, 16, 0}, listTable.data(), &nSize, &nTarget),
      OMBRIX_STATUS_SUCCESS);
    return listTable;
  }

  static void AddUp(const std::vector<Frame> &listFrames, uint32_t nFrames, std::vector<uint32_t> &listSums,
                    CNoiseMeter &meter)
  {
    for (uint32_t nFrame = 0; nFrame < nFrames; ++nFrame) {
      for (std::size_t n = 0; n < listSums.size(); ++n) {
        listSums[n] += listFrames[nFrame][n];
      }
      if (nFrame > 0) {
        meter.Add(listFrames[nFrame - 1].data(), listFrames[nFrame].data(), WIDTH, HEIGHT, 2);
      }
    }
  }

  /// Percent, of fresh frames: the covariance of two halves, in which noise has no part.
  /// \param pTable null: uncorrected
  double MeasureResidual(const std::vector<uint8_t> *pTable, const std::vector<bool> *pInside = nullptr) const
  {
    std::vector<double> alistHalves[2] = {std::vector<double>(m_listBright[0].size()),
                                          std::vector<double>(m_listBright[0].size())};
    for (std::size_t nFrame = FIRST_FRESH; nFrame < m_listBright.size(); ++nFrame) {
      Frame frame = m_listBright[nFrame];
      if (pTable != nullptr) {
        const auto nSize = static_cast<uint32_t>(pTable->size());
        EXPECT_EQ(OmbrixApplyFlatField(frame.data(), frame.data(), 12, WIDTH, HEIGHT, pTable->data(), &nSize),
                  OMBRIX_STATUS_SUCCESS);
      }
      for (std::size_t n = 0; n < frame.size(); ++n) {
        alistHalves[nFrame % 2][n] += frame[n];
      }
    }
    double dCount = 0;
    double dOne = 0;
    double dOther = 0;
    double dProducts = 0;
    for (std::size_t n = 0; n < m_listBright[0].size(); ++n) {
      if (pInside == nullptr || (*pInside)[n]) {
        dCount += 1;
        dOne += alistHalves[0][n];
        dOther += alistHalves[1][n];
        dProducts += alistHalves[0][n] * alistHalves[1][n];
      }
    }
    const double dCovariance = dProducts / dCount - dOne / dCount * (dOther / dCount);
    return 100 * std::sqrt(std::max(0.0, dCovariance)) / ((dOne + dOther) / 2 / dCount);
  }

  std::vector<Frame> m_listBright;
  std::vector<Frame> m_listDark;
};

} // namespace

TEST_F(RealFrames, FreshFramesAreFlatterThanTheAverageLeavesThemAndThanTheyCame)
{
  EXPECT_NEAR(MeasureResidual(nullptr), 0.43, 0.01);
  const auto fnResidual = [this](uint32_t nFrames) {
    const std::vector<uint8_t> listTable = MakeTable(nFrames);
    return MeasureResidual(&listTable);
  };
  EXPECT_LE(fnResidual(1), 0.28);
  EXPECT_LE(fnResidual(4), 0.25);
  EXPECT_LE(fnResidual(16), 0.21);
}

class RealFramesWithDust : public RealFrames, public testing::WithParamInterface<bool> {};

TEST_P(RealFramesWithDust, OneFrameIsEnough)
{
  const SDust stDust = MakeDust(GetParam());
  Cover(stDust);
  EXPECT_GT(MeasureResidual(nullptr, &stDust.listInside), 1.0);
  const std::vector<uint8_t> listTable = MakeTable(1);
  EXPECT_LE(MeasureResidual(&listTable, &stDust.listInside), 0.45);
  EXPECT_LE(MeasureResidual(&listTable), 0.30);
}

INSTANTIATE_TEST_SUITE_P(Kinds, RealFramesWithDust, testing::Bool(),
                         [](const auto &info) { return info.param ? "Hard" : "Soft"; });
