// Compiled once per instruction level: everything here is internal but the table (see cmake/FfcKernels.cmake).
#include "pluginobject/shadingcorrection/imagecalc/kernels/imagekernels.h"

#include <cstring>

#include "platform/builtlevel.h"
#include "platform/cacheline.h"

namespace ffc::imagecalc {

extern const SImageKernels FFC_KERNEL_TABLE;

namespace {

// Columns that are worked on at a time, so that their sums stay in the nearest cache.
constexpr std::size_t TILE_COLUMNS = 2048;
// Fewer where reading and writing take turns, so that the memory never waits for long.
constexpr std::size_t SMOOTHED_COLUMNS = 512;
// Rows whose sums 16 bits hold for bytes, and 32 bits for words. Even, for whole cells.
constexpr std::size_t STRIP_ROWS = 256;

template <class TPixel>
struct SColumnSum {
  using Type = uint32_t;
};

template <>
struct SColumnSum<uint8_t> {
  using Type = uint16_t;
};

template <class TPixel>
using TColumnSum = typename SColumnSum<TPixel>::Type;

inline std::size_t Min(std::size_t nFirst, std::size_t nSecond)
{
  return nFirst < nSecond ? nFirst : nSecond;
}

template <class TValue>
inline TValue Load(const unsigned char *pData, std::size_t nIndex)
{
  TValue nValue;
  std::memcpy(&nValue, pData + nIndex * sizeof nValue, sizeof nValue);
  return nValue;
}

template <class TValue>
inline void Store(unsigned char *pData, std::size_t nIndex, TValue nValue)
{
  std::memcpy(pData + nIndex * sizeof nValue, &nValue, sizeof nValue);
}

// \return all bits that any of the pixels has
template <class TPixel, class TSum>
inline uint32_t AddRun(const unsigned char *pFrom, std::size_t nPixels, unsigned char *__restrict pTo)
{
  TPixel nBits = 0;
  for (std::size_t i = 0; i < nPixels; ++i) {
    const auto nPixel = Load<TPixel>(pFrom, i);
    nBits = static_cast<TPixel>(nBits | nPixel);
    Store<TSum>(pTo, i, static_cast<TSum>(Load<TSum>(pTo, i) + nPixel));
  }
  return nBits;
}

// The sums from their first whole cache line on by themselves.
template <class TPixel, class TSum>
inline uint32_t AddByLines(const void *pPixels, std::size_t nPixels, void *pSums)
{
  const auto *const pFrom = static_cast<const unsigned char *>(pPixels);
  auto *const pTo = static_cast<unsigned char *>(pSums);
  const std::size_t nBefore = Min(FFC_COUNT_BEFORE_LINE(pTo, sizeof(TSum)), nPixels);
  const uint32_t nBits = AddRun<TPixel, TSum>(pFrom, nBefore, pTo);
  return nBits |
         AddRun<TPixel, TSum>(pFrom + nBefore * sizeof(TPixel), nPixels - nBefore, pTo + nBefore * sizeof(TSum));
}

template <class TPixel>
void AddPixels(const void *pPixels, std::size_t nPixels, void *pSums)
{
  (void)AddByLines<TPixel, uint32_t>(pPixels, nPixels, pSums);
}

template <class TPixel>
uint32_t AddNarrowPixels(const void *pPixels, std::size_t nPixels, void *pSums)
{
  return AddByLines<TPixel, uint16_t>(pPixels, nPixels, pSums);
}

template <class TPixel>
void TakeNarrowPixels(const void *pPixels, std::size_t nPixels, void *__restrict pSums)
{
  const auto *const pFrom = static_cast<const unsigned char *>(pPixels);
  auto *const pTo = static_cast<unsigned char *>(pSums);
  for (std::size_t i = 0; i < nPixels; ++i) {
    Store<uint16_t>(pTo, i, static_cast<uint16_t>(Load<uint16_t>(pTo, i) - Load<TPixel>(pFrom, i)));
  }
}

void WidenSums(const void *pNarrow, std::size_t nCount, void *__restrict pWide)
{
  const auto *const pFrom = static_cast<const unsigned char *>(pNarrow);
  auto *const pTo = static_cast<unsigned char *>(pWide);
  for (std::size_t i = 0; i < nCount; ++i) {
    Store<uint32_t>(pTo, i, Load<uint16_t>(pFrom, i));
  }
}

template <class TPixel>
void DividePixels(const void *pSums, std::size_t nPixels, SReciprocal stReciprocal, void *__restrict pPixels)
{
  const auto *const pFrom = static_cast<const unsigned char *>(pSums);
  auto *const pTo = static_cast<unsigned char *>(pPixels);
  for (std::size_t i = 0; i < nPixels; ++i) {
    const auto nSum = Load<uint32_t>(pFrom, i);
    const auto nHigh = static_cast<uint32_t>((uint64_t{nSum} * stReciprocal.nMultiplier) >> 32);
    Store<TPixel>(pTo, i, static_cast<TPixel>((((nSum - nHigh) >> 1) + nHigh) >> stReciprocal.nShift));
  }
}

template <class TPixel>
void MultiplyPixels(const void *pSums, std::size_t nPixels, SReciprocal stReciprocal, void *__restrict pPixels)
{
  const auto *const pFrom = static_cast<const unsigned char *>(pSums);
  auto *const pTo = static_cast<unsigned char *>(pPixels);
  for (std::size_t i = 0; i < nPixels; ++i) {
    const uint64_t nProduct = uint64_t{Load<uint32_t>(pFrom, i)} * stReciprocal.nMultiplier;
    Store<TPixel>(pTo, i, static_cast<TPixel>(static_cast<uint32_t>(nProduct >> 32) >> stReciprocal.nShift));
  }
}

template <class TPixel, class TSum>
void ShiftPixels(const void *pSums, std::size_t nPixels, uint32_t nShift, void *__restrict pPixels)
{
  const auto *const pFrom = static_cast<const unsigned char *>(pSums);
  auto *const pTo = static_cast<unsigned char *>(pPixels);
  for (std::size_t i = 0; i < nPixels; ++i) {
    Store<TPixel>(pTo, i, static_cast<TPixel>(Load<TSum>(pFrom, i) >> nShift));
  }
}

// Some rows of some columns of a row of blocks.
struct STile {
  const unsigned char *pPixels;
  std::size_t nRowBytes;
  std::size_t nRows;
  std::size_t nFirstColumn; // within the row of blocks
  std::size_t nColumns;
};

// Four rows at a time, as the sums of the columns are read and written with each.
template <class TPixel>
void SumColumns(const STile &stTile, TColumnSum<TPixel> *__restrict pSums)
{
  using TSum = TColumnSum<TPixel>;
  for (std::size_t x = 0; x < stTile.nColumns; ++x) {
    pSums[x] = 0;
  }
  const unsigned char *pRow = stTile.pPixels;
  std::size_t nRows = stTile.nRows;
  for (; nRows >= 4; nRows -= 4, pRow += 4 * stTile.nRowBytes) {
    const unsigned char *const pSecond = pRow + stTile.nRowBytes;
    const unsigned char *const pThird = pSecond + stTile.nRowBytes;
    const unsigned char *const pFourth = pThird + stTile.nRowBytes;
    for (std::size_t x = 0; x < stTile.nColumns; ++x) {
      const auto nUpper = static_cast<TSum>(TSum{Load<TPixel>(pRow, x)} + Load<TPixel>(pSecond, x));
      const auto nLower = static_cast<TSum>(TSum{Load<TPixel>(pThird, x)} + Load<TPixel>(pFourth, x));
      pSums[x] = static_cast<TSum>(pSums[x] + static_cast<TSum>(nUpper + nLower));
    }
  }
  for (; nRows > 0; --nRows, pRow += stTile.nRowBytes) {
    for (std::size_t x = 0; x < stTile.nColumns; ++x) {
      pSums[x] = static_cast<TSum>(pSums[x] + Load<TPixel>(pRow, x));
    }
  }
}

// Column sums are below 2^24, so that 32 bits hold those of 256 columns.
template <class TSum>
uint64_t SumRun(const TSum *pSums, std::size_t nColumns)
{
  uint64_t nTotal = 0;
  while (nColumns > 0) {
    const std::size_t nRun = Min(nColumns, 256);
    uint32_t nSum = 0;
    for (std::size_t x = 0; x < nRun; ++x) {
      nSum += pSums[x];
    }
    nTotal += nSum;
    pSums += nRun;
    nColumns -= nRun;
  }
  return nTotal;
}

// The even and the odd one of at most 256 pairs of sums.
inline void SumSomePairs(const uint32_t *pSums, std::size_t nPairs, uint32_t &nEven, uint32_t &nOdd)
{
  for (std::size_t x = 0; x < nPairs; ++x) {
    nEven += pSums[2 * x];
    nOdd += pSums[2 * x + 1];
  }
}

// Two sums at a time in one word, which spares a vector to sort them.
inline void SumSomePairs(const uint16_t *pSums, std::size_t nPairs, uint32_t &nEven, uint32_t &nOdd)
{
  const auto *const pWords = reinterpret_cast<const unsigned char *>(pSums);
  uint32_t anHalves[2] = {}; // lower, upper
  for (std::size_t x = 0; x < nPairs; ++x) {
    const auto nPair = Load<uint32_t>(pWords, x);
    anHalves[0] += nPair & 0xFFFF;
    anHalves[1] += nPair >> 16;
  }
  // Which of a pair a machine loads into the lower half.
  const uint16_t anOrder[2] = {0, 1};
  const uint32_t nLower = Load<uint32_t>(reinterpret_cast<const unsigned char *>(anOrder), 0) & 1;
  nEven = anHalves[nLower];
  nOdd = anHalves[1 - nLower];
}

// The sums of the even columns, and those of the odd ones.
template <class TSum>
void SumPairs(const TSum *pSums, std::size_t nPairs, uint64_t (&anSums)[2])
{
  while (nPairs > 0) {
    const std::size_t nRun = Min(nPairs, 256);
    uint32_t nEven = 0;
    uint32_t nOdd = 0;
    SumSomePairs(pSums, nRun, nEven, nOdd);
    anSums[0] += nEven;
    anSums[1] += nOdd;
    pSums += 2 * nRun;
    nPairs -= nRun;
  }
}

// Calls fnSumTile for tiles that cover the row of blocks, of at most STRIP_ROWS x TILE_COLUMNS pixels.
template <class TPixel, class TSumTile>
inline void WalkTiles(const SBlockRow &stRow, TSumTile fnSumTile)
{
  const auto *const pPixels = static_cast<const unsigned char *>(stRow.pPixels);
  const std::size_t nRowBytes = stRow.nStride * sizeof(TPixel);
  for (std::size_t y = 0; y < stRow.nRows; y += STRIP_ROWS) {
    for (std::size_t x = 0; x < stRow.nColumns; x += TILE_COLUMNS) {
      fnSumTile(STile{pPixels + y * nRowBytes + x * sizeof(TPixel), nRowBytes, Min(stRow.nRows - y, STRIP_ROWS), x,
                      Min(stRow.nColumns - x, TILE_COLUMNS)});
    }
  }
}

// Calls fnTakeRun(block, first column within the tile, columns) for the piece of each block that lies in the tile.
template <class TTakeRun>
inline void WalkBlocks(const STile &stTile, std::size_t nBlockWidth, TTakeRun fnTakeRun)
{
  std::size_t nBlock = stTile.nFirstColumn / nBlockWidth;
  std::size_t nBlockEnd = (nBlock + 1) * nBlockWidth - stTile.nFirstColumn;
  for (std::size_t x = 0; x < stTile.nColumns; ++nBlock, nBlockEnd += nBlockWidth) {
    const std::size_t nEnd = Min(nBlockEnd, stTile.nColumns);
    fnTakeRun(nBlock, x, nEnd - x);
    x = nEnd;
  }
}

template <class TPixel>
void SumBlocks(const SBlockRow &stRow, double *pSums)
{
  WalkTiles<TPixel>(stRow, [&](const STile &stTile) {
    TColumnSum<TPixel> anColumns[TILE_COLUMNS];
    SumColumns<TPixel>(stTile, anColumns);
    WalkBlocks(stTile, stRow.nBlockWidth, [&](std::size_t nBlock, std::size_t nFirst, std::size_t nColumns) {
      pSums[nBlock] += static_cast<double>(SumRun(anColumns + nFirst, nColumns));
    });
  });
}

// Sums over one parity of rows, with the doubles that the left and the right places count to.
template <class TPixel>
void SumCellRows(const STile &stTile, std::size_t nBlockWidth, const uint8_t *pTargets, double *pSums)
{
  TColumnSum<TPixel> anColumns[TILE_COLUMNS];
  SumColumns<TPixel>(stTile, anColumns);
  WalkBlocks(stTile, nBlockWidth, [&](std::size_t nBlock, std::size_t nFirst, std::size_t nColumns) {
    uint64_t anSums[2] = {};
    SumPairs(anColumns + nFirst, nColumns / 2, anSums);
    pSums[3 * nBlock + pTargets[0]] += static_cast<double>(anSums[0]);
    pSums[3 * nBlock + pTargets[1]] += static_cast<double>(anSums[1]);
  });
}

// Tiles start at even rows and columns. Blocks have even sides, or a side of 1 and no cell.
template <class TPixel>
void SumCells(const SBlockRow &stRow, const uint8_t (&anTarget)[4], double *pSums)
{
  if (stRow.nBlockWidth < 2) {
    return;
  }
  WalkTiles<TPixel>(stRow, [&](const STile &stTile) {
    STile stParity = stTile;
    stParity.nRowBytes *= 2;
    stParity.nRows /= 2;
    SumCellRows<TPixel>(stParity, stRow.nBlockWidth, anTarget, pSums);
    stParity.pPixels += stTile.nRowBytes;
    SumCellRows<TPixel>(stParity, stRow.nBlockWidth, anTarget + 2, pSums);
  });
}

// Sums of three pixels above each other, for one row of results.
// \return all bits that any of the pixels has
template <class TPixel, class TSum>
inline uint32_t SumVertically(const unsigned char *pRow, std::size_t nRowBytes, std::size_t nPixels,
                              TSum *__restrict pSums)
{
  const unsigned char *const pCentre = pRow + nRowBytes;
  const unsigned char *const pBelow = pCentre + nRowBytes;
  TPixel nBits = 0;
  for (std::size_t x = 0; x < nPixels; ++x) {
    const auto nAbove = Load<TPixel>(pRow, x);
    const auto nCentre = Load<TPixel>(pCentre, x);
    const auto nBelow = Load<TPixel>(pBelow, x);
    nBits = static_cast<TPixel>(nBits | nAbove | nCentre | nBelow);
    pSums[x] = static_cast<TSum>(TSum{nAbove} + nCentre + nBelow);
  }
  return nBits;
}

// The same for two rows of results, which share two of their four rows of pixels.
template <class TPixel>
inline uint32_t SumTwoVertically(const unsigned char *pRow, std::size_t nRowBytes, std::size_t nPixels,
                                 uint16_t *__restrict pUpperSums, uint16_t *__restrict pLowerSums)
{
  const unsigned char *const pSecond = pRow + nRowBytes;
  const unsigned char *const pThird = pSecond + nRowBytes;
  const unsigned char *const pFourth = pThird + nRowBytes;
  TPixel nBits = 0;
  for (std::size_t x = 0; x < nPixels; ++x) {
    const auto nFirst = Load<TPixel>(pRow, x);
    const auto nSecond = Load<TPixel>(pSecond, x);
    const auto nThird = Load<TPixel>(pThird, x);
    const auto nFourth = Load<TPixel>(pFourth, x);
    nBits = static_cast<TPixel>(nBits | nFirst | nSecond | nThird | nFourth);
    const auto nShared = static_cast<uint16_t>(uint16_t{nSecond} + nThird);
    pUpperSums[x] = static_cast<uint16_t>(nShared + nFirst);
    pLowerSums[x] = static_cast<uint16_t>(nShared + nFourth);
  }
  return nBits;
}

// ((s + 4) x 7280) >> 16 equals ((s + 4) x 455) >> 12, and is the upper half of a product of 16 bits.
template <class TPixel>
inline void SmoothNarrowSums(const uint16_t *__restrict pSums, std::size_t nPixels, unsigned char *__restrict pTo)
{
  for (std::size_t x = 0; x < nPixels; ++x) {
    const auto nSum = static_cast<uint16_t>(pSums[x] + pSums[x + 1] + pSums[x + 2] + 4);
    Store<TPixel>(pTo, x, static_cast<TPixel>((uint32_t{nSum} * 7280) >> 16));
  }
}

inline void SmoothWideSums(const uint32_t *__restrict pSums, std::size_t nPixels, unsigned char *__restrict pTo)
{
  for (std::size_t x = 0; x < nPixels; ++x) {
    const uint32_t nSum = pSums[x] + pSums[x + 1] + pSums[x + 2] + 4;
    Store<uint16_t>(pTo, x, static_cast<uint16_t>((nSum * 455) >> 12));
  }
}

// Words above 12 bits, whose sums need more than 16.
inline void SmoothWideRow(const unsigned char *pRow, std::size_t nRowBytes, std::size_t nPixels, unsigned char *pTo)
{
  uint32_t anSums[SMOOTHED_COLUMNS + 2];
  (void)SumVertically<uint16_t>(pRow, nRowBytes, nPixels + 2, anSums);
  SmoothWideSums(anSums, nPixels, pTo);
}

// Whether words are of 12 bits is seen in the pixels, not in what the image claims to be.
template <class TPixel>
inline void SmoothRow(const unsigned char *pRow, std::size_t nRowBytes, std::size_t nPixels, unsigned char *pTo)
{
  uint16_t anSums[SMOOTHED_COLUMNS + 2];
  if (SumVertically<TPixel>(pRow, nRowBytes, nPixels + 2, anSums) < 4096) {
    SmoothNarrowSums<TPixel>(anSums, nPixels, pTo);
  } else {
    SmoothWideRow(pRow, nRowBytes, nPixels, pTo);
  }
}

template <class TPixel>
inline void SmoothTwoRows(const unsigned char *pRow, std::size_t nRowBytes, std::size_t nPixels, unsigned char *pTo)
{
  uint16_t anUpper[SMOOTHED_COLUMNS + 2];
  uint16_t anLower[SMOOTHED_COLUMNS + 2];
  if (SumTwoVertically<TPixel>(pRow, nRowBytes, nPixels + 2, anUpper, anLower) < 4096) {
    SmoothNarrowSums<TPixel>(anUpper, nPixels, pTo);
    SmoothNarrowSums<TPixel>(anLower, nPixels, pTo + nRowBytes);
  } else {
    SmoothWideRow(pRow, nRowBytes, nPixels, pTo);
    SmoothWideRow(pRow + nRowBytes, nRowBytes, nPixels, pTo + nRowBytes);
  }
}

template <class TPixel>
void SmoothRows(const SSmoothing &stSmoothing)
{
  const auto *const pFrom = static_cast<const unsigned char *>(stSmoothing.pPixels);
  auto *const pTo = static_cast<unsigned char *>(stSmoothing.pSmoothed);
  const auto fnSmooth = stSmoothing.bTwoRows ? SmoothTwoRows<TPixel> : SmoothRow<TPixel>;
  for (std::size_t x = 0; x < stSmoothing.nPixels; x += SMOOTHED_COLUMNS) {
    const std::size_t nStart = x * sizeof(TPixel);
    fnSmooth(pFrom + nStart, stSmoothing.nRowBytes, Min(stSmoothing.nPixels - x, SMOOTHED_COLUMNS), pTo + nStart);
  }
}

} // namespace

const SImageKernels FFC_KERNEL_TABLE = {
  FFC_BUILT_LEVEL,
  {AddPixels<uint8_t>, AddPixels<uint16_t>},
  {MultiplyPixels<uint8_t>, MultiplyPixels<uint16_t>},
  {DividePixels<uint8_t>, DividePixels<uint16_t>},
  {ShiftPixels<uint8_t, uint32_t>, ShiftPixels<uint16_t, uint32_t>},
  {AddNarrowPixels<uint8_t>, AddNarrowPixels<uint16_t>},
  {TakeNarrowPixels<uint8_t>, TakeNarrowPixels<uint16_t>},
  {ShiftPixels<uint8_t, uint16_t>, ShiftPixels<uint16_t, uint16_t>},
  WidenSums,
  {SumBlocks<uint8_t>, SumBlocks<uint16_t>},
  {SumCells<uint8_t>, SumCells<uint16_t>},
  {SmoothRows<uint8_t>, SmoothRows<uint16_t>},
};

} // namespace ffc::imagecalc
