// Both entry points of the image library, over arbitrary parameters and buffers of exactly the stated size at any
// address; what they write is compared with exact arithmetic.
#include "ombrix/ombrix.h"

#include <algorithm>
#include <cstring>

#include "tests/fuzz/fuzzinput.h"
#include "tests/fuzz/fuzztargets.h"
#include "tests/fuzz/require.h"
#include "tests/ombrix/reference.h"

namespace {

constexpr int32_t LARGEST_SIDE = 96;
constexpr uint64_t LARGEST_BUFFER = 1 << 16;
constexpr uint8_t UNTOUCHED = 0xA5;

uint32_t ReadWord(const uint8_t *pData, std::size_t nIndex)
{
  uint16_t nWord = 0;
  std::memcpy(&nWord, pData + 2 * nIndex, sizeof nWord);
  return nWord;
}

// A buffer of exactly so many bytes at an even or an odd address.
class CPlacedBuffer {
public:
  CPlacedBuffer(CFuzzInput &input, std::size_t nSize)
    : m_nOffset(input.TakeBool() ? 1 : 0), m_buffer(input.TakeBuffer(m_nOffset + nSize))
  {
  }
  CPlacedBuffer(std::size_t nOffset, std::size_t nSize) : m_nOffset(nOffset), m_buffer(nOffset + nSize, UNTOUCHED) {}

  uint8_t *GetData() { return m_buffer.GetData() + m_nOffset; }
  const uint8_t *GetData() const { return m_buffer.GetData() + m_nOffset; }
  uint32_t GetPixel(std::size_t nIndex, uint32_t nBitDepth) const
  {
    return nBitDepth == 8 ? GetData()[nIndex] : ReadWord(GetData(), nIndex);
  }
  bool IsUntouched() const { return m_buffer.IsFilledWith(UNTOUCHED); }

private:
  std::size_t m_nOffset;
  CExactBuffer m_buffer;
};

struct SShape {
  uint32_t nWidth;
  uint32_t nHeight;
  uint32_t nBitDepth;

