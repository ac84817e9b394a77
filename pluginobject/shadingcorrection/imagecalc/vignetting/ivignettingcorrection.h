/// \file
/// What the vignetting calculators have in common.
#pragma once

#include <cstdint>
#include <memory>

#include "pluginobject/shadingcorrection/imagecalc/calcstatus.h"

/// Turns an evenly lit frame into gains that lift each block of the image to the level of the brightest.
///
/// The gains belong to the points of a grid: one in each block, and a ring of extrapolated ones around them. A
/// table holds the points in quads of 2x2, quads row by row, the points of a quad from the top left to the
/// bottom right; an odd side of the grid is rounded up, its missing points having gains of zero.
///
/// Every operation returns a status of calcstatus.h, a failing setter changing nothing; none throws. An object
/// serves one thread at a time. The order of the virtual operations is fixed.
class IVignettingCorrection {
public:
  virtual ~IVignettingCorrection();

  IVignettingCorrection(const IVignettingCorrection &) = delete;
  IVignettingCorrection &operator=(const IVignettingCorrection &) = delete;

  /// Computes the gain table of a frame.
  /// \param pImage nWidth x nHeight pixels, tightly packed: bytes for 8 bits, aligned 16-bit words else
  /// \param ppTable out: the table, which is the calculator's until its next calculation
  /// \param pnColumns, pnRows out: size of the grid, rounded up to even numbers; zero after -103
  /// \return -101 for a missing argument or when CheckImage fails, -105 for a bit depth other than 8, 10 and
  ///         12, -103 when there is no memory
  virtual int32_t CalcCoefficient(const void *pImage, uint32_t nWidth, uint32_t nHeight, int32_t nBitDepth,
                                  const uint16_t **ppTable, uint64_t *pnColumns, uint64_t *pnRows) noexcept;

  /// Sets everything that a calculation needs.
  /// \return -101 when a setter fails; no calculation is then possible
  virtual int32_t Init(uint32_t nBlockWidth, uint32_t nBlockHeight, uint32_t nScaleBits, int32_t nMaxGain) noexcept;

  /// \return -101 before a successful Init, for a missing image or for one that is smaller than a block
  virtual int32_t CheckImage(const void *pImage, uint32_t nWidth, uint32_t nHeight) noexcept;

  /// A gain of 1 is 1 << nBits.
  /// \return -101 for more than 15 bits
  virtual int32_t SetScaleBits(uint32_t nBits) noexcept;

  /// \return -101 for a side that is no power of two
  virtual int32_t SetBlockSize(uint32_t nWidth, uint32_t nHeight) noexcept;

  /// No gain exceeds this factor.
  /// \return -101 below 1
  virtual int32_t SetMaxGain(int32_t nGain) noexcept;

protected:
  IVignettingCorrection() noexcept;

  uint16_t m_nScale = 0;      ///< stands for a gain of 1
  uint32_t m_nBlockWidth = 0; ///< pixels, a power of two
  uint32_t m_nBlockHeight = 0;
  int32_t m_nMaxGain = 0; ///< a factor, not scaled
  bool m_bReady = false;
  std::unique_ptr<uint16_t[]> m_pCoefficient; ///< the table of the last calculation
};
