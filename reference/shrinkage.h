/// \file
/// Weights signal / (signal + noise), learnt from what they are for.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <vector>

namespace ffc::reference {

/// How much of a detail is believed, by its local energy: the mean square around it in units of the noise's variance.
///
/// Energies are a mixture: where the signal has the variance t (in units of the noise), an energy is 1 + t times a
/// chi-square of known freedom over that freedom. How frequent each t of a grid is comes from all energies by maximum
/// likelihood (empirical Bayes); the weight of an energy is then the mean of t / (1 + t) given that energy. It rises
/// with the energy. Where nothing but noise is seen it is 0, around a lone structure it is near 1.
class CShrinkage {
public:
  static constexpr uint32_t BINS_PER_OCTAVE_BITS = 5;
  static constexpr int32_t LOWEST_OCTAVE = -10; ///< smaller energies count as 2^-10
  static constexpr uint32_t OCTAVES = 24;
  static constexpr uint32_t BINS = OCTAVES << BINS_PER_OCTAVE_BITS;

  using Histogram = std::array<uint64_t, BINS>;

  /// \param fEnergy no NaN
  static uint32_t GetBin(float fEnergy)
  {
    constexpr uint32_t SHIFT = 23 - BINS_PER_OCTAVE_BITS;
    constexpr int32_t FIRST = (127 + LOWEST_OCTAVE) << BINS_PER_OCTAVE_BITS;
    uint32_t nBits = 0;
    std::memcpy(&nBits, &fEnergy, sizeof nBits);
    const int32_t nBin = static_cast<int32_t>(nBits >> SHIFT) - FIRST;
    const int32_t nLimited = nBin < 0 ? 0 : nBin;
    return fEnergy > 0 ? (nLimited < static_cast<int32_t>(BINS) ? static_cast<uint32_t>(nLimited) : BINS - 1) : 0;
  }

  /// \param dFreedom degrees of freedom of an energy
  void Learn(const Histogram &aCounts, double dFreedom);

  float GetWeight(float fEnergy) const { return m_afWeights[GetBin(fEnergy)]; }
  /// The smallest energy whose weight lies beyond this one; infinite where there is none.
  float FindEnergy(float fWeight) const;
  /// Over so many energies of each bin; 0 where there are none.
  double GetMeanWeight(const Histogram &aCounts) const;

private:
  std::array<float, BINS> m_afWeights{};
};

} // namespace ffc::reference
