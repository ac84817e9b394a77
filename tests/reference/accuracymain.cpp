// How far weighted references are from the truth: simulated sensors, and dust on recorded frames, each over seeds by
// which nothing was chosen.
//   cmake --build build/release --target reference_accuracy
//   build/release/bin/reference_accuracy [FOLDER]    FOLDER as in FFC_TEST_DATA
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>

#include "tests/reference/recordedset.h"
#include "tests/reference/sensor.h"

using namespace ffc::test;
using namespace ffc::reference;

namespace {

constexpr uint32_t SEEDS = 20;
constexpr uint32_t FIRST_SEED = 100;
/// Of dust; by those from 100 on the regions were tuned.
constexpr uint32_t FIRST_DUST_SEED = 300;
constexpr double LEVEL = 2000;

/// Errors of some runs, percent.
struct SErrors {
  double dSquares = 0;
  double dWorst = 0;
  uint32_t nRuns = 0;

  void Add(double dError)
  {
    dSquares += 1e4 * dError * dError;
    dWorst = std::max(dWorst, 100 * dError);
    ++nRuns;
  }
  double GetMean() const { return std::sqrt(dSquares / nRuns); }
};

/// Weighted and average of the same frames.
struct SCompared {
  SErrors stWeighted;
  SErrors stAverage;
  double dWorstRatio = 0;

  void Add(double dWeighted, double dAverage)
  {
    stWeighted.Add(dWeighted);
    stAverage.Add(dAverage);
    dWorstRatio = std::max(dWorstRatio, dWeighted / dAverage);
  }
  void Print() const
  {
    std::printf("%.3f %% | %.3f %% | %.2f |", stWeighted.GetMean(), stAverage.GetMean(), dWorstRatio);
  }
};

SSensor MakeSensor(uint32_t nSeed, uint32_t nWidth, uint32_t nHeight)
{
  SSensor stSensor;
  stSensor.nWidth = nWidth;
  stSensor.nHeight = nHeight;
  stSensor.nSeed = nSeed;
  return stSensor;
}

CSums MakeDark(SSensor stSensor, uint32_t nFrames)
{
  stSensor.nSeed += 5000;
  return CSums(stSensor, Field(stSensor.GetPixelCount()), nFrames);
}

/// \param dShading light that is missing in the corners
void PrintOneFrame(double dPattern, double dNoise, double dShading)
{
  SCompared stCompared;
  std::string strSource;
  for (uint32_t nSeed = FIRST_SEED; nSeed < FIRST_SEED + SEEDS; ++nSeed) {
    SSensor stSensor = MakeSensor(nSeed, 640, 480);
    stSensor.dPattern = dPattern;
    stSensor.dSystemGain = (std::pow(dNoise * LEVEL, 2) - std::pow(stSensor.dReadNoise, 2)) / LEVEL;
    stSensor.fnStructure = [&](uint32_t nX, uint32_t nY) {
      const double dSquare = std::pow(nX / 640.0 - 0.5, 2) + std::pow(nY / 480.0 - 0.5, 2);
      return (1 - 2 * dShading * dSquare) / (1 - 0.1 * dSquare); // the sensor has some of its own
    };
    const Field field = stSensor.MakeField();
    const CSums bright(stSensor, field, 1);
    const CSums dark = MakeDark(stSensor, 2);
    const SMade stMade = MakeReference(stSensor, bright, &dark, 2);
    stCompared.Add(GetError(stSensor, stMade.GetSignal(stSensor), field),
                   GetError(stSensor, GetAverage(stSensor, bright), field));
    strSource = DescribeNoiseSource(stMade.stResult.eNoise);
  }
  std::printf("| %.1f %% | %.1f %% | %.0f %% | ", 100 * dPattern, 100 * dNoise, 100 * dShading);
  stCompared.Print();
  std::printf(" %s |\n", strSource.c_str());
}

/// \param dOff of the average's noise
void PrintLonePixels(uint32_t nFrames, double dOff)
{
  SCompared stCompared;
  for (uint32_t nSeed = FIRST_SEED; nSeed < FIRST_SEED + SEEDS; ++nSeed) {
    SSensor stSensor = MakeSensor(nSeed, 320, 240);
    stSensor.dPattern = 0.002;
    const double dNoise = std::sqrt(std::pow(stSensor.dReadNoise, 2) + stSensor.dSystemGain * LEVEL) / LEVEL;
    const double dDeviation = dOff * dNoise / std::sqrt(nFrames);
    const auto fnIsOdd = [](uint32_t nX, uint32_t nY) { return nX % 32 == 13 && nY % 16 == 7; };
    stSensor.fnStructure = [&](uint32_t nX, uint32_t nY) {
      return fnIsOdd(nX, nY) ? 1 + (nY % 32 == 7 ? dDeviation : -dDeviation) : 1;
    };
    const Field field = stSensor.MakeField();
    const CSums bright(stSensor, field, nFrames);
    const CSums dark = MakeDark(stSensor, 4);
    const SMade stMade = MakeReference(stSensor, bright, &dark, 2);
    stCompared.Add(GetError(stSensor, stMade.GetSignal(stSensor), field, fnIsOdd),
                   GetError(stSensor, GetAverage(stSensor, bright), field, fnIsOdd));
  }
  std::printf("| %u | %.0f | ", nFrames, dOff);
  stCompared.Print();
  std::printf("\n");
}

/// Dark levels with a tail of hot pixels, one dark frame.
void PrintLoneDark(double dLevels, uint32_t nFrames)
{
  SCompared stCompared;
  for (uint32_t nSeed = FIRST_SEED; nSeed < FIRST_SEED + SEEDS; ++nSeed) {
    const SSensor stSensor = MakeSensor(nSeed, 320, 240);
    SSensor stLevels = stSensor;
    stLevels.dLevel = 100;
    stLevels.dPattern = dLevels / 100;
    stLevels.nSeed += 9000;
    Field levels = stLevels.MakeField();
    for (std::size_t n = 0; n < levels.size(); ++n) {
      levels[n] = std::max(levels[n] - 100 + (n % 199 == 0 ? 8 * dLevels : 0), -80.0);
    }
    const Field field = stSensor.MakeField();
    Field light = field;
    std::transform(light.begin(), light.end(), levels.begin(), light.begin(), std::plus<>());
    SSensor stUnlit = stSensor;
    stUnlit.dSystemGain = 0;
    stUnlit.nSeed += 5000;
    const CSums bright(stSensor, light, nFrames);
    const CSums dark(stUnlit, levels, 1);
    Field average(field.size());
    for (std::size_t n = 0; n < average.size(); ++n) {
      average[n] = static_cast<double>(bright.GetValues()[n]) / nFrames - dark.GetValues()[n];
    }
    stCompared.Add(GetError(stSensor, MakeReference(stSensor, bright, &dark, 2).GetSignal(stSensor), field),
                   GetError(stSensor, average, field));
  }
  std::printf("| %.0f DN | %u | ", dLevels, nFrames);
  stCompared.Print();
  std::printf("\n");
}

/// \return whether there are frames
bool PrintDust(const std::string &strFolder)
{
  for (const bool bHard : {false, true}) {
    SErrors stInside;
    SErrors stAll;
    for (uint32_t nSeed = 0; nSeed < SEEDS; ++nSeed) {
      ffc::Result<CRecordedSet> set = CRecordedSet::Load(strFolder);
      if (!set) {
        std::fprintf(stderr, "%s\n", set.GetError().c_str());
        return false;
      }
      const SDust stDust = MakeDust(bHard, FIRST_DUST_SEED + nSeed);
      set.GetValue().Cover(stDust);
      const std::vector<uint8_t> listTable = set.GetValue().MakeTable(1, nSeed);
      const SResidual stResidual = set.GetValue().MeasureResidual(&listTable, stDust);
      stInside.Add(stResidual.dInside / 100);
      stAll.Add(stResidual.dAll / 100);
    }
    std::printf("| %s | %.3f %% | %.3f %% | %.3f %% | %.3f %% |\n", bHard ? "edge" : "fading", stInside.GetMean(),
                stInside.dWorst, stAll.GetMean(), stAll.dWorst);
  }
  return true;
}

} // namespace

