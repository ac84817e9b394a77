#include "quality/pictures.h"

#include <algorithm>
#include <cmath>

#include "quality/blockmeans.h"

namespace ffc::quality {

using genapi::EColorLayout;

namespace {

int ToByte(double dValue)
{
  return static_cast<int>(std::lround(std::clamp(dValue, 0.0, 255.0)));
}

/// Mean of a plane in the cell at an even column and line.
double GetCellMean(const CFrameStack &stStack, const SColorPlane &stPlane, uint32_t nColumn, uint32_t nLine)
{
  double dSum = 0;
  int nCount = 0;
  for (std::size_t nSite = 0; nSite < CELL_SITES; ++nSite) {
    if (stPlane.abSites[nSite]) {
      dSum += stStack.GetMean(nColumn + static_cast<uint32_t>(nSite & 1U), nLine + static_cast<uint32_t>(nSite >> 1U));
      ++nCount;
    }
  }
  return dSum / nCount;
}

QImage MakeGreyView(const CFrameStack &stStack)
{
  QImage imgView(static_cast<int>(stStack.GetWidth()), static_cast<int>(stStack.GetHeight()),
                 QImage::Format_Grayscale8);
  const double dScale = 255.0 / static_cast<double>(stStack.GetMaximum());
  for (int nLine = 0; nLine < imgView.height(); ++nLine) {
    uchar *pLine = imgView.scanLine(nLine);
    for (int nColumn = 0; nColumn < imgView.width(); ++nColumn) {
      pLine[nColumn] = static_cast<uchar>(
        ToByte(stStack.GetMean(static_cast<uint32_t>(nColumn), static_cast<uint32_t>(nLine)) * dScale));
    }
  }
  return imgView;
}

QImage MakeColorView(const CFrameStack &stStack, EColorLayout eLayout)
{
  QImage imgView(static_cast<int>(stStack.GetWidth() / 2), static_cast<int>(stStack.GetHeight() / 2),
                 QImage::Format_RGB32);
  const std::vector<SColorPlane> listPlanes = GetColorPlanes(eLayout);
  const double dScale = 255.0 / static_cast<double>(stStack.GetMaximum());
  for (int nLine = 0; nLine < imgView.height(); ++nLine) {
    QRgb *pLine = reinterpret_cast<QRgb *>(imgView.scanLine(nLine));
    for (int nColumn = 0; nColumn < imgView.width(); ++nColumn) {
      const auto Channel = [&](std::size_t nPlane) {
        return ToByte(dScale * GetCellMean(stStack, listPlanes[nPlane], static_cast<uint32_t>(nColumn) * 2,
                                           static_cast<uint32_t>(nLine) * 2));
      };
      pLine[nColumn] = qRgb(Channel(0), Channel(1), Channel(2));
    }
  }
  return imgView;
}

double GetAverage(const SBlockMeans &stMeans)
{
  double dSum = 0;
  for (const double dMean : stMeans.listMeans) {
    dSum += dMean;
  }
  return dSum / static_cast<double>(stMeans.listMeans.size());
}

} // namespace

QImage MakeViewPicture(const CFrameStack &stStack, EColorLayout eLayout)
{
  const bool bWholeCell = stStack.GetWidth() >= 2 && stStack.GetHeight() >= 2;
  return eLayout == EColorLayout::Mono || !bWholeCell ? MakeGreyView(stStack) : MakeColorView(stStack, eLayout);
}

double GetContrastRange(const CFrameStack &stStack, EColorLayout eLayout)
{
  double dRange = 0.001;
  for (const SColorPlane &stPlane : GetColorPlanes(eLayout)) {
    const SBlockMeans stMeans = GetBlockMeans(stStack, stPlane);
    const double dAverage = GetAverage(stMeans);
    for (const double dMean : stMeans.listMeans) {
      dRange = dAverage > 0 ? std::max(dRange, std::abs(dMean / dAverage - 1)) : dRange;
    }
  }
  return dRange;
}

QImage MakeContrastPicture(const CFrameStack &stStack, EColorLayout eLayout, double dRange)
{
  QImage imgContrast(static_cast<int>(stStack.GetWidth()), static_cast<int>(stStack.GetHeight()),
                     QImage::Format_Grayscale8);
  for (const SColorPlane &stPlane : GetColorPlanes(eLayout)) {
    const double dAverage = std::max(GetAverage(GetBlockMeans(stStack, stPlane)), 1e-9);
    for (int nLine = 0; nLine < imgContrast.height(); ++nLine) {
      uchar *pLine = imgContrast.scanLine(nLine);
      VisitPlaneLine(stPlane, stStack.GetWidth(), static_cast<uint32_t>(nLine), [&](uint32_t nColumn) {
        const double dDeviation = stStack.GetMean(nColumn, static_cast<uint32_t>(nLine)) / dAverage - 1;
        pLine[nColumn] = static_cast<uchar>(ToByte(127.5 + 127.5 * dDeviation / dRange));
      });
    }
  }
  return imgContrast;
}

SPictures MakePictures(const CFrameStack &stBefore, const CFrameStack &stAfter, EColorLayout eLayout)
{
  const double dRange = GetContrastRange(stBefore, eLayout);
  if (stAfter.GetFrameCount() == 0) {
    return {MakeViewPicture(stBefore, eLayout), {}, MakeContrastPicture(stBefore, eLayout, dRange), {}};
  }
  return {MakeViewPicture(stBefore, eLayout), MakeViewPicture(stAfter, eLayout),
          MakeContrastPicture(stBefore, eLayout, dRange), MakeContrastPicture(stAfter, eLayout, dRange)};
}

} // namespace ffc::quality
