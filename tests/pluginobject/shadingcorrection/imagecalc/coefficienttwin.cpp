#include "tests/pluginobject/shadingcorrection/imagecalc/coefficienttwin.h"

#include <algorithm>
#include <cmath>

#include "tests/pluginobject/shadingcorrection/imagecalc/slowtwin.h"

using namespace ffc::test;

namespace {

std::vector<int32_t> ComputeElementSlowly(const std::vector<double> &listColourMeans, int32_t nDark)
{
  std::vector<int32_t> listWords = {nDark};
  for (const std::size_t nColour : {2U, 1U, 0U}) {
    const double dMean = listColourMeans.size() == 1 ? listColourMeans[0] : listColourMeans[nColour];
    listWords.push_back(static_cast<int32_t>(std::floor(65280.0 / std::max(dMean - nDark, 1.0))));
  }
  return listWords;
}

} // namespace

std::vector<uint8_t> ComputeCoefficientTableSlowly(const CTestImage &bright, const CTestImage *pDark,
                                                   const BLOCK_PARAM &stParam)
{
  const int32_t nColumns = CountBlocksSlowly(stParam.nWidth, stParam.nBlockWidth);
  const int32_t nRows = CountBlocksSlowly(stParam.nHeight, stParam.nBlockHeight);
  BLOCK_PARAM stMono = stParam;
  stMono.nBayerType = 0;
  const std::vector<double> listBright = ComputeBlockMeansSlowly(bright, stParam);
  const std::vector<double> listDark =
    pDark == nullptr ? std::vector<double>() : ComputeBlockMeansSlowly(*pDark, stMono);
  const int32_t nColours = stParam.nBayerType == 0 ? 1 : 3;
  std::vector<uint8_t> listTable;
  for (int32_t nTableRow = 0; nTableRow < nRows + 2; ++nTableRow) {
    for (int32_t nTableColumn = 0; nTableColumn < nColumns + 2; ++nTableColumn) {
      const int32_t nRow = std::clamp(nTableRow - 1, 0, nRows - 1);
      const int32_t nColumn = std::clamp(nTableColumn - 1, 0, nColumns - 1);
      const int32_t nBlock = nRow * nColumns + nColumn;
      const auto itMeans = listBright.begin() + nBlock * nColours;
      const double dDark = pDark == nullptr ? 0.0 : listDark[static_cast<std::size_t>(nBlock)];
      for (const int32_t nWord : ComputeElementSlowly({itMeans, itMeans + nColours}, static_cast<int32_t>(dDark))) {
        listTable.push_back(static_cast<uint8_t>(nWord % 256));
        listTable.push_back(static_cast<uint8_t>(nWord / 256));
      }
    }
  }
  return listTable;
}
