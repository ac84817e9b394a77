#include "host/window/stretch.h"

#include <algorithm>
#include <cmath>

#include <QCoreApplication>

#include "host/window/displaypicture.h"

namespace ffc::host {
namespace {

constexpr double MIN_SPAN = 4;            ///< DN: a cap before the lens would be all noise else
constexpr double SHARE = 0.001;           ///< of the samples, left out at either end
constexpr uint32_t MAX_SAMPLES = 500'000; ///< that are looked at
constexpr uint32_t SAMPLE_VALUES = 1U << 16;

/// Lines are taken in pairs, so that all colours of a mosaic are there.
std::vector<uint32_t> CountGreys(const SFrameCopy &stFrame, const genapi::SPixelFormat &stFormat)
{
  std::vector<uint32_t> listCounts(SAMPLE_VALUES, 0);
  const uint64_t nPixels = uint64_t{stFrame.nWidth} * stFrame.nHeight;
  const uint32_t nStep = 2 * static_cast<uint32_t>(nPixels / MAX_SAMPLES + 1);
  for (uint32_t nLine = 0; nLine < stFrame.nHeight; ++nLine) {
    for (uint32_t nColumn = 0; nLine % nStep < 2 && nColumn < stFrame.nWidth; ++nColumn) {
      ++listCounts[GetSample(stFrame, stFormat, nColumn, nLine)];
    }
  }
  return listCounts;
}

/// The grey that a share of the samples, less than 1, lies below.
uint32_t FindGrey(const std::vector<uint32_t> &listCounts, double dShare)
{
  uint64_t nTotal = 0;
  for (const uint32_t nCount : listCounts) {
    nTotal += nCount;
  }
  const double dWanted = dShare * static_cast<double>(nTotal);
  uint32_t nGrey = 0;
  uint64_t nBelow = listCounts[nGrey];
  while (static_cast<double>(nBelow) <= dWanted) { // less than all of them are wanted
    nBelow += listCounts[++nGrey];
  }
  return nGrey;
}

QString Translate(const char *pText)
{
  return QCoreApplication::translate("Stretch", pText);
}

} // namespace

SGreyRange FindGreyRange(const SFrameCopy &stFrame)
{
  const genapi::SPixelFormat *pFormat = GetShownFormat(stFrame);
  if (pFormat == nullptr) {
    return {};
  }
  const std::vector<uint32_t> listCounts = CountGreys(stFrame, *pFormat);
  const double dMaximum = pFormat->GetMaxValue();
  SGreyRange stRange{std::min<double>(FindGrey(listCounts, SHARE), dMaximum - MIN_SPAN),
                     std::min<double>(FindGrey(listCounts, 1 - SHARE), dMaximum)};
  stRange.dWhite = std::max(stRange.dWhite, stRange.dBlack + MIN_SPAN);
  return stRange;
}

SGreyRange Unite(const SGreyRange &stFirst, const SGreyRange &stSecond)
{
  return {std::min(stFirst.dBlack, stSecond.dBlack), std::max(stFirst.dWhite, stSecond.dWhite)};
}

SGreyRange GetFullRange(uint32_t nMaximum)
{
  return {0, static_cast<double>(nMaximum)};
}

std::vector<uint8_t> MakeGreyTable(const SGreyRange &stRange, uint32_t nSamples)
{
  std::vector<uint8_t> listTable(nSamples);
  // Equal steps, of which the last begins at the white: the full range shows each sample's highest 8 bits.
  const double dScale = 256.0 / std::max(1.0, stRange.dWhite - stRange.dBlack + 1);
  for (uint32_t nSample = 0; nSample < nSamples; ++nSample) {
    listTable[nSample] = static_cast<uint8_t>(std::clamp((nSample - stRange.dBlack) * dScale, 0.0, 255.0));
  }
  return listTable;
}

QString DescribeRange(const SGreyRange &stRange)
{
  return Translate("stretched: black %1 DN, white %2 DN").arg(stRange.dBlack, 0, 'f', 0).arg(stRange.dWhite, 0, 'f', 0);
}

} // namespace ffc::host
