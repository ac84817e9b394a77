#include "pluginobject/shadingcorrection/imagecalc/vignetting/vignettingcoefficient.h"

#include <cstring>
#include <initializer_list>
#include <limits>
#include <memory>
#include <new>

#include "pluginobject/shadingcorrection/imagecalc/blockmeans.h"
#include "pluginobject/shadingcorrection/imagecalc/imageview.h"
#include "pluginobject/shadingcorrection/imagecalc/vignetting/gainquads.h"
#include "pluginobject/shadingcorrection/imagecalc/vignetting/vcbayer.h"
#include "pluginobject/shadingcorrection/imagecalc/vignetting/vcgary.h"

using namespace ffc::imagecalc;

namespace {

constexpr int64_t MIN_BLOCK_SIDE = 2;
constexpr uint32_t SCALE_BITS = 8;
constexpr int32_t MAX_GAIN = 7;

bool IsBayerTypeSupported(int32_t nBayerType)
{
  return nBayerType >= BAYER_TYPE_MONO && nBayerType <= BAYER_TYPE_BG;
}

bool AreSides(std::initializer_list<int64_t> listSides)
{
  for (const int64_t nSide : listSides) {
    if (nSide < 0 || nSide > std::numeric_limits<uint32_t>::max()) {
      return false;
    }
  }
  return true;
}

bool DoesBlockFit(int64_t nSide, int64_t nBlockSide)
{
  return nBlockSide >= MIN_BLOCK_SIDE && (nBlockSide & (nBlockSide - 1)) == 0 && nSide % 2 == 0 && nBlockSide <= nSide;
}

int64_t CountPoints(int64_t nSide, int64_t nBlockSide)
{
  return RoundUpToEven(CountBlocks(nSide, nBlockSide) + 2);
}

std::unique_ptr<IVignettingCorrection> MakeCalculator(int32_t nBayerType)
{
  if (nBayerType == BAYER_TYPE_MONO) {
    return std::unique_ptr<IVignettingCorrection>(new (std::nothrow) CVCGary());
  }
  return std::unique_ptr<IVignettingCorrection>(new (std::nothrow) CVCBayer(static_cast<uint32_t>(nBayerType)));
}

// The gain table of an image, whose sides and blocks may be any numbers. See CalcVignettingCoefficient.
int32_t ComputeGainTable(const SImageView &stImage, int64_t nBlockWidth, int64_t nBlockHeight, int64_t nExpectedSize,
                         void *pBuffer)
{
  const std::unique_ptr<IVignettingCorrection> pCalculator = MakeCalculator(stImage.nBayerType);
  if (pCalculator == nullptr) {
    return IMAGECALC_STATUS_OUT_OF_MEMORY;
  }
  if (!AreSides({stImage.nWidth, stImage.nHeight, nBlockWidth, nBlockHeight})) {
    return IMAGECALC_STATUS_INVALID_ARGUMENT;
  }
  int32_t nStatus =
    pCalculator->Init(static_cast<uint32_t>(nBlockWidth), static_cast<uint32_t>(nBlockHeight), SCALE_BITS, MAX_GAIN);
  const uint16_t *pTable = nullptr;
  uint64_t nColumns = 0;
  uint64_t nRows = 0;
  if (nStatus == IMAGECALC_STATUS_SUCCESS) {
    nStatus = pCalculator->CalcCoefficient(stImage.pPixels, static_cast<uint32_t>(stImage.nWidth),
                                           static_cast<uint32_t>(stImage.nHeight), stImage.nBitDepth, &pTable,
                                           &nColumns, &nRows);
  }
  if (nStatus != IMAGECALC_STATUS_SUCCESS) {
    return nStatus;
  }
  // The table is in memory, so its size does not overflow, and no negative number equals it.
  const uint64_t nGains = nColumns * nRows * static_cast<uint32_t>(GetMeansPerBlock(stImage.nBayerType));
  const uint64_t nSize = nGains * sizeof(uint16_t);
  if (static_cast<uint64_t>(nExpectedSize) != nSize) {
    return IMAGECALC_STATUS_INVALID_ARGUMENT;
  }
  std::memcpy(pBuffer, pTable, static_cast<std::size_t>(nSize));
  return IMAGECALC_STATUS_SUCCESS;
}

} // namespace

int32_t GetVignettingCoefficientSize(int32_t nBayerType, int64_t nWidth, int64_t nHeight, int64_t nBlockWidth,
                                     int64_t nBlockHeight, int64_t *pnSize) noexcept
{
  if (pnSize == nullptr) {
    return IMAGECALC_STATUS_INVALID_ARGUMENT;
  }
  if (!IsBayerTypeSupported(nBayerType)) {
    return IMAGECALC_STATUS_NOT_SUPPORTED;
  }
  if (!AreSides({nWidth, nHeight}) || !DoesBlockFit(nWidth, nBlockWidth) || !DoesBlockFit(nHeight, nBlockHeight)) {
    return IMAGECALC_STATUS_INVALID_ARGUMENT;
  }
  const int64_t nPointBytes = GetMeansPerBlock(nBayerType) * int64_t{sizeof(uint16_t)};
  const int64_t nRowBytes = CountPoints(nWidth, nBlockWidth) * nPointBytes;
  const int64_t nRows = CountPoints(nHeight, nBlockHeight);
  if (nRows > std::numeric_limits<int64_t>::max() / nRowBytes) {
    return IMAGECALC_STATUS_INVALID_ARGUMENT;
  }
  *pnSize = nRows * nRowBytes;
  return IMAGECALC_STATUS_SUCCESS;
}

int32_t CalcVignettingCoefficient(const void *pImage, int32_t nBitDepth, int32_t nBayerType, int64_t nWidth,
                                  int64_t nHeight, int64_t nBlockWidth, int64_t nBlockHeight, int64_t nExpectedSize,
                                  void *pBuffer) noexcept
{
  if (pImage == nullptr || pBuffer == nullptr) {
    return IMAGECALC_STATUS_INVALID_ARGUMENT;
  }
  if (!IsBayerTypeSupported(nBayerType)) {
    return IMAGECALC_STATUS_NOT_SUPPORTED;
  }
  return ComputeGainTable({pImage, nWidth, nHeight, nBitDepth, nBayerType}, nBlockWidth, nBlockHeight, nExpectedSize,
                          pBuffer);
}
