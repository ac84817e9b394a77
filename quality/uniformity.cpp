#include "quality/uniformity.h"

#include <algorithm>
#include <cmath>

#include "quality/blockmeans.h"
#include "quality/noise.h"

namespace ffc::quality {

using genapi::EColorLayout;

namespace {

struct SSpatial {
  double dMean = 0;     ///< DN
  double dVariance = 0; ///< DN^2, of the noise-free mean image; may be slightly negative
  double dPixels = 0;
};

/// Sum over the plane of the squared distance of each pixel's sum from the mean sum.
double SumSquaredDistances(const CFrameStack &stStack, const SColorPlane &stPlane, double dMeanSum)
{
  double dTotal = 0;
  for (uint32_t nLine = 0; nLine < stStack.GetHeight(); ++nLine) {
    const uint32_t *pSums = stStack.GetSums(nLine);
    double dLine = 0;
    VisitPlaneLine(stPlane, stStack.GetWidth(), nLine, [&](uint32_t nColumn) {
      const double dDistance = static_cast<double>(pSums[nColumn]) - dMeanSum;
      dLine += dDistance * dDistance;
    });
    dTotal += dLine;
  }
  return dTotal;
}

SSpatial MeasureSpatial(const CFrameStack &stStack, const SColorPlane &stPlane)
{
  uint64_t nSum = 0;
  uint64_t nPixels = 0;
  for (uint32_t nLine = 0; nLine < stStack.GetHeight(); ++nLine) {
    const uint32_t *pSums = stStack.GetSums(nLine);
    VisitPlaneLine(stPlane, stStack.GetWidth(), nLine, [&](uint32_t nColumn) {
      nSum += pSums[nColumn];
      ++nPixels;
    });
  }
  if (nPixels == 0) {
    return {};
  }
  const double dPixels = static_cast<double>(nPixels);
  const double dFrames = static_cast<double>(stStack.GetFrameCount());
  const double dMeanSum = static_cast<double>(nSum) / dPixels;
  const double dMeasured = SumSquaredDistances(stStack, stPlane, dMeanSum) / (dPixels * dFrames * dFrames);
  const double dTemporal = SumTemporalVariances(stStack, stPlane) / dPixels;
  return {dMeanSum / dFrames, dMeasured - dTemporal / dFrames, dPixels};
}

double GetShadingPercent(const SBlockMeans &stMeans)
{
  const auto [itMin, itMax] = std::minmax_element(stMeans.listMeans.begin(), stMeans.listMeans.end());
  double dSum = 0;
  for (const double dMean : stMeans.listMeans) {
    dSum += dMean;
  }
  const double dMean = dSum / static_cast<double>(stMeans.listMeans.size());
  return dMean > 0 ? 100.0 * (*itMax - *itMin) / dMean : 0;
}

/// \param pDark null: the dark level is not known
double GetCornerToCentre(const SBlockMeans &stBright, const SBlockMeans *pDark)
{
  const auto Signal = [&](uint32_t nColumn, uint32_t nLine) {
    return stBright.At(nColumn, nLine) - (pDark == nullptr ? 0 : pDark->At(nColumn, nLine));
  };
  const uint32_t nRight = stBright.nColumns - 1;
  const uint32_t nBottom = stBright.nLines - 1;
  const double dCorners = (Signal(0, 0) + Signal(nRight, 0) + Signal(0, nBottom) + Signal(nRight, nBottom)) / 4;
  const double dCentre = Signal(stBright.nColumns / 2, stBright.nLines / 2);
  return dCentre > 0 ? dCorners / dCentre : 0;
}

SUniformityFigures MeasurePlane(const CFrameStack &stBright, const CFrameStack &stDark, const SColorPlane &stPlane)
{
  const SSpatial stLight = MeasureSpatial(stBright, stPlane);
  const SBlockMeans stLightBlocks = GetBlockMeans(stBright, stPlane);
  const double dSamples = stLight.dPixels * static_cast<double>(stBright.GetFrameCount());

  SUniformityFigures stFigures;
  stFigures.strName = stPlane.strName;
  stFigures.dShadingPercent = GetShadingPercent(stLightBlocks);
  stFigures.dMeanGray = stLight.dMean;
  stFigures.dClippedPercent =
    dSamples > 0 ? 100.0 * static_cast<double>(stBright.GetClippedCount(stPlane)) / dSamples : 0;
  if (stDark.GetFrameCount() == 0) {
    stFigures.dCornerToCentre = GetCornerToCentre(stLightBlocks, nullptr);
    return stFigures;
  }
  const SSpatial stNone = MeasureSpatial(stDark, stPlane);
  const SBlockMeans stDarkBlocks = GetBlockMeans(stDark, stPlane);
  const double dSignal = stLight.dMean - stNone.dMean;
  const double dResponse = std::sqrt(std::max(0.0, stLight.dVariance - stNone.dVariance));
  stFigures.dCornerToCentre = GetCornerToCentre(stLightBlocks, &stDarkBlocks);
  stFigures.dPrnuPercent = dSignal > 0 ? 100.0 * dResponse / dSignal : 0;
  stFigures.dDsnuDn = std::sqrt(std::max(0.0, stNone.dVariance));
  return stFigures;
}

SUniformityFigures TakeWorst(const std::vector<SUniformityFigures> &listPlanes)
{
  SUniformityFigures stWorst = listPlanes.front();
  for (const SUniformityFigures &stPlane : listPlanes) {
    stWorst.dShadingPercent = std::max(stWorst.dShadingPercent, stPlane.dShadingPercent);
    stWorst.dPrnuPercent = std::max(stWorst.dPrnuPercent, stPlane.dPrnuPercent);
    stWorst.dDsnuDn = std::max(stWorst.dDsnuDn, stPlane.dDsnuDn);
    if (std::abs(stPlane.dCornerToCentre - 1) > std::abs(stWorst.dCornerToCentre - 1)) {
      stWorst.dCornerToCentre = stPlane.dCornerToCentre;
    }
  }
  return stWorst;
}

bool CanMeasure(const CFrameStack &stBright, const CFrameStack &stDark)
{
  const bool bAlike = stBright.GetWidth() == stDark.GetWidth() && stBright.GetHeight() == stDark.GetHeight() &&
                      stBright.GetBitDepth() == stDark.GetBitDepth();
  return stBright.GetFrameCount() > 0 && (stDark.GetFrameCount() == 0 || bAlike);
}

} // namespace

double MeasureShading(const CFrameStack &stBright, EColorLayout eLayout)
{
  double dShading = 0;
  if (stBright.GetFrameCount() > 0) {
    for (const SColorPlane &stPlane : GetColorPlanes(eLayout)) {
      dShading = std::max(dShading, GetShadingPercent(GetBlockMeans(stBright, stPlane)));
    }
  }
  return dShading;
}

SWorstParts TakeWorst(const std::vector<SNonuniformity> &listFigures)
{
  SWorstParts stWorst;
  const auto fnTake = [](SNonuniformityParts &stParts, const SNonuniformityParts &stOther) {
    stParts.dTotal = std::max(stParts.dTotal, stOther.dTotal);
    stParts.dRow = std::max(stParts.dRow, stOther.dRow);
    stParts.dColumn = std::max(stParts.dColumn, stOther.dColumn);
    stParts.dPixel = std::max(stParts.dPixel, stOther.dPixel);
  };
  for (const SNonuniformity &stFigures : listFigures) {
    fnTake(stWorst.stPrnu, stFigures.stPrnu);
    fnTake(stWorst.stDsnu, stFigures.stDsnu);
  }
  return stWorst;
}

SUniformity MeasureUniformity(const CFrameStack &stBright, const CFrameStack &stDark, EColorLayout eLayout)
{
  SUniformity stResult;
  if (!CanMeasure(stBright, stDark)) {
    return stResult;
  }
  for (const SColorPlane &stPlane : GetColorPlanes(eLayout)) {
    stResult.listPlanes.push_back(MeasurePlane(stBright, stDark, stPlane));
  }
  stResult.stOverall = TakeWorst(stResult.listPlanes);
  if (eLayout != EColorLayout::Mono) {
    const double dSamples = static_cast<double>(stBright.GetWidth()) * stBright.GetHeight() * stBright.GetFrameCount();
    const SColorPlane stWhole = GetWholeImagePlane();
    stResult.stOverall.strName = "Overall";
    stResult.stOverall.dMeanGray = MeasureSpatial(stBright, stWhole).dMean;
    stResult.stOverall.dClippedPercent = 100.0 * static_cast<double>(stBright.GetClippedCount(stWhole)) / dSamples;
  }
  stResult.bWithoutDark = stDark.GetFrameCount() == 0;
  if (!stResult.bWithoutDark) {
    stResult.listPlain = MeasureNonuniformity(stBright, stDark, eLayout, false);
    stResult.listHighPass = MeasureNonuniformity(stBright, stDark, eLayout, true);
  }
  return stResult;
}

} // namespace ffc::quality
