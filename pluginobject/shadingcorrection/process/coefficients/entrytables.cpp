#include "pluginobject/shadingcorrection/process/coefficients/entrytables.h"

#include "genapi/pfnc.h"

namespace ffc::process {

namespace {

template <typename TValue>
struct SEntry {
  const char *pName;
  TValue nValue;
};

constexpr SEntry<uint32_t> FRAME_COUNTS[] = {
  {"FFCFrameCount_1", 1}, {"FFCFrameCount_2", 2},   {"FFCFrameCount_4", 4},
  {"FFCFrameCount_8", 8}, {"FFCFrameCount_16", 16},
};

constexpr SEntry<SCorrectionBlock> FLAT_FIELD_BLOCKS[] = {
  {"BlockSize_1024", {32, 32, 0}},
  {"BlockSize_256", {16, 16, 1}},
};

constexpr SEntry<SCorrectionBlock> VIGNETTING_BLOCKS[] = {
  {"BlockSize_16384", {128, 128, 3}},
  {"BlockSize_4096", {64, 64, 2}},
};

// First match wins; anything else leaves the value.
template <typename TValue, std::size_t N>
void ApplyEntry(const SEntry<TValue> (&listEntries)[N], const std::string &strName, TValue &nValue)
{
  for (const SEntry<TValue> &stEntry : listEntries) {
    if (strName == stEntry.pName) {
      nValue = stEntry.nValue;
      return;
    }
  }
}

} // namespace

void ApplyFrameCountEntry(const std::string &strEntry, uint32_t &nFrameCount)
{
  ApplyEntry(FRAME_COUNTS, strEntry, nFrameCount);
}

uint32_t GetPossibleFrameCount(uint32_t nFrameCount)
{
  for (const SEntry<uint32_t> &stEntry : FRAME_COUNTS) {
    if (stEntry.nValue == nFrameCount) {
      return nFrameCount;
    }
  }
  return nFrameCount == 0 ? 0 : 1;
}

void ApplyFlatFieldBlockEntry(const std::string &strEntry, SCorrectionBlock &stBlock)
{
  ApplyEntry(FLAT_FIELD_BLOCKS, strEntry, stBlock);
}

void ApplyVignettingBlockEntry(const std::string &strEntry, SCorrectionBlock &stBlock)
{
  ApplyEntry(VIGNETTING_BLOCKS, strEntry, stBlock);
}

int32_t GetBayerType(const std::string &strPixelColorFilter)
{
  return static_cast<int32_t>(ffc::genapi::GetColorLayout(strPixelColorFilter));
}

} // namespace ffc::process
