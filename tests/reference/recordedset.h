/// \file
/// Frames of a real camera, dust before them, and what a reference of some leaves in the others.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/result.h"
#include "reference/noisemeter.h"

namespace ffc::test {

constexpr uint32_t SET_WIDTH = 640;
constexpr uint32_t SET_HEIGHT = 480;

/// Dust before the sensor: what it leaves of the light, and where it is.
struct SDust {
  std::vector<double> listLight = std::vector<double>(std::size_t{SET_WIDTH} * SET_HEIGHT, 1.0);
  std::vector<bool> listInside = std::vector<bool>(std::size_t{SET_WIDTH} * SET_HEIGHT, false);
};

/// 40 spots, 2 to 10 % deep and 4 to 12 pixels in radius.
/// \param bHard with an edge; else they fade
SDust MakeDust(bool bHard, uint32_t nSeed);

/// Percent.
struct SResidual {
  double dAll = 0;
  double dInside = 0; ///< of the dust
};

class CRecordedSet {
public:
  using Frame = std::vector<uint16_t>;

  /// \param strFolder that has emva1288_set001
  static Result<CRecordedSet> Load(const std::string &strFolder);

  /// Before all bright frames.
  void Cover(const SDust &stDust);
  /// Of so many bright frames from one on, weighted, and of the first dark ones, as many but 8 at most.
  /// \return empty when that fails
  std::vector<uint8_t> MakeTable(uint32_t nBright, uint32_t nFirst = 0) const;
  /// Of the frames from the 21st on: the covariance of two halves, in which noise has no part.
  /// \param pTable null: uncorrected
  SResidual MeasureResidual(const std::vector<uint8_t> *pTable, const SDust &stDust = {}) const;

  std::size_t CountBright() const { return m_listBright.size(); }

private:
  std::vector<Frame> m_listBright;
  std::vector<Frame> m_listDark;
};

} // namespace ffc::test
