// The coefficient generator over arbitrary grids, frames of exactly the stated size, and tables of any size.
#include <algorithm>

#include "pluginobject/shadingcorrection/imagecalc/getsccoefficient.h"
#include "tests/fuzz/fuzzinput.h"
#include "tests/fuzz/fuzztargets.h"
#include "tests/fuzz/require.h"

using ffc::imagecalc::IMAGECALC_STATUS_SUCCESS;

namespace {

constexpr int32_t LARGEST_SIDE = 160;
constexpr int64_t LARGEST_BUFFER = 1 << 16;
constexpr uint8_t UNTOUCHED = 0xA5;
constexpr std::size_t ELEMENT_SIZE = 8;
constexpr uint16_t LARGEST_GAIN = 65280;

BLOCK_PARAM TakeGrid(CFuzzInput &input)
{
  BLOCK_PARAM stParam;
  stParam.nWidth = static_cast<int32_t>(input.TakeSide(LARGEST_SIDE));
  stParam.nHeight = static_cast<int32_t>(input.TakeSide(LARGEST_SIDE));
  stParam.nBlockWidth = static_cast<int32_t>(input.TakeSide(LARGEST_SIDE));
  stParam.nBlockHeight = static_cast<int32_t>(input.TakeSide(LARGEST_SIDE));
  stParam.nBayerType = input.TakeBool() ? input.Take<int32_t>() : input.TakeBetween(-1, 5);
  return stParam;
}

// The words of the table as the formula allows them.
void CheckTable(const CExactBuffer &table, int32_t nSize, bool bDark)
{
  for (std::size_t i = 0; i < static_cast<std::size_t>(nSize); i += 2) {
    const unsigned nWord = table.GetData()[i] + 256U * table.GetData()[i + 1];
    if (i % ELEMENT_SIZE == 0) {
      Require(nWord <= (bDark ? 255U : 0U), "a dark level is that of 8-bit pixels, 0 without a dark frame");
    } else {
      Require(nWord >= 256 && nWord <= LARGEST_GAIN, "a gain is 65280 divided by a signal of 1 to 255");
    }
  }
}

class CGeneratorRun {
public:
  explicit CGeneratorRun(CFuzzInput &input) : m_input(input) {}

  void SetGrid()
  {
    const BLOCK_PARAM stParam = TakeGrid(m_input);
    m_bGrid = m_generator.SetBlockParam(stParam) == IMAGECALC_STATUS_SUCCESS;
    m_stParam = stParam;
    int32_t nSize = -1;
    Require((m_generator.GetCoefficientSize(&nSize) == IMAGECALC_STATUS_SUCCESS) == m_bGrid, "a size takes a grid");
    Require(m_bGrid == (nSize > 0), "a grid has a table");
    m_nTableSize = nSize;
  }

  void Calculate()
  {
    // A frame that nobody can hold cannot be handed over either.
    const int64_t nPixels = m_bGrid ? int64_t{m_stParam.nWidth} * m_stParam.nHeight : 1;
    if (nPixels > LARGEST_BUFFER || m_nTableSize > LARGEST_BUFFER) {
      return;
    }
    const bool bDark = m_input.TakeBool();
    const auto nFlags = m_input.Take<uint8_t>();
    const int32_t nBitDepth = (nFlags & 1U) != 0 ? m_input.Take<int32_t>() : 8;
    const int32_t nStated = TakeTableSize(nFlags);
    const CExactBuffer bright = m_input.TakeBuffer(static_cast<std::size_t>(nPixels));
    const CExactBuffer dark = m_input.TakeBuffer(static_cast<std::size_t>(nPixels));
    CExactBuffer table(static_cast<std::size_t>(std::max(nStated, 0)), UNTOUCHED);
    int32_t nSize = nStated;
    const void *const pBright = (nFlags & 4U) != 0 ? nullptr : bright.GetData();
    const int32_t nStatus = bDark
                              ? m_generator.CalcWithDark(pBright, dark.GetData(), nBitDepth, table.GetData(), &nSize)
                              : m_generator.CalcWithoutDark(pBright, nBitDepth, table.GetData(), &nSize);
    if (nStatus == IMAGECALC_STATUS_SUCCESS) {
      Require(nSize == m_nTableSize && nSize <= nStated, "the size that comes back is the table's");
      CheckTable(table, nSize, bDark);
    } else {
      Require(nSize == nStated && table.IsFilledWith(UNTOUCHED), "nothing is written when a test fails");
    }
  }

private:
  // Around the right size, or any; what is too large to be there is cut.
  int32_t TakeTableSize(uint8_t nFlags)
  {
    const int64_t nStated = (nFlags & 2U) != 0 ? m_input.Take<int32_t>() : m_nTableSize + m_input.Take<int8_t>() % 3;
    return static_cast<int32_t>(std::min(nStated, LARGEST_BUFFER));
  }

  CFuzzInput &m_input;
  CGetSCCoefficient m_generator;
  BLOCK_PARAM m_stParam;
  bool m_bGrid = false;
  int32_t m_nTableSize = -1;
};

} // namespace

void FuzzCoefficientGenerator(const uint8_t *pData, std::size_t nSize)
{
  CFuzzInput input(pData, nSize);
  CGeneratorRun run(input);
  if (input.TakeBool()) {
    run.Calculate();
  }
  run.SetGrid();
  run.Calculate();
  if (input.HasMore()) {
    run.SetGrid();
    run.Calculate();
  }
}
