#include "tests/quality/slownonuniformity.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <utility>

namespace {

double At(const SlowImage &image, int nRow, int nColumn)
{
  const int nRows = static_cast<int>(image.size());
  const int nColumns = static_cast<int>(image[0].size());
  while (nRow < 0 || nRow >= nRows) {
    nRow = nRow < 0 ? -1 - nRow : 2 * nRows - 1 - nRow;
  }
  while (nColumn < 0 || nColumn >= nColumns) {
    nColumn = nColumn < 0 ? -1 - nColumn : 2 * nColumns - 1 - nColumn;
  }
  return image[static_cast<std::size_t>(nRow)][static_cast<std::size_t>(nColumn)];
}

SlowImage Smooth(const SlowImage &image, const SlowImage &listWeights)
{
  const int nReach = static_cast<int>(listWeights.size()) / 2;
  SlowImage smooth = image;
  for (std::size_t nRow = 0; nRow < image.size(); ++nRow) {
    for (std::size_t nColumn = 0; nColumn < image[0].size(); ++nColumn) {
      double dSum = 0;
      double dWeights = 0;
      for (int nDown = -nReach; nDown <= nReach; ++nDown) {
        for (int nAcross = -nReach; nAcross <= nReach; ++nAcross) {
          const double dWeight =
            listWeights[static_cast<std::size_t>(nDown + nReach)][static_cast<std::size_t>(nAcross + nReach)];
          dSum += dWeight * At(image, static_cast<int>(nRow) + nDown, static_cast<int>(nColumn) + nAcross);
          dWeights += dWeight;
        }
      }
      smooth[nRow][nColumn] = dSum / dWeights;
    }
  }
  return smooth;
}

SlowImage Subtract(const SlowImage &image, const SlowImage &other)
{
  SlowImage result = image;
  for (std::size_t nRow = 0; nRow < image.size(); ++nRow) {
    for (std::size_t nColumn = 0; nColumn < image[0].size(); ++nColumn) {
      result[nRow][nColumn] -= other[nRow][nColumn];
    }
  }
  return result;
}

SlowImage MakeBox(std::size_t nSide)
{
  return SlowImage(nSide, std::vector<double>(nSide, 1.0));
}

double Average(const std::vector<double> &listValues)
{
  double dSum = 0;
  for (const double dValue : listValues) {
    dSum += dValue;
  }
  return dSum / static_cast<double>(listValues.size());
}

double AverageSquareDistance(const std::vector<double> &listValues, double dFrom)
{
  double dSum = 0;
  for (const double dValue : listValues) {
    dSum += std::pow(dValue - dFrom, 2);
  }
  return dSum / static_cast<double>(listValues.size());
}

std::vector<double> AverageRows(const SlowImage &image)
{
  std::vector<double> listAverages;
  for (const std::vector<double> &listRow : image) {
    listAverages.push_back(Average(listRow));
  }
  return listAverages;
}

std::vector<double> ListAll(const SlowImage &image)
{
  std::vector<double> listAll;
  for (const std::vector<double> &listRow : image) {
    listAll.insert(listAll.end(), listRow.begin(), listRow.end());
  }
  return listAll;
}

/// By elimination. Columns 0 to 2 are the matrix, column 3 the right side.
std::array<double, 3> Solve(std::array<std::array<double, 4>, 3> aadRows)
{
  for (std::size_t nPivot = 0; nPivot < 3; ++nPivot) {
    for (std::size_t nRow = 0; nRow < 3; ++nRow) {
      const double dFactor = aadRows[nRow][nPivot] / aadRows[nPivot][nPivot];
      for (std::size_t nColumn = 0; nColumn < 4 && nRow != nPivot; ++nColumn) {
        aadRows[nRow][nColumn] -= dFactor * aadRows[nPivot][nColumn];
      }
    }
  }
  return {aadRows[0][3] / aadRows[0][0], aadRows[1][3] / aadRows[1][1], aadRows[2][3] / aadRows[2][2]};
}

double AverageTemporalVariance(const std::vector<SlowImage> &listFrames, const SlowImage &mean)
{
  double dSum = 0;
  for (const SlowImage &frame : listFrames) {
    for (const double dDistance : ListAll(Subtract(frame, mean))) {
      dSum += dDistance * dDistance;
    }
  }
  return dSum / static_cast<double>((listFrames.size() - 1) * mean.size() * mean[0].size());
}

} // namespace

SlowImage FilterSlowly(const SlowImage &image)
{
  const SlowImage binomial = {{1, 2, 1}, {2, 4, 2}, {1, 2, 1}};
  return Subtract(image, Smooth(Smooth(Smooth(image, MakeBox(7)), MakeBox(11)), binomial));
}

SlowImage FilterAsInRelease3Slowly(const SlowImage &image)
{
  return Crop(Subtract(image, Smooth(image, MakeBox(5))), 2);
}

SlowImage Crop(const SlowImage &image, std::size_t nBorder)
{
  SlowImage inner;
  const auto nCut = static_cast<std::ptrdiff_t>(nBorder);
  for (std::size_t nRow = nBorder; nRow + nBorder < image.size(); ++nRow) {
    inner.emplace_back(image[nRow].begin() + nCut, image[nRow].end() - nCut);
  }
  return inner;
}

