/// \file
/// Vignetting gains of mono images.
#pragma once

#include <cstdint>

#include "pluginobject/shadingcorrection/imagecalc/ivignettingcorrection.h"
#include "pluginobject/shadingcorrection/imagecalc/meangrid.h"
#include "pluginobject/shadingcorrection/imagecalc/vignettingsteps.h"

/// Computes one gain for each point of the grid. The name, for gray, keeps its spelling.
class CVCGary : public IVignettingCorrection {
public:
  CVCGary() noexcept;
  ~CVCGary() override;

  int32_t CalcCoefficient(const void *pImage, uint32_t nWidth, uint32_t nHeight, int32_t nBitDepth,
                          const uint16_t **ppTable, uint64_t *pnColumns, uint64_t *pnRows) noexcept override;

protected:
  friend class CVignettingSteps<CVCGary>;

  /// \param stSize out: the grid's, rounded up to even numbers; zero after a failure
  virtual int32_t Calc16Bit(const SFrame16 &stFrame, SGridSize &stSize);
  virtual int32_t Calc8Bit(const SFrame8 &stFrame, SGridSize &stSize);
  /// Added pixels repeat the last ones.
  virtual int32_t PadImage16(const SFrame16 &stFrame, SPadded16 &stPadded);
  virtual int32_t PadImage8(const SFrame8 &stFrame, SPadded8 &stPadded);
  /// One plane.
  virtual int32_t CalcBlockGrid16(const SPadded16 &stPadded, SMeanGrid &stGrid);
  virtual int32_t CalcBlockGrid8(const SPadded8 &stPadded, SMeanGrid &stGrid);
  virtual int32_t ConvertGrid(SMeanGrid &stGrid, SGridSize &stSize);
  /// The gains, not scaled, take the place of the means.
  /// \param pGains one of each point, row by row
  virtual void CalcGains(SMeanGrid &stGrid, uint16_t *pGains);
  /// \param stSize in: the grid's; out: rounded up to even numbers
  virtual int32_t PackQuads(const uint16_t *pGains, SGridSize &stSize);

private:
  template <typename TPixel>
  int32_t __MeasureGrey(const SPaddedImage<TPixel> &stPadded, SMeanGrid &stGrid) const;
};
