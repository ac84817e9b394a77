/// \file
/// Flat-field coefficients of a device.
#pragma once

#include <cstdint>
#include <memory>

#include "pluginobject/shadingcorrection/imagecalc/blockparam.h"
#include "pluginobject/shadingcorrection/imagecalc/calcstatus.h"

/// Computes the flat-field coefficient table that a camera applies from an averaged bright frame and, when
/// wanted, an averaged dark frame.
///
/// Each block of the image gets one element of 8 bytes, four little-endian 16-bit words: the dark level (0
/// without a dark frame), then the gains of B, G and R, all alike for a mono image. A gain is 65280 divided by
/// the block's signal, truncated: 256 for a signal of 255. A signal below 1 counts as 1. The grid of elements
/// is framed by a ring of copies of its outer elements; the table is the framed grid, row by row.
///
/// Frames have 8 bits per pixel and are tightly packed. All buffers stay the caller's. Every operation returns
/// a status of calcstatus.h, the first failing test deciding; none throws. An object serves one thread at a time.
class CGetSCCoefficient {
public:
  CGetSCCoefficient() noexcept;
  virtual ~CGetSCCoefficient();

  /// Accepts a block grid. After a failure there is none.
  /// \return the status of CImageCalc::CheckBlockParam
  [[nodiscard]] int32_t SetBlockParam(BLOCK_PARAM stParam) noexcept;

  /// The size of the table in bytes.
  /// \return -101 for a missing output, -107 without a block grid
  [[nodiscard]] int32_t GetCoefficientSize(int32_t *pnSize) const noexcept;

  /// Fills the table from a bright and a dark frame. The dark level of a block is the truncated mean of all its
  /// dark pixels; its signal is what a colour's bright mean exceeds it by.
  /// \param pnSize in: bytes of the caller's table; out: bytes that the table takes
  /// \return -101 for a missing argument, -102 for a bit depth other than 8, -107 without a block grid, -101
  ///         for a table that is too small (nothing is written in these cases); -103 when there is no memory
  [[nodiscard]] int32_t CalcWithDark(const void *pBright, const void *pDark, int32_t nBitDepth, void *pTable,
                                     int32_t *pnSize) noexcept;

  /// Fills the table from a bright frame alone: the signal is the bright mean. Otherwise as CalcWithDark.
  [[nodiscard]] int32_t CalcWithoutDark(const void *pBright, int32_t nBitDepth, void *pTable, int32_t *pnSize) noexcept;

private:
  [[nodiscard]] int32_t __Calc(const void *pBright, const void *pDark, int32_t nBitDepth, void *pTable,
                               int32_t *pnSize);
  bool __AllocateMeans(bool bDark);
  [[nodiscard]] int32_t __CalcMeans(const void *pBright, const void *pDark, int32_t nBitDepth);
  void __WriteElements(uint8_t *pTable) const;

  BLOCK_PARAM m_stParam;
  uint32_t m_nBlockCols = 0;
  uint32_t m_nBlockRows = 0;
  /// The grid and its ring.
  uint32_t m_nTableCols = 0;
  uint32_t m_nTableRows = 0;
  int32_t m_nTableSize = 0; ///< bytes
  /// Means of the blocks; alive during one calculation only. The dark ones only when there is a dark frame.
  std::unique_ptr<double[]> m_pMeans;
  std::unique_ptr<double[]> m_pDarkMeans;
  bool m_bInit = false;
};