  uint64_t CountPixels() const { return uint64_t{nWidth} * nHeight; }
  // 0 for a frame that no test can hold.
  std::size_t GetFrameSize() const
  {
    const uint64_t nBytes = CountPixels() <= LARGEST_BUFFER ? CountPixels() * (nBitDepth == 8 ? 1 : 2) : 0;
    return static_cast<std::size_t>(nBytes);
  }
};

SShape TakeShape(CFuzzInput &input)
{
  SShape stShape = {};
  stShape.nWidth = static_cast<uint32_t>(input.TakeSide(LARGEST_SIDE));
  stShape.nHeight = static_cast<uint32_t>(input.TakeSide(LARGEST_SIDE));
  const auto nDepth = input.Take<uint8_t>();
  stShape.nBitDepth = nDepth == 0xFF ? input.Take<uint32_t>() : nDepth % 12 + 6U;
  return stShape;
}

void CheckTable(const CPlacedBuffer &table, const CPlacedBuffer &bright, const CPlacedBuffer *pDark,
                const SShape &stShape, uint32_t nTarget)
{
  const auto nPixels = static_cast<std::size_t>(stShape.CountPixels());
  const int nBitDepth = static_cast<int>(stShape.nBitDepth);
  for (std::size_t i = 0; i < nPixels; ++i) {
    const uint32_t nDark = pDark == nullptr ? 0 : pDark->GetPixel(i, stShape.nBitDepth);
    const uint32_t nBright = bright.GetPixel(i, stShape.nBitDepth);
    Require(ReadWord(table.GetData(), i) == GetReferenceGain(nBright, nDark, nTarget, nBitDepth), "an exact gain");
  }
}

// A query first, then a computation into a table of any capacity.
void Compute(CFuzzInput &input)
{
  const SShape stShape = TakeShape(input);
  const auto nFlags = input.Take<uint8_t>();
  const bool bDark = (nFlags & 1U) != 0;
  const CPlacedBuffer bright(input, stShape.GetFrameSize());
  const CPlacedBuffer dark(input, stShape.GetFrameSize());
  const OMBRIX_FFC_PARAM stParam = {(nFlags & 2U) != 0 ? nullptr : bright.GetData(),
                                    bDark ? dark.GetData() : nullptr,
                                    stShape.nWidth,
                                    stShape.nHeight,
                                    stShape.nBitDepth,
                                    (nFlags & 4U) != 0 ? input.Take<uint32_t>() : nFlags >> 5U};
  uint32_t nTableSize = 1;
  const int32_t nQuery = OmbrixComputeFlatField(stParam, nullptr, &nTableSize, nullptr);
  Require((nQuery == OMBRIX_STATUS_SUCCESS) == (nTableSize != 0), "a query that fails tells 0");
  Require(nQuery != OMBRIX_STATUS_SUCCESS || nTableSize == stShape.CountPixels() * (bDark ? 4 : 2), "the table's size");
  // A table that nobody can hold gets a capacity that is too small.
  const int64_t nRight = nTableSize <= LARGEST_BUFFER ? nTableSize : 16;
  const uint32_t nCapacity = static_cast<uint32_t>(std::max<int64_t>(nRight + input.Take<int8_t>() % 3, 0));
  const uint32_t nTarget = input.Take<uint8_t>() == 0xFF ? input.Take<uint32_t>() : input.Take<uint16_t>();
  CPlacedBuffer table(nFlags >> 3U & 1U, nCapacity);
  uint32_t nSize = nCapacity;
  const int32_t nStatus = OmbrixComputeFlatField(stParam, table.GetData(), &nSize, &nTarget);
  if (nStatus == OMBRIX_STATUS_SUCCESS) {
    Require(nQuery == OMBRIX_STATUS_SUCCESS && nSize == nTableSize && nSize <= nCapacity, "success keeps to the query");
    CheckTable(table, bright, bDark ? &dark : nullptr, stShape, nTarget);
  } else {
    Require(nSize == nCapacity && table.IsUntouched(), "nothing is written when a check fails");
  }
}

void CheckFrame(const CPlacedBuffer &frame, const CPlacedBuffer &source, const CPlacedBuffer &table,
                const SShape &stShape, bool bDark)
{
  const auto nPixels = static_cast<std::size_t>(stShape.CountPixels());
  for (std::size_t i = 0; i < nPixels; ++i) {
    const int64_t nLevel = bDark ? ReadWord(table.GetData(), nPixels + i) : 0;
    const int64_t nExpected = GetReferencePixel(source.GetPixel(i, stShape.nBitDepth), nLevel,
                                                ReadWord(table.GetData(), i), static_cast<int>(stShape.nBitDepth));
    Require(frame.GetPixel(i, stShape.nBitDepth) == nExpected, "an exact pixel");
  }
}

void Apply(CFuzzInput &input)
{
  const SShape stShape = TakeShape(input);
  const auto nFlags = input.Take<uint8_t>();
  const uint64_t nGains = stShape.CountPixels() <= LARGEST_BUFFER ? 2 * stShape.CountPixels() : 0;
  const int64_t nRight = static_cast<int64_t>((nFlags & 1U) != 0 ? 2 * nGains : nGains);
  const auto nSize = static_cast<uint32_t>(std::max<int64_t>(nRight + input.Take<int8_t>() % 3, 0));
  const CPlacedBuffer table(input, nSize);
  const CPlacedBuffer source(input, stShape.GetFrameSize());
  CPlacedBuffer destination(nFlags >> 1U & 1U, stShape.GetFrameSize());
  const bool bInPlace = (nFlags & 4U) != 0;
  if (bInPlace && stShape.GetFrameSize() > 0) {
    std::memcpy(destination.GetData(), source.GetData(), stShape.GetFrameSize());
  }
  const uint8_t *const pSource = bInPlace ? destination.GetData() : source.GetData();
  const int32_t nStatus =
    OmbrixApplyFlatField((nFlags & 0x18U) == 0x18U ? nullptr : pSource, destination.GetData(), stShape.nBitDepth,
                         stShape.nWidth, stShape.nHeight, table.GetData(), &nSize);
  if (nStatus == OMBRIX_STATUS_SUCCESS) {
    Require(nGains > 0 && (nSize == nGains || nSize == 2 * nGains), "a table fits its frame");
    CheckFrame(destination, source, table, stShape, nSize != nGains);
  } else {
    Require(bInPlace || destination.IsUntouched(), "nothing is written when a check fails");
  }
}

} // namespace

void FuzzOmbrix(const uint8_t *pData, std::size_t nSize)
{
  CFuzzInput input(pData, nSize);
  if (input.TakeBool()) {
    Compute(input);
  } else {
    Apply(input);
  }
}
