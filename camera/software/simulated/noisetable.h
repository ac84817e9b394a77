/// \file
/// Random numbers for sensors: reproducible and cheap.
#pragma once

#include <cstdint>
#include <vector>

namespace ffc::camera {

/// A xorshift generator: not for statistics on its own output, but for picking places in a table.
class CRandomPicker {
public:
  /// Different seeds give unrelated sequences.
  explicit CRandomPicker(uint64_t nSeed);
  uint64_t Next();
  /// 0 to nBound - 1. \param nBound below 2^32
  uint32_t NextBelow(uint32_t nBound) { return static_cast<uint32_t>(((Next() >> 32) * nBound) >> 32); }

private:
  uint64_t m_nState;
};

/// Gaussian numbers of mean 0 and standard deviation 1, made once and read in runs from random places.
class CNoiseTable {
public:
  /// \param nLongestRun most numbers that one run takes
  CNoiseTable(uint64_t nSeed, uint32_t nLongestRun);

  /// A run from a random place; nLongestRun numbers can be read.
  const float *GetRun(CRandomPicker &picker) const;
  /// One number.
  float Get(CRandomPicker &picker) const { return *GetRun(picker); }

private:
  std::vector<float> m_listNumbers;
};

} // namespace ffc::camera