int main(int nArguments, char *apArguments[])
{
  std::printf("| pattern | noise | shading | weighted | average | worst ratio | noise from |\n"
              "|---|---|---|---|---|---|---|\n");
  for (const double dShading : {0.0, 0.1, 0.2}) {
    for (const auto &[dPattern, dNoise] : {std::pair{0.003, 0.012}, std::pair{0.01, 0.012}, std::pair{0.01, 0.004},
                                           std::pair{0.02, 0.004}, std::pair{0.003, 0.002}}) {
      PrintOneFrame(dPattern, dNoise, dShading);
    }
  }
  std::printf("\n| frames | standard deviations off | weighted | average | worst ratio |\n|---|---|---|---|---|\n");
  for (const uint32_t nFrames : {1U, 2U, 4U}) {
    for (const double dOff : {4.0, 6.0, 7.0, 8.0, 30.0}) {
      PrintLonePixels(nFrames, dOff);
    }
  }
  std::printf("\n| dark levels | bright frames | weighted | average | worst ratio |\n|---|---|---|---|---|\n");
  for (const double dLevels : {3.0, 30.0, 60.0}) {
    for (const uint32_t nFrames : {1U, 16U}) {
      PrintLoneDark(dLevels, nFrames);
    }
  }
  if (nArguments < 2) {
    return 0;
  }
  std::printf("\n| spots | inside, mean | worst | all, mean | worst |\n|---|---|---|---|---|\n");
  return PrintDust(apArguments[1]) ? 0 : 1;
}
