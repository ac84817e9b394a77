#include "tests/pluginobject/shadingcorrection/imagecalc/vignetting/vignettingtwin.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "tests/pluginobject/shadingcorrection/imagecalc/slowtwin.h"

using namespace ffc::test;

namespace {

using TPlane = std::vector<std::vector<double>>; // by row, then by column

// The coordinate within the image that stands for one beyond its end.
int32_t FindSource(int32_t nPosition, int32_t nSide, bool bBayer)
{
  while (nPosition >= nSide) {
    nPosition -= bBayer ? 2 : 1;
  }
  return nPosition;
}

bool HasColour(int32_t nBayerType, int32_t nX, int32_t nY, char chColour)
{
  static const std::string CELLS[] = {"MMMM", "RGGB", "GBRG", "GRBG", "BGGR"};
  return CELLS[nBayerType][static_cast<std::size_t>(nX % 2 + nY % 2 * 2)] == chColour;
}

double MeasureSlowly(const CTestImage &padded, const SVignettingCase &stCase, int32_t nColumn, int32_t nRow,
                     char chColour)
{
  double dSum = 0.0;
  int32_t nCount = 0;
  for (int32_t y = nRow * stCase.nBlockHeight; y < (nRow + 1) * stCase.nBlockHeight; ++y) {
    for (int32_t x = nColumn * stCase.nBlockWidth; x < (nColumn + 1) * stCase.nBlockWidth; ++x) {
      if (HasColour(stCase.nBayerType, x, y, chColour)) {
        dSum += padded.Get(x, y);
        ++nCount;
      }
    }
  }
  return dSum / nCount;
}

double Extend(double dInner, double dNext, std::size_t nSide)
{
  return std::max(nSide > 4 ? 2.0 * dInner - dNext : dInner, 0.0);
}

void FillRingSlowly(TPlane &plane)
{
  const std::size_t nRows = plane.size();
  const std::size_t nColumns = plane[0].size();
  for (std::size_t x = 1; x <= nColumns - 2; ++x) {
    plane[0][x] = Extend(plane[1][x], plane[2][x], nRows);
  }
  for (std::size_t x = 1; x <= nColumns - 2; ++x) {
    plane[nRows - 1][x] = Extend(plane[nRows - 2][x], plane[nRows - 3][x], nRows);
  }
  for (std::size_t y = 0; y < nRows; ++y) {
    plane[y][0] = Extend(plane[y][1], plane[y][2], nColumns);
  }
  for (std::size_t y = 0; y < nRows; ++y) {
    plane[y][nColumns - 1] = Extend(plane[y][nColumns - 2], plane[y][nColumns - 3], nColumns);
  }
}

int32_t ComputeGainSlowly(double dMean, double dMaximum, const SVignettingCase &stCase)
{
  const double dDivisor = dMean < 2.220446049250313e-16 ? 1.0 : dMean;
  const double dGain = std::min(dMaximum / dDivisor, static_cast<double>(stCase.nMaxGain));
  return static_cast<int32_t>(std::fmod(std::floor(dGain * std::exp2(stCase.nScaleBits) + 0.5), 65536.0));
}

// The gains of one colour, by row and column.
std::vector<std::vector<int32_t>> ComputeGainsSlowly(const CTestImage &padded, const SVignettingCase &stCase,
                                                     char chColour)
{
  const int32_t nColumns = padded.GetWidth() / stCase.nBlockWidth;
  const int32_t nRows = padded.GetHeight() / stCase.nBlockHeight;
  TPlane plane(static_cast<std::size_t>(nRows) + 2, std::vector<double>(static_cast<std::size_t>(nColumns) + 2));
  double dMaximum = 0.0;
  for (int32_t nRow = 0; nRow < nRows; ++nRow) {
    for (int32_t nColumn = 0; nColumn < nColumns; ++nColumn) {
      const double dMean = MeasureSlowly(padded, stCase, nColumn, nRow, chColour);
      plane[static_cast<std::size_t>(nRow) + 1][static_cast<std::size_t>(nColumn) + 1] = dMean;
      dMaximum = std::max(dMaximum, dMean);
    }
  }
  FillRingSlowly(plane);
  std::vector<std::vector<int32_t>> listGains;
  for (const std::vector<double> &listRow : plane) {
    listGains.emplace_back();
    for (const double dMean : listRow) {
      listGains.back().push_back(ComputeGainSlowly(dMean, dMaximum, stCase));
    }
  }
  return listGains;
}

} // namespace

CTestImage PadSlowly(const CTestImage &image, const SVignettingCase &stCase)
{
  const int32_t nWidth = CountBlocksSlowly(image.GetWidth(), stCase.nBlockWidth) * stCase.nBlockWidth;
  const int32_t nHeight = CountBlocksSlowly(image.GetHeight(), stCase.nBlockHeight) * stCase.nBlockHeight;
  const bool bBayer = stCase.nBayerType != 0;
  CTestImage padded(nWidth, nHeight, image.GetBitDepth());
  for (int32_t y = 0; y < nHeight; ++y) {
    for (int32_t x = 0; x < nWidth; ++x) {
      padded.Set(x, y, image.Get(FindSource(x, image.GetWidth(), bBayer), FindSource(y, image.GetHeight(), bBayer)));
    }
  }
  return padded;
}

SVignettingTwinTable ComputeVignettingSlowly(const CTestImage &image, const SVignettingCase &stCase)
{
  const CTestImage padded = PadSlowly(image, stCase);
  std::vector<std::vector<std::vector<int32_t>>> listColours;
  for (const char chColour : std::string(stCase.nBayerType == 0 ? "M" : "RGB")) {
    listColours.push_back(ComputeGainsSlowly(padded, stCase, chColour));
  }
  const auto &listPoints = listColours[0];
  SVignettingTwinTable stTable = {
    static_cast<int32_t>(listPoints[0].size() + 1) / 2 * 2, static_cast<int32_t>(listPoints.size() + 1) / 2 * 2, {}};
  for (int32_t nQuad = 0; nQuad < stTable.nColumns * stTable.nRows / 4; ++nQuad) {
    for (int32_t nPoint = 0; nPoint < 4; ++nPoint) {
      const auto x = static_cast<std::size_t>(nQuad % (stTable.nColumns / 2) * 2 + nPoint % 2);
      const auto y = static_cast<std::size_t>(nQuad / (stTable.nColumns / 2) * 2 + nPoint / 2);
      for (const auto &listGains : listColours) {
        stTable.listGains.push_back(y < listGains.size() && x < listGains[0].size() ? listGains[y][x] : 0);
      }
    }
  }
  return stTable;
}
