// How much of an energy is believed.
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "reference/shrinkage.h"
#include "tests/reference/noisesamples.h"

using namespace ffc::reference;
using namespace ffc::test;

namespace {

/// Energies of 12 samples each.
CShrinkage::Histogram CountEnergies(const std::vector<float> &listSamples)
{
  CShrinkage::Histogram aCounts{};
  for (std::size_t n = 0; n < listSamples.size(); n += 12) {
    float fEnergy = 0;
    for (std::size_t i = 0; i < 12; ++i) {
      fEnergy += listSamples[n + i] * listSamples[n + i] / 12;
    }
    ++aCounts[CShrinkage::GetBin(fEnergy)];
  }
  return aCounts;
}

} // namespace

TEST(ReferenceShrinkage, NoiseAloneIsNotBelievedAndAStructureIs)
{
  const std::vector<float> listNoise = MakeNoise(12 * 20000);
  const CShrinkage::Histogram aCounts = CountEnergies(listNoise);
  CShrinkage shrinkage;
  shrinkage.Learn(aCounts, 12);
  EXPECT_LT(shrinkage.GetMeanWeight(aCounts), 0.05);
  EXPECT_GT(shrinkage.GetWeight(30), 0.9F);
  EXPECT_GT(shrinkage.GetWeight(1e6F), 0.999F);
  for (int nStep = 0; nStep < 121; ++nStep) { // from 0.01 to 1000
    const float fEnergy = 0.01F * std::pow(1.1F, static_cast<float>(nStep));
    EXPECT_GE(shrinkage.GetWeight(fEnergy * 1.1F), shrinkage.GetWeight(fEnergy));
  }
}

TEST(ReferenceShrinkage, AnEnergyIsFoundFromWhichOnWeightsLieBeyondOne)
{
  CShrinkage shrinkage;
  shrinkage.Learn(CountEnergies(MakeNoise(12 * 20000)), 12);
  for (const float fWeight : {0.02F, 0.15F, 0.6F}) {
    const float fLeast = shrinkage.FindEnergy(fWeight);
    EXPECT_GT(shrinkage.GetWeight(fLeast), fWeight);
    EXPECT_LE(shrinkage.GetWeight(std::nextafter(fLeast, 0.0F)), fWeight);
  }
  EXPECT_EQ(shrinkage.FindEnergy(-1), 0) << "all are beyond";
  EXPECT_EQ(shrinkage.FindEnergy(1), INFINITY);
}

TEST(ReferenceShrinkage, ASignalEverywhereIsBelievedByItsShare)
{
  const std::vector<float> listSamples = MakeNoise(12 * 20000, 2); // signal 3, noise 1
  const CShrinkage::Histogram aCounts = CountEnergies(listSamples);
  CShrinkage shrinkage;
  shrinkage.Learn(aCounts, 12);
  EXPECT_NEAR(shrinkage.GetMeanWeight(aCounts), 0.75, 0.02);
}

TEST(ReferenceShrinkage, AnEnergyBeyondAllOthersIsBelievedWithAnyFreedom)
{
  CShrinkage::Histogram aCounts{};
  aCounts[CShrinkage::GetBin(1)] = 10000;
  CShrinkage shrinkage;
  shrinkage.Learn(aCounts, 1000); // likelihoods far below the smallest number
  EXPECT_GT(shrinkage.GetWeight(16000), 0.99F);
  EXPECT_LT(shrinkage.GetWeight(1), 0.05F);
}

TEST(ReferenceShrinkage, HowManyEnergiesThereAreDoesNotCount)
{
  CShrinkage::Histogram aOne{};
  aOne[CShrinkage::GetBin(1)] = 1;
  CShrinkage::Histogram aMany{};
  aMany[CShrinkage::GetBin(1)] = 10000;
  CShrinkage one;
  one.Learn(aOne, 12);
  CShrinkage many;
  many.Learn(aMany, 12);
  for (const float fEnergy : {0.0F, 1.0F, 3.0F, 30.0F}) {
    EXPECT_FLOAT_EQ(one.GetWeight(fEnergy), many.GetWeight(fEnergy)) << fEnergy;
  }
}

TEST(ReferenceShrinkage, PlacesWithoutEnergyCountInTheMeanWeightToo)
{
  CShrinkage::Histogram aCounts{};
  aCounts[CShrinkage::GetBin(0)] = 3000;
  aCounts[CShrinkage::GetBin(100)] = 1000;
  CShrinkage shrinkage;
  shrinkage.Learn(aCounts, 12);
  EXPECT_FLOAT_EQ(static_cast<float>(shrinkage.GetMeanWeight(aCounts)),
                  0.75F * shrinkage.GetWeight(0) + 0.25F * shrinkage.GetWeight(100));
}

TEST(ReferenceShrinkage, NoEnergyAtAllAndNoNumberHaveAPlace)
{
  EXPECT_EQ(CShrinkage::GetBin(0), 0U);
  EXPECT_EQ(CShrinkage::GetBin(-1), 0U);
  EXPECT_EQ(CShrinkage::GetBin(INFINITY), CShrinkage::BINS - 1);
  CShrinkage shrinkage;
  shrinkage.Learn({}, 12);
  EXPECT_LE(shrinkage.GetWeight(1), 1.0F);
  EXPECT_EQ(shrinkage.GetMeanWeight({}), 0);
}
