/// \file
/// Vignetting gains of mono images.
#pragma once

#include <cstdint>

#include "pluginobject/shadingcorrection/imagecalc/vignetting/ivignettingcorrection.h"
#include "pluginobject/shadingcorrection/imagecalc/vignetting/meangrid.h"
#include "pluginobject/shadingcorrection/imagecalc/vignetting/vignettingsteps.h"

/// Computes one gain for each point of the grid. The name, for gray, keeps its spelling.
class CVCGary : public IVignettingCorrection {
public:
  CVCGary() noexcept;
  ~CVCGary() override;

  [[nodiscard]] int32_t CalcCoefficient(const void *pImage, uint32_t nWidth, uint32_t nHeight, int32_t nBitDepth,
                                        const uint16_t **ppTable, uint64_t *pnColumns,
                                        uint64_t *pnRows) noexcept override;

protected:
  friend class ffc::imagecalc::CVignettingSteps<CVCGary>;

  /// \param stSize out: the grid's, rounded up to even numbers; zero after a failure
  virtual int32_t Calc16Bit(const ffc::imagecalc::SFrame16 &stFrame, ffc::imagecalc::SGridSize &stSize);
  virtual int32_t Calc8Bit(const ffc::imagecalc::SFrame8 &stFrame, ffc::imagecalc::SGridSize &stSize);
  /// Added pixels repeat the last ones.
  virtual int32_t PadImage16(const ffc::imagecalc::SFrame16 &stFrame, ffc::imagecalc::SPadded16 &stPadded);
  virtual int32_t PadImage8(const ffc::imagecalc::SFrame8 &stFrame, ffc::imagecalc::SPadded8 &stPadded);
  /// One plane.
  virtual int32_t CalcBlockGrid16(const ffc::imagecalc::SPadded16 &stPadded, ffc::imagecalc::SMeanGrid &stGrid);
  virtual int32_t CalcBlockGrid8(const ffc::imagecalc::SPadded8 &stPadded, ffc::imagecalc::SMeanGrid &stGrid);
  virtual int32_t ConvertGrid(ffc::imagecalc::SMeanGrid &stGrid, ffc::imagecalc::SGridSize &stSize);
  /// The gains, not scaled, take the place of the means.
  /// \param pGains one of each point, row by row
  virtual void CalcGains(ffc::imagecalc::SMeanGrid &stGrid, uint16_t *pGains);
  /// \param stSize in: the grid's; out: rounded up to even numbers
  virtual int32_t PackQuads(const uint16_t *pGains, ffc::imagecalc::SGridSize &stSize);

private:
  template <class TPixel>
  [[nodiscard]] int32_t __MeasureGrey(const ffc::imagecalc::SPaddedImage<TPixel> &stPadded,
                                      ffc::imagecalc::SMeanGrid &stGrid) const;
};
