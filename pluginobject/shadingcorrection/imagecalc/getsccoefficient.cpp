#include "pluginobject/shadingcorrection/imagecalc/getsccoefficient.h"

#include <initializer_list>

#include "pluginobject/shadingcorrection/imagecalc/arrayallocation.h"
#include "pluginobject/shadingcorrection/imagecalc/blockmeans.h"
#include "pluginobject/shadingcorrection/imagecalc/gridframe.h"
#include "pluginobject/shadingcorrection/imagecalc/imagecalc.h"

using namespace ffc::imagecalc;

namespace {

constexpr int32_t COEFFICIENT_BIT_DEPTH = 8;
// 255 grey levels times 256, which stands for a gain of 1.
constexpr double GAIN_DIVIDEND = 65280.0;
constexpr double SMALLEST_SIGNAL = 1.0;

uint16_t ComputeGain(double dSignal)
{
  return static_cast<uint16_t>(GAIN_DIVIDEND / (dSignal < SMALLEST_SIGNAL ? SMALLEST_SIGNAL : dSignal));
}

uint8_t *WriteWord(uint8_t *pTo, uint16_t nWord)
{
  pTo[0] = static_cast<uint8_t>(nWord & 0xFFU);
  pTo[1] = static_cast<uint8_t>(nWord >> 8);
  return pTo + 2;
}

} // namespace

CGetSCCoefficient::CGetSCCoefficient() noexcept = default;

CGetSCCoefficient::~CGetSCCoefficient() = default;

int32_t CGetSCCoefficient::SetBlockParam(BLOCK_PARAM stParam) noexcept
{
  int32_t nColumns = 0;
  int32_t nRows = 0;
  const int32_t nStatus = CImageCalc().GetBlockCount(stParam, &nColumns, &nRows);
  m_bInit = nStatus == IMAGECALC_STATUS_SUCCESS;
  if (!m_bInit) {
    return nStatus;
  }
  m_stParam = stParam;
  m_nBlockCols = static_cast<uint32_t>(nColumns);
  m_nBlockRows = static_cast<uint32_t>(nRows);
  m_nTableCols = m_nBlockCols + 2;
  m_nTableRows = m_nBlockRows + 2;
  // At most 12502 x 12502 elements: below 2^31 bytes.
  m_nTableSize = static_cast<int32_t>(COEFFICIENT_ELEMENT_BYTES * m_nTableCols * m_nTableRows);
  return IMAGECALC_STATUS_SUCCESS;
}

int32_t CGetSCCoefficient::GetCoefficientSize(int32_t *pnSize) const noexcept
{
  if (pnSize == nullptr) {
    return IMAGECALC_STATUS_INVALID_ARGUMENT;
  }
  if (!m_bInit) {
    return IMAGECALC_STATUS_NOT_INITIALIZED;
  }
  *pnSize = m_nTableSize;
  return IMAGECALC_STATUS_SUCCESS;
}

int32_t CGetSCCoefficient::CalcWithDark(const void *pBright, const void *pDark, int32_t nBitDepth, void *pTable,
                                        int32_t *pnSize) noexcept
{
  return pDark == nullptr ? IMAGECALC_STATUS_INVALID_ARGUMENT : __Calc(pBright, pDark, nBitDepth, pTable, pnSize);
}

int32_t CGetSCCoefficient::CalcWithoutDark(const void *pBright, int32_t nBitDepth, void *pTable,
                                           int32_t *pnSize) noexcept
{
  return __Calc(pBright, nullptr, nBitDepth, pTable, pnSize);
}

// Without a dark frame pDark is null.
int32_t CGetSCCoefficient::__Calc(const void *pBright, const void *pDark, int32_t nBitDepth, void *pTable,
                                  int32_t *pnSize)
{
  if (pBright == nullptr || pTable == nullptr || pnSize == nullptr) {
    return IMAGECALC_STATUS_INVALID_ARGUMENT;
  }
  if (nBitDepth != COEFFICIENT_BIT_DEPTH) {
    return IMAGECALC_STATUS_OUT_OF_RANGE;
  }
  if (!m_bInit) {
    return IMAGECALC_STATUS_NOT_INITIALIZED;
  }
  if (m_nTableSize > *pnSize) {
    return IMAGECALC_STATUS_INVALID_ARGUMENT;
  }
  *pnSize = m_nTableSize;
  int32_t nStatus = IMAGECALC_STATUS_OUT_OF_MEMORY;
  if (__AllocateMeans(pDark != nullptr)) {
    nStatus = __CalcMeans(pBright, pDark, nBitDepth);
  }
  if (nStatus == IMAGECALC_STATUS_SUCCESS) {
    auto *const pBytes = static_cast<uint8_t *>(pTable);
    __WriteElements(pBytes);
    FrameCoefficientGrid(pBytes, m_nBlockCols, m_nBlockRows);
  }
  m_pMeans.reset();
  m_pDarkMeans.reset();
  return nStatus;
}

bool CGetSCCoefficient::__AllocateMeans(bool bDark)
{
  const auto nMeansPerBlock = static_cast<uint32_t>(GetMeansPerBlock(m_stParam.nBayerType));
  m_pMeans = AllocateArray<double>({m_nBlockCols, m_nBlockRows, nMeansPerBlock});
  if (bDark && m_pMeans != nullptr) {
    m_pDarkMeans = AllocateArray<double>({m_nBlockCols, m_nBlockRows});
  }
  return m_pMeans != nullptr && (!bDark || m_pDarkMeans != nullptr);
}

int32_t CGetSCCoefficient::__CalcMeans(const void *pBright, const void *pDark, int32_t nBitDepth)
{
  const CImageCalc imageCalc;
  const int32_t nStatus = imageCalc.CalcBlockMeans(pBright, nBitDepth, m_stParam, m_pMeans.get());
  if (pDark == nullptr) {
    return nStatus;
  }
  // What is refused of the bright field, which Init and __Calc have looked at, is refused of the dark one.
  BLOCK_PARAM stDarkParam = m_stParam;
  stDarkParam.nBayerType = BAYER_TYPE_MONO;
  return imageCalc.CalcBlockMeans(pDark, nBitDepth, stDarkParam, m_pDarkMeans.get());
}

void CGetSCCoefficient::__WriteElements(uint8_t *pTable) const
{
  const auto nMeansPerBlock = static_cast<uint32_t>(GetMeansPerBlock(m_stParam.nBayerType));
  const uint32_t nLastMean = nMeansPerBlock - 1;
  const double *pMeans = m_pMeans.get();
  const uint64_t nBlocks = uint64_t{m_nBlockCols} * m_nBlockRows;
  for (uint64_t nBlock = 0; nBlock < nBlocks; ++nBlock) {
    const auto nDark = static_cast<uint16_t>(m_pDarkMeans != nullptr ? m_pDarkMeans[nBlock] : 0.0);
    pTable = WriteWord(pTable, nDark);
    // Means come as R, G, B, gains go as B, G, R. The one mean of a mono block serves all three.
    for (const uint32_t nColour : {2U, 1U, 0U}) {
      const double dMean = pMeans[nColour < nLastMean ? nColour : nLastMean];
      pTable = WriteWord(pTable, ComputeGain(dMean - nDark));
    }
    pMeans += nMeansPerBlock;
  }
}
