/// \file
/// Coefficient tables made by hand, and what they should do to a pixel.
#pragma once

#include <array>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "camera/correctionmode.h"

namespace ffc::test {

/// A table as its description says it, written out slowly; shares nothing with the camera's own reading.
class CHandMadeTable {
public:
  struct SPoint {
    uint16_t nDark = 0;
    uint16_t nRed = 256;
    uint16_t nGreen = 256;
    uint16_t nBlue = 256;
  };

  /// Every point leaves a pixel as it is, at the expected grey 255.
  /// \param strFormat PFNC name
  CHandMadeTable(camera::ECorrectionMode eMode, const std::string &strFormat, uint32_t nWidth, uint32_t nHeight,
                 uint32_t nSide);

  uint32_t GetRows() const { return m_nRows; }
  uint32_t GetColumns() const { return m_nColumns; }
  SPoint &At(uint32_t nRow, uint32_t nColumn) { return m_listPoints[nRow * m_nColumns + nColumn]; }

  /// Gains from a half to five, dark levels to 40; the same for all colours of a mono camera.
  void Scatter(uint32_t nSeed);
  /// As a register takes it: the table, and a record of the bytes 1 to 24.
  std::vector<uint8_t> Pack() const;
  /// Neither rounded nor cut off.
  double Correct(double dPixel, uint32_t nX, uint32_t nY, double dGray) const;
  /// Number of samples of a frame that are not what the formula makes of the raw ones. Where the formula
  /// ends within a fiftieth of a half, either neighbour is right.
  std::size_t CountWrong(const std::vector<uint16_t> &listRaw, const std::vector<uint16_t> &listCorrected,
                         double dGray) const;

private:
  double GetGain(const SPoint &stPoint, uint32_t nX, uint32_t nY) const;

  camera::ECorrectionMode m_eMode;
  std::string m_strColors; ///< of the pixels of a 2 x 2 cell; empty: mono
  uint32_t m_nWidth;
  uint32_t m_nBits;
  uint32_t m_nSide;
  uint32_t m_nRows;
  uint32_t m_nColumns;
  std::vector<SPoint> m_listPoints;
};

} // namespace ffc::test
