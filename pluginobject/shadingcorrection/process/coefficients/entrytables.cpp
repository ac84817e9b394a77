#include "pluginobject/shadingcorrection/process/coefficients/entrytables.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "genapi/framecounts.h"

namespace ffc::process {

namespace {

template <class TValue>
struct SEntry {
  const char *pName;
  TValue nValue;
};

constexpr std::string_view FRAME_COUNT_PREFIX = "FFCFrameCount_";

constexpr SEntry<SCorrectionBlock> FLAT_FIELD_BLOCKS[] = {
  {"BlockSize_1024", {32, 32, 0}},
  {"BlockSize_256", {16, 16, 1}},
};

constexpr SEntry<SCorrectionBlock> VIGNETTING_BLOCKS[] = {
  {"BlockSize_16384", {128, 128, 3}},
  {"BlockSize_4096", {64, 64, 2}},
};

// First match wins; anything else leaves the value.
template <class TValue, std::size_t N>
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
  std::string_view strCount = strEntry;
  if (strCount.substr(0, FRAME_COUNT_PREFIX.size()) != FRAME_COUNT_PREFIX) {
    return;
  }
  strCount.remove_prefix(FRAME_COUNT_PREFIX.size());
  for (const int nCount : genapi::FRAME_COUNTS) {
    if (strCount == std::to_string(nCount)) {
      nFrameCount = static_cast<uint32_t>(nCount);
    }
  }
}

uint32_t GetPossibleFrameCount(uint32_t nFrameCount)
{
  const auto isCount = [nFrameCount](int nCount) { return static_cast<uint32_t>(nCount) == nFrameCount; };
  if (nFrameCount == 0 || std::any_of(std::begin(genapi::FRAME_COUNTS), std::end(genapi::FRAME_COUNTS), isCount)) {
    return nFrameCount;
  }
  return 1;
}

void ApplyFlatFieldBlockEntry(const std::string &strEntry, SCorrectionBlock &stBlock)
{
  ApplyEntry(FLAT_FIELD_BLOCKS, strEntry, stBlock);
}

void ApplyVignettingBlockEntry(const std::string &strEntry, SCorrectionBlock &stBlock)
{
  ApplyEntry(VIGNETTING_BLOCKS, strEntry, stBlock);
}

} // namespace ffc::process
