#include "tests/pluginobject/shadingcorrection/imagecalc/slowtwin.h"

#include <string>

using namespace ffc::test;

namespace {

// The colour of a pixel of an image of this type; M for a mono image, a blank for a type that is none.
char GetColour(int32_t nBayerType, int32_t nX, int32_t nY)
{
  static const std::string CELLS[] = {"MMMM", "RGGB", "GBRG", "GRBG", "BGGR"};
  return nBayerType >= 0 && nBayerType <= 4 ? CELLS[nBayerType][static_cast<std::size_t>(nY % 2 * 2 + nX % 2)] : ' ';
}

double GetMeanOfColour(const CTestImage &image, const BLOCK_PARAM &stParam, int32_t nColumn, int32_t nRow,
                       char chColour)
{
  int64_t nSum = 0;
  int64_t nCount = 0;
  for (int32_t y = nRow * stParam.nBlockHeight; y < (nRow + 1) * stParam.nBlockHeight && y < image.GetHeight(); ++y) {
    for (int32_t x = nColumn * stParam.nBlockWidth; x < (nColumn + 1) * stParam.nBlockWidth && x < image.GetWidth();
         ++x) {
      if (GetColour(stParam.nBayerType, x, y) == chColour) {
        nSum += image.Get(x, y);
        ++nCount;
      }
    }
  }
  return nCount == 0 ? 0.0 : static_cast<double>(nSum) / static_cast<double>(nCount);
}

} // namespace

int32_t CountBlocksSlowly(int32_t nImageSide, int32_t nBlockSide)
{
  int32_t nCount = 0;
  while ((nCount + 1) * nBlockSide <= nImageSide) {
    ++nCount;
  }
  const int32_t nStrip = nImageSide - nCount * nBlockSide;
  return nStrip * 2 > nBlockSide ? nCount + 1 : nCount;
}

std::vector<double> ComputeBlockMeansSlowly(const CTestImage &image, const BLOCK_PARAM &stParam)
{
  const std::string strColours = stParam.nBayerType == 0 ? "M" : "RGB";
  std::vector<double> listMeans;
  for (int32_t nRow = 0; nRow < CountBlocksSlowly(stParam.nHeight, stParam.nBlockHeight); ++nRow) {
    for (int32_t nColumn = 0; nColumn < CountBlocksSlowly(stParam.nWidth, stParam.nBlockWidth); ++nColumn) {
      for (const char chColour : strColours) {
        listMeans.push_back(GetMeanOfColour(image, stParam, nColumn, nRow, chColour));
      }
    }
  }
  return listMeans;
}

CTestImage SmoothSlowly(const CTestImage &image, bool bBayer)
{
  const int32_t nBorder = bBayer ? 2 : 1;
  CTestImage result = image;
  for (int32_t y = nBorder; y <= image.GetHeight() - 1 - nBorder; ++y) {
    for (int32_t x = nBorder; x <= image.GetWidth() - 1 - nBorder; ++x) {
      int64_t nSum = 0;
      for (int32_t dy = -1; dy <= 1; ++dy) {
        for (int32_t dx = -1; dx <= 1; ++dx) {
          nSum += image.Get(x + dx, y + dy);
        }
      }
      result.Set(x, y, static_cast<int32_t>((nSum + 4) * 455 / 4096));
    }
  }
  return result;
}
