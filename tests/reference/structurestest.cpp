// What a sensor or its window really has must survive the weighting.
#include <cmath>

#include <gtest/gtest.h>

#include "tests/reference/sensor.h"

using namespace ffc::test;
using namespace ffc::reference;

namespace {

struct SStructure {
  const char *pName;
  std::function<double(uint32_t nX, uint32_t nY)> fnResponse;
  std::function<bool(uint32_t nX, uint32_t nY)> fnWhere;
  double dLargestShare; ///< of the average's error there, for one frame
};

void PrintTo(const SStructure &stStructure, std::ostream *pStream)
{
  *pStream << stStructure.pName;
}

bool IsInSpot(uint32_t nX, uint32_t nY)
{
  return std::hypot(nX - 70.0, nY - 60.0) < 9;
}

class Structures : public testing::TestWithParam<SStructure> {};

} // namespace

TEST_P(Structures, AreInTheReference)
{
  const SStructure &stStructure = GetParam();
  SSensor stSensor;
  stSensor.nWidth = 192;
  stSensor.nHeight = 160;
  stSensor.dPattern = 0.002;
  stSensor.fnStructure = stStructure.fnResponse;
  const Field field = stSensor.MakeField();
  const CSums dark(stSensor, Field(field.size()), 4);
  for (const uint32_t nFrames : {1U, 4U}) {
    const CSums bright(stSensor, field, nFrames);
    const SMade stMade = MakeReference(stSensor, bright, &dark);
    const double dAverage = GetError(stSensor, GetAverage(stSensor, bright), field, stStructure.fnWhere);
    const double dShare = nFrames == 1 ? stStructure.dLargestShare : 1.01;
    EXPECT_LT(GetError(stSensor, stMade.GetSignal(stSensor), field, stStructure.fnWhere), dShare * dAverage)
      << nFrames << " frames";
  }
}

INSTANTIATE_TEST_SUITE_P(
  Kinds, Structures,
  testing::Values(
    SStructure{"SoftDust",
               [](uint32_t nX, uint32_t nY) {
                 return 1 - 0.06 * std::exp(-0.5 * std::pow(std::hypot(nX - 70.0, nY - 60.0) / 4.5, 2));
               },
               IsInSpot, 0.7},
    SStructure{"HardDust", [](uint32_t nX, uint32_t nY) { return IsInSpot(nX, nY) ? 0.9 : 1.0; }, IsInSpot, 0.4},
    SStructure{"ColumnPattern", [](uint32_t nX, uint32_t) { return 1 + 0.01 * std::sin(nX * 2.4); }, nullptr, 0.5},
    SStructure{"LinePattern", [](uint32_t, uint32_t nY) { return 1 + 0.01 * std::sin(nY * 2.4); }, nullptr, 0.5},
    SStructure{"HotColumn", [](uint32_t nX, uint32_t) { return nX == 50 ? 1.2 : 1.0; },
               [](uint32_t nX, uint32_t) { return nX >= 48 && nX <= 52; }, 0.7},
    SStructure{"SeamOfTwoTaps", [](uint32_t nX, uint32_t) { return nX < 96 ? 1.0 : 1.03; },
               [](uint32_t nX, uint32_t) { return nX >= 92 && nX < 100; }, 0.7},
    SStructure{"SeamOfFourTaps", [](uint32_t nX, uint32_t nY) { return (nX < 96) == (nY < 80) ? 1.0 : 1.03; },
               [](uint32_t nX, uint32_t nY) { return (nX >= 92 && nX < 100) || (nY >= 76 && nY < 84); }, 1.01}),
  [](const auto &stInfo) { return std::string(stInfo.param.pName); });

class LonePixels : public testing::TestWithParam<uint32_t> {};

TEST_P(LonePixels, AreAsInTheAverageWhereTheyStandOutAndWhatIsAroundThemIsNot)
{
  SSensor stSensor;
  stSensor.nWidth = 192;
  stSensor.nHeight = 160;
  stSensor.dPattern = 0.002;
  // Hot and dim ones in turn, some as pairs, nine standard deviations of the average's noise off.
  const double dOff = 9 * 0.0118 / std::sqrt(GetParam());
  const auto fnIsOdd = [](uint32_t nX, uint32_t nY) { return nY % 16 == 9 && (nX % 16 == 7 || nX % 64 == 8); };
  stSensor.fnStructure = [&](uint32_t nX, uint32_t nY) {
    return fnIsOdd(nX, nY) ? 1 + (nX / 16 % 2 == 0 ? dOff : -dOff) : 1;
  };
  const Field field = stSensor.MakeField();
  const CSums bright(stSensor, field, GetParam());
  const CSums dark(stSensor, Field(field.size()), 4);
  const Field signal = MakeReference(stSensor, bright, &dark).GetSignal(stSensor);
  const Field average = GetAverage(stSensor, bright);
  EXPECT_LE(GetError(stSensor, signal, field, fnIsOdd), 1.01 * GetError(stSensor, average, field, fnIsOdd));
  const auto fnIsAround = [&](uint32_t nX, uint32_t nY) {
    return !fnIsOdd(nX, nY) && nY % 16 >= 7 && nY % 16 <= 11 && nX % 16 >= 5 && nX % 16 <= 10;
  };
  EXPECT_LT(GetError(stSensor, signal, field, fnIsAround), 0.5 * GetError(stSensor, average, field, fnIsAround));
}

INSTANTIATE_TEST_SUITE_P(Frames, LonePixels, testing::Values(1U, 2U, 4U));

TEST(LoneStructures, ADeadPixelStaysAsDarkAsItIs)
{
  SSensor stSensor;
  stSensor.fnStructure = [](uint32_t nX, uint32_t nY) { return nX == 33 && nY == 44 ? 0.2 : 1.0; };
  const Field field = stSensor.MakeField();
  const CSums dark(stSensor, Field(field.size()), 4);
  const SMade stMade = MakeReference(stSensor, CSums(stSensor, field, 1), &dark);
  constexpr std::size_t PLACE = 44 * 128 + 33;
  EXPECT_NEAR(stMade.GetSignal(stSensor)[PLACE], field[PLACE], 45) << "four times its noise";
}