SlowImage AverageSlowly(const std::vector<SlowImage> &listFrames)
{
  SlowImage mean = listFrames[0];
  for (std::size_t nRow = 0; nRow < mean.size(); ++nRow) {
    for (std::size_t nColumn = 0; nColumn < mean[0].size(); ++nColumn) {
      std::vector<double> listValues;
      for (const SlowImage &frame : listFrames) {
        listValues.push_back(frame[nRow][nColumn]);
      }
      mean[nRow][nColumn] = Average(listValues);
    }
  }
  return mean;
}

SSlowVariances MeasureVariancesSlowly(const std::vector<SlowImage> &listFrames)
{
  const SlowImage mean = AverageSlowly(listFrames);
  const auto dFrames = static_cast<double>(listFrames.size());
  const auto dRows = static_cast<double>(mean.size());
  const auto dColumns = static_cast<double>(mean[0].size());
  SSlowVariances stVariances;
  stVariances.dMean = Average(ListAll(mean));
  stVariances.dTemporal = AverageTemporalVariance(listFrames, mean);
  stVariances.dMeasured = AverageSquareDistance(ListAll(mean), stVariances.dMean);
  stVariances.dTotal = stVariances.dMeasured - stVariances.dTemporal / dFrames;
  const double dCav =
    AverageSquareDistance(AverageRows(Transpose(mean)), stVariances.dMean) - stVariances.dTemporal / (dFrames * dRows);
  const double dRav =
    AverageSquareDistance(AverageRows(mean), stVariances.dMean) - stVariances.dTemporal / (dFrames * dColumns);
  const std::array<double, 3> adParts =
    Solve({{{1, 0, 1 / dRows, dCav}, {0, 1, 1 / dColumns, dRav}, {1, 1, 1, stVariances.dTotal}}});
  stVariances.dColumn = adParts[0];
  stVariances.dRow = adParts[1];
  stVariances.dPixel = adParts[2];
  return stVariances;
}

std::vector<double> MakeSpectrogramSlowly(const SlowImage &image)
{
  const std::size_t nLength = image[0].size();
  const double dMean = Average(ListAll(image));
  std::vector<double> listPower;
  for (std::size_t nFrequency = 0; nFrequency <= nLength / 2; ++nFrequency) {
    double dPower = 0;
    for (const std::vector<double> &listRow : image) {
      std::complex<double> sum = 0;
      for (std::size_t n = 0; n < nLength; ++n) {
        sum += (listRow[n] - dMean) *
               std::exp(std::complex<double>(0, -2 * 3.14159265358979323846 * static_cast<double>(nFrequency * n) /
                                                  static_cast<double>(nLength)));
      }
      dPower += std::norm(sum) / static_cast<double>(nLength);
    }
    listPower.push_back(dPower / static_cast<double>(image.size()));
  }
  return listPower;
}

SlowImage Transpose(const SlowImage &image)
{
  SlowImage turned(image[0].size(), std::vector<double>(image.size()));
  for (std::size_t nRow = 0; nRow < image.size(); ++nRow) {
    for (std::size_t nColumn = 0; nColumn < image[0].size(); ++nColumn) {
      turned[nColumn][nRow] = image[nRow][nColumn];
    }
  }
  return turned;
}

SSlowHistogram MakeHistogramSlowly(const std::vector<SlowImage> &listFrames)
{
  const auto dFrames = static_cast<double>(listFrames.size());
  std::vector<int64_t> listSums;
  for (const double dMean : ListAll(AverageSlowly(listFrames))) {
    listSums.push_back(std::llround(dMean * dFrames));
  }
  const int64_t nLeast = *std::min_element(listSums.begin(), listSums.end());
  const int64_t nRange = *std::max_element(listSums.begin(), listSums.end()) - nLeast;
  const int64_t nSteps = nRange / 256 + 1;
  const double dMean = Average(ListAll(AverageSlowly(listFrames)));
  const double dVariance = AverageSquareDistance(ListAll(AverageSlowly(listFrames)), dMean);
  SSlowHistogram stHistogram;
  stHistogram.dFirst = static_cast<double>(nLeast) / dFrames - dMean;
  stHistogram.dWidth = static_cast<double>(nSteps) / dFrames;
  for (int64_t nBin = 0; nBin <= nRange / nSteps; ++nBin) {
    stHistogram.listCounts.push_back(
      static_cast<uint64_t>(std::count_if(listSums.begin(), listSums.end(), [&](int64_t nSum) {
        return nSum - nLeast >= nBin * nSteps && nSum - nLeast < (nBin + 1) * nSteps;
      })));
    const double dAt = stHistogram.dFirst + (static_cast<double>(nBin) + 0.5) * stHistogram.dWidth;
    stHistogram.listNormal.push_back(static_cast<double>(listSums.size()) * stHistogram.dWidth *
                                     std::exp(-dAt * dAt / (2 * dVariance)) /
                                     std::sqrt(2 * 3.14159265358979323846 * dVariance));
  }
  return stHistogram;
}
