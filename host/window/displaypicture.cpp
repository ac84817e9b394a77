#include "host/window/displaypicture.h"

#include <cmath>
#include <cstring>

#include "host/window/computedpicture.h"

namespace ffc::host {

using genapi::EColor;
using genapi::EColorLayout;
using genapi::FindSensorFormat;
using genapi::GetPixelColor;
using genapi::SSensorFormat;

namespace {

template <class TSample>
const TSample *GetLine(const SFrameCopy &stFrame, int nLine)
{
  return reinterpret_cast<const TSample *>(stFrame.listBytes.data()) +
         static_cast<std::ptrdiff_t>(nLine) * static_cast<int>(stFrame.nWidth);
}

/// Places beyond an edge are mirrored at it, so that colours stay in step.
int Mirror(int nPlace, int nSize)
{
  return nPlace < 0 ? -nPlace : nPlace >= nSize ? 2 * (nSize - 1) - nPlace : nPlace;
}

template <class TSample>
QImage MakeGrey(const SFrameCopy &stFrame, const uint8_t *pTable)
{
  QImage imgGrey(static_cast<int>(stFrame.nWidth), static_cast<int>(stFrame.nHeight), QImage::Format_Grayscale8);
  for (int nY = 0; nY < imgGrey.height(); ++nY) {
    const TSample *pSource = GetLine<TSample>(stFrame, nY);
    uchar *pLine = imgGrey.scanLine(nY);
    for (int nX = 0; nX < imgGrey.width(); ++nX) {
      pLine[nX] = pTable[pSource[nX]];
    }
  }
  return imgGrey;
}

/// One line of a mosaic in colour: each pixel's own sample, and the means of its neighbours that have the other two
/// colours. One of this line's two colours is green; the other is red in a red line, else blue.
template <class TSample>
void InterpolateLine(const SFrameCopy &stFrame, EColorLayout eLayout, const uint8_t *pTable, int nY, QRgb *pTarget)
{
  const int nWidth = static_cast<int>(stFrame.nWidth);
  const TSample *pAbove = GetLine<TSample>(stFrame, Mirror(nY - 1, static_cast<int>(stFrame.nHeight)));
  const TSample *pOwn = GetLine<TSample>(stFrame, nY);
  const TSample *pBelow = GetLine<TSample>(stFrame, Mirror(nY + 1, static_cast<int>(stFrame.nHeight)));
  const int nGreenParity = GetPixelColor(eLayout, 0, static_cast<uint32_t>(nY)) == EColor::Green ? 0 : 1;
  const bool bRedLine = GetPixelColor(eLayout, nGreenParity == 0 ? 1 : 0, static_cast<uint32_t>(nY)) == EColor::Red;
  for (int nX = 0; nX < nWidth; ++nX) {
    const int nLeft = Mirror(nX - 1, nWidth);
    const int nRight = Mirror(nX + 1, nWidth);
    const int nBeside = (pOwn[nLeft] + pOwn[nRight] + 1) / 2;
    const int nAboveBelow = (pAbove[nX] + pBelow[nX] + 1) / 2;
    int nLineColor = pOwn[nX]; // red in a red line
    int nGreen = (nBeside + nAboveBelow + 1) / 2;
    int nOther = (pAbove[nLeft] + pAbove[nRight] + pBelow[nLeft] + pBelow[nRight] + 2) / 4;
    if ((nX & 1) == nGreenParity) {
      nLineColor = nBeside;
      nGreen = pOwn[nX];
      nOther = nAboveBelow;
    }
    pTarget[nX] = bRedLine ? qRgb(pTable[nLineColor], pTable[nGreen], pTable[nOther])
                           : qRgb(pTable[nOther], pTable[nGreen], pTable[nLineColor]);
  }
}

template <class TSample>
QImage MakeColor(const SFrameCopy &stFrame, EColorLayout eLayout, const uint8_t *pTable)
{
  QImage imgColor(static_cast<int>(stFrame.nWidth), static_cast<int>(stFrame.nHeight), QImage::Format_RGB32);
  for (int nY = 0; nY < imgColor.height(); ++nY) {
    InterpolateLine<TSample>(stFrame, eLayout, pTable, nY, reinterpret_cast<QRgb *>(imgColor.scanLine(nY)));
  }
  return imgColor;
}

template <class TSample>
void MarkOverexposed(const SFrameCopy &stFrame, uint32_t nLeast, QImage &imgPicture)
{
  imgPicture = imgPicture.convertToFormat(QImage::Format_RGB32);
  for (int nY = 0; nY < imgPicture.height(); ++nY) {
    const TSample *pSource = GetLine<TSample>(stFrame, nY);
    QRgb *pLine = reinterpret_cast<QRgb *>(imgPicture.scanLine(nY));
    for (int nX = 0; nX < imgPicture.width(); ++nX) {
      pLine[nX] = pSource[nX] >= nLeast ? OVEREXPOSED : pLine[nX];
    }
  }
}

template <class TSample>
QImage MakePicture(const SFrameCopy &stFrame, const SSensorFormat &stFormat, const SDisplayOptions &stOptions)
{
  const SGreyRange stRange = stOptions.stRange.value_or(GetFullRange(stFormat.GetMaxValue()));
  const std::vector<uint8_t> listTable = MakeGreyTable(stRange, 1U << (8 * sizeof(TSample)));
  const bool bColor =
    stOptions.bColor && stFormat.eLayout != EColorLayout::Mono && stFrame.nWidth >= 2 && stFrame.nHeight >= 2;
  QImage imgPicture = bColor ? MakeColor<TSample>(stFrame, stFormat.eLayout, listTable.data())
                             : MakeGrey<TSample>(stFrame, listTable.data());
  if (stOptions.bMarkOverexposed) {
    MarkOverexposed<TSample>(stFrame, GetOverexposedGrey(stFormat, stOptions.dThreshold), imgPicture);
  }
  return imgPicture;
}

} // namespace

const SSensorFormat *GetShownFormat(const SFrameCopy &stFrame)
{
  const SSensorFormat *pFormat =
    genapi::IsCorrectable(stFrame.nPixelFormat) ? genapi::FindPixelFormat(stFrame.nPixelFormat) : nullptr;
  if (pFormat == nullptr || pFormat->ePacking != genapi::EPacking::None || stFrame.nWidth == 0 ||
      stFrame.nHeight == 0) {
    return nullptr;
  }
  const std::size_t nSize = static_cast<std::size_t>(stFrame.nWidth) * stFrame.nHeight * pFormat->GetBytesPerPixel();
  return stFrame.listBytes.size() == nSize ? pFormat : nullptr;
}

uint32_t GetOverexposedGrey(const genapi::SPixelFormat &stFormat, double dThreshold)
{
  return static_cast<uint32_t>(std::ceil(stFormat.GetMaxValue() * dThreshold / 100.0));
}

QImage MakeDisplayPicture(const SFrameCopy &stFrame, const SDisplayOptions &stOptions)
{
  const SSensorFormat *pFormat = GetShownFormat(stFrame);
  if (pFormat == nullptr) {
    return MakeComputedPicture(stFrame);
  }
  return pFormat->GetBytesPerPixel() > 1 ? MakePicture<uint16_t>(stFrame, *pFormat, stOptions)
                                         : MakePicture<uint8_t>(stFrame, *pFormat, stOptions);
}

uint32_t GetSample(const SFrameCopy &stFrame, const SSensorFormat &stFormat, uint32_t nColumn, uint32_t nLine)
{
  const std::size_t nPlace = static_cast<std::size_t>(nLine) * stFrame.nWidth + nColumn;
  if (stFormat.GetBytesPerPixel() == 1) {
    return stFrame.listBytes[nPlace];
  }
  uint16_t nSample = 0;
  std::memcpy(&nSample, stFrame.listBytes.data() + nPlace * sizeof nSample, sizeof nSample);
  return nSample;
}

QString GetPixelText(const SFrameCopy &stFrame, int nColumn, int nLine)
{
  const SSensorFormat *pFormat = GetShownFormat(stFrame);
  if (pFormat == nullptr || nColumn < 0 || nLine < 0 || static_cast<uint32_t>(nColumn) >= stFrame.nWidth ||
      static_cast<uint32_t>(nLine) >= stFrame.nHeight) {
    return {};
  }
  static const char *const ALL_COLORS[] = {"R  ", "G  ", "B  "};
  const bool bMosaic = pFormat->eLayout != EColorLayout::Mono;
  const EColor eColor = GetPixelColor(pFormat->eLayout, static_cast<uint32_t>(nColumn), static_cast<uint32_t>(nLine));
  const uint32_t nSample = GetSample(stFrame, *pFormat, static_cast<uint32_t>(nColumn), static_cast<uint32_t>(nLine));
  return QStringLiteral("x %1  y %2  %3%4 DN  %5 %")
    .arg(nColumn)
    .arg(nLine)
    .arg(QLatin1String(bMosaic ? ALL_COLORS[static_cast<int>(eColor)] : ""))
    .arg(nSample)
    .arg(100.0 * nSample / pFormat->GetMaxValue(), 0, 'f', 1);
}

} // namespace ffc::host
