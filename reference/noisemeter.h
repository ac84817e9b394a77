/// \file
/// Noise in time, from the differences of frames that follow each other.
#pragma once

#include <array>
#include <cstdint>

namespace ffc::reference {

/// Adds up pairs of frames as they arrive; needs no memory of their size. What the light changes between two frames
/// (a part that is the same everywhere, and one in proportion to the level) does not count. Used by one thread at a
/// time.
class CNoiseMeter {
public:
  static constexpr uint32_t SITES = 4;

  /// Adds two frames. Large ones are looked at in some of their lines.
  /// \param nBytesPerSample 1 or 2
  void Add(const void *pFormer, const void *pLatter, uint32_t nWidth, uint32_t nHeight, uint32_t nBytesPerSample);

  /// Mean variances of one sample, DN^2.
  struct SVariances {
    double dSample = 0;
    double dLine = 0; ///< what all samples of a line share of it
  };

  uint32_t GetPairCount() const { return m_nPairs; }
  /// \param nSite (line & 1) * 2 + (column & 1)
  SVariances GetSite(uint32_t nSite) const;
  /// Of all samples.
  SVariances GetAll() const;

private:
  struct SSums {
    double dVariance = 0; ///< of pairs, each with its weight
    double dLine = 0;
    double dSamples = 0;
  };

  SVariances Get(double dVariance, double dLine, double dSamples) const;
  template <class TSample>
  void AddSite(const TSample *pFormer, const TSample *pLatter, uint32_t nWidth, uint32_t nHeight, uint32_t nSite);

  std::array<SSums, SITES> m_astSums;
  uint32_t m_nPairs = 0;
};

} // namespace ffc::reference
