/// \file
/// Vignetting gains of Bayer images.
#pragma once

#include <cstdint>

#include "pluginobject/shadingcorrection/imagecalc/vignetting/ivignettingcorrection.h"
#include "pluginobject/shadingcorrection/imagecalc/vignetting/meangrid.h"
#include "pluginobject/shadingcorrection/imagecalc/vignetting/vignettingsteps.h"

/// Computes three gains (R, G, B) for each point of the grid.
class CVCBayer : public IVignettingCorrection {
public:
  /// Of R G / G B cells.
  CVCBayer() noexcept;
  /// \param nBayerType 1 to 4, as in bayertype.h; with any other there are no means, and all gains are zero
  explicit CVCBayer(uint32_t nBayerType) noexcept;
  ~CVCBayer() override;

  [[nodiscard]] int32_t CalcCoefficient(const void *pImage, uint32_t nWidth, uint32_t nHeight, int32_t nBitDepth,
                                        const uint16_t **ppTable, uint64_t *pnColumns,
                                        uint64_t *pnRows) noexcept override;

protected:
  friend class ffc::imagecalc::CVignettingSteps<CVCBayer>;

  /// \param stSize out: the grid's, rounded up to even numbers; zero after a failure
  virtual int32_t Calc16Bit(const ffc::imagecalc::SFrame16 &stFrame, ffc::imagecalc::SGridSize &stSize);
  virtual int32_t Calc8Bit(const ffc::imagecalc::SFrame8 &stFrame, ffc::imagecalc::SGridSize &stSize);
  /// Added pixels carry on the layout of the cells.
  virtual int32_t PadImage16(const ffc::imagecalc::SFrame16 &stFrame, ffc::imagecalc::SPadded16 &stPadded);
  virtual int32_t PadImage8(const ffc::imagecalc::SFrame8 &stFrame, ffc::imagecalc::SPadded8 &stPadded);
  /// Three planes: R, G, B.
  virtual int32_t CalcBlockGrid16(const ffc::imagecalc::SPadded16 &stPadded, ffc::imagecalc::SMeanGrid &stGrid);
  virtual int32_t CalcBlockGrid8(const ffc::imagecalc::SPadded8 &stPadded, ffc::imagecalc::SMeanGrid &stGrid);
  virtual int32_t ConvertGrid(ffc::imagecalc::SMeanGrid &stGrid, ffc::imagecalc::SGridSize &stSize);
  /// \param pGains R, G and B of each point, row by row
  virtual void CalcGains(ffc::imagecalc::SMeanGrid &stGrid, uint16_t *pGains);
  virtual uint16_t CalcGain(double dMean, double dMaximum);
  /// \param stSize in: the grid's; out: rounded up to even numbers
  virtual int32_t PackQuads(const uint16_t *pGains, ffc::imagecalc::SGridSize &stSize);

private:
  template <class TPixel>
  [[nodiscard]] int32_t __MeasureColours(const ffc::imagecalc::SPaddedImage<TPixel> &stPadded,
                                         ffc::imagecalc::SMeanGrid &stGrid) const;

  uint32_t m_nBayerType = 1;
};
