// Both vignetting calculators, and the functions that choose between them, over arbitrary parameters and frames of
// exactly the stated size.
#include <algorithm>
#include <memory>

#include "pluginobject/shadingcorrection/imagecalc/vignetting/vcbayer.h"
#include "pluginobject/shadingcorrection/imagecalc/vignetting/vcgary.h"
#include "pluginobject/shadingcorrection/imagecalc/vignetting/vignettingcoefficient.h"
#include "tests/fuzz/fuzzinput.h"
#include "tests/fuzz/fuzztargets.h"
#include "tests/fuzz/require.h"

using ffc::imagecalc::IMAGECALC_STATUS_SUCCESS;

namespace {

constexpr int32_t LARGEST_SIDE = 140;
constexpr int64_t LARGEST_BUFFER = 1 << 16;
// More than the gains of the largest frame take with blocks of one pixel.
constexpr int64_t LARGEST_TABLE = 1 << 18;
constexpr uint8_t UNTOUCHED = 0xA5;
constexpr int32_t BIT_DEPTHS[] = {8, 10, 12, 16, 0, -8};

int32_t TakeBitDepth(CFuzzInput &input)
{
  return input.TakeBool() ? input.Pick(BIT_DEPTHS) : 8;
}

// A power of two as often as not.
int64_t TakeBlockSide(CFuzzInput &input)
{
  return input.TakeBool() ? int64_t{1} << input.TakeBetween(0, 7) : input.TakeSide(LARGEST_SIDE);
}

int64_t GetFrameSize(int64_t nWidth, int64_t nHeight, int32_t nBitDepth)
{
  return nWidth * nHeight * (nBitDepth == 8 ? 1 : 2);
}

void SetUp(CFuzzInput &input, IVignettingCorrection &calculator)
{
  const auto nBlockWidth = static_cast<uint32_t>(TakeBlockSide(input));
  const auto nBlockHeight = static_cast<uint32_t>(TakeBlockSide(input));
  const auto nScaleBits = static_cast<uint32_t>(input.TakeSide(16));
  const auto nMaxGain = static_cast<int32_t>(input.TakeSide(16));
  switch (input.TakeBetween(0, 5)) {
  case 0: (void)calculator.SetBlockSize(nBlockWidth, nBlockHeight); break;
  case 1: (void)calculator.SetScaleBits(nScaleBits); break;
  case 2: (void)calculator.SetMaxGain(nMaxGain); break;
  default: (void)calculator.Init(nBlockWidth, nBlockHeight, nScaleBits, nMaxGain); break;
  }
}

// Every word of the table is there to be read.
void ReadTable(const uint16_t *pTable, uint64_t nWords)
{
  volatile uint16_t nLast = 0;
  for (uint64_t i = 0; i < nWords; ++i) {
    nLast = pTable[i];
  }
  (void)nLast;
}

void Calculate(CFuzzInput &input, IVignettingCorrection &calculator, uint32_t nGainsPerPoint)
{
  const auto nWidth = static_cast<uint32_t>(input.TakeBetween(0, LARGEST_SIDE));
  const auto nHeight = static_cast<uint32_t>(input.TakeBetween(0, LARGEST_SIDE));
  const int32_t nBitDepth = TakeBitDepth(input);
  const bool bImage = !input.TakeBool();
  const CExactBuffer image = input.TakeBuffer(static_cast<std::size_t>(GetFrameSize(nWidth, nHeight, nBitDepth)));
  const uint16_t *pTable = nullptr;
  uint64_t nColumns = 0;
  uint64_t nRows = 0;
  if (calculator.CalcCoefficient(bImage ? image.GetData() : nullptr, nWidth, nHeight, nBitDepth, &pTable, &nColumns,
                                 &nRows) == IMAGECALC_STATUS_SUCCESS) {
    Require(bImage && nColumns >= 4 && nColumns % 2 == 0 && nRows >= 4 && nRows % 2 == 0, "a table is made of quads");
    ReadTable(pTable, nColumns * nRows * nGainsPerPoint);
  } else {
    Require(pTable == nullptr, "a calculation that fails hands out no table");
  }
}

void RunCalculator(CFuzzInput &input)
{
  std::unique_ptr<IVignettingCorrection> pCalculator;
  const auto nKind = input.Take<uint8_t>();
  if (nKind % 2 == 0) {
    pCalculator = std::make_unique<CVCGary>();
  } else {
    pCalculator = std::make_unique<CVCBayer>(nKind < 16 ? nKind / 2U : input.Take<uint32_t>());
  }
  for (int nRun = 0; nRun < 4; ++nRun) {
    SetUp(input, *pCalculator);
    Calculate(input, *pCalculator, nKind % 2 == 0 ? 1 : 3);
  }
}

// A camera's numbers. Frames that nobody can hold are not handed over.
void RunInOneCall(CFuzzInput &input)
{
  const int32_t nBayerType = input.TakeBool() ? input.Take<int32_t>() : input.TakeBetween(-1, 5);
  const int64_t nWidth = input.TakeSide(LARGEST_SIDE);
  const int64_t nHeight = input.TakeSide(LARGEST_SIDE);
  const int64_t nBlockWidth = TakeBlockSide(input);
  const int64_t nBlockHeight = TakeBlockSide(input);
  const int32_t nBitDepth = TakeBitDepth(input);
  int64_t nSize = -1;
  const int32_t nSizeStatus =
    GetVignettingCoefficientSize(nBayerType, nWidth, nHeight, nBlockWidth, nBlockHeight, &nSize);
  const bool bSized = nSizeStatus == IMAGECALC_STATUS_SUCCESS;
  Require(bSized == (nSize > 0), "a size is written on success, and then is one");
  const bool bSides = nWidth >= 0 && nHeight >= 0 && nWidth <= UINT32_MAX && nHeight <= UINT32_MAX;
  const bool bHeld =
    bSides && nWidth <= LARGEST_BUFFER && nHeight <= LARGEST_BUFFER && nWidth * nHeight <= LARGEST_BUFFER;
  if ((bSides && !bHeld) || nSize > LARGEST_BUFFER) {
    return;
  }
  const CExactBuffer image =
    input.TakeBuffer(static_cast<std::size_t>(bHeld ? GetFrameSize(nWidth, nHeight, nBitDepth) : 0));
  const int64_t nStated = bSized ? nSize + input.Take<int8_t>() % 3 : input.TakeSide(LARGEST_SIDE);
  CExactBuffer table(static_cast<std::size_t>(std::clamp<int64_t>(nStated, 0, LARGEST_TABLE)), UNTOUCHED);
  const int32_t nStatus = CalcVignettingCoefficient(image.GetData(), nBitDepth, nBayerType, nWidth, nHeight,
                                                    nBlockWidth, nBlockHeight, nStated, table.GetData());
  if (bSized && nStated == nSize) {
    const bool bDepth = nBitDepth == 8 || nBitDepth == 10 || nBitDepth == 12;
    Require((nStatus == IMAGECALC_STATUS_SUCCESS) == bDepth, "a size that can be told can be computed");
  } else {
    Require(!bSized || (nStatus != IMAGECALC_STATUS_SUCCESS && table.IsFilledWith(UNTOUCHED)),
            "a table of another size is refused untouched");
    Require(bHeld || nStatus != IMAGECALC_STATUS_SUCCESS, "sides that no image has are refused");
  }
}

} // namespace

void FuzzVignetting(const uint8_t *pData, std::size_t nSize)
{
  CFuzzInput input(pData, nSize);
  if (input.TakeBool()) {
    RunCalculator(input);
  } else {
    RunInOneCall(input);
  }
}
