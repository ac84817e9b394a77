#include "camera/software/simulated/noisetable.h"

#include <cmath>
#include <random>

namespace ffc::camera {

namespace {

// Distinct places of a run. Prime, so that runs of no width fall into step with it.
constexpr uint32_t PLACE_COUNT = 1048573;

// Brings mean and deviation of the numbers exactly to 0 and 1: an average over frames then has no
// offset of the table's own.
void Normalise(std::vector<float> &listNumbers)
{
  double dSum = 0.0;
  double dSquares = 0.0;
  for (const float fNumber : listNumbers) {
    dSum += fNumber;
    dSquares += double{fNumber} * fNumber;
  }
  const double dCount = static_cast<double>(listNumbers.size());
  const double dMean = dSum / dCount;
  const double dScale = 1.0 / std::sqrt(dSquares / dCount - dMean * dMean);
  for (float &fNumber : listNumbers) {
    fNumber = static_cast<float>((fNumber - dMean) * dScale);
  }
}

} // namespace

CRandomPicker::CRandomPicker(uint64_t nSeed)
{
  uint64_t nMixed = nSeed + 0x9E3779B97F4A7C15U; // spreads neighbouring seeds over all bits
  nMixed = (nMixed ^ (nMixed >> 30)) * 0xBF58476D1CE4E5B9U;
  nMixed = (nMixed ^ (nMixed >> 27)) * 0x94D049BB133111EBU;
  m_nState = (nMixed ^ (nMixed >> 31)) | 1U; // zero would stay zero
}

uint64_t CRandomPicker::Next()
{
  m_nState ^= m_nState << 13;
  m_nState ^= m_nState >> 7;
  m_nState ^= m_nState << 17;
  return m_nState;
}

CNoiseTable::CNoiseTable(uint64_t nSeed, uint32_t nLongestRun)
{
  std::mt19937_64 generator(nSeed);
  std::normal_distribution<float> distribution;
  m_listNumbers.resize(PLACE_COUNT);
  for (float &fNumber : m_listNumbers) {
    fNumber = distribution(generator);
  }
  Normalise(m_listNumbers);
  for (uint32_t nAt = 0; nAt < nLongestRun; ++nAt) {
    m_listNumbers.push_back(m_listNumbers[nAt]); // a run near the end goes on from the start
  }
}

const float *CNoiseTable::GetRun(CRandomPicker &picker) const
{
  return m_listNumbers.data() + picker.NextBelow(PLACE_COUNT);
}

} // namespace ffc::camera
