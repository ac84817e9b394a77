#include "camera/software/selfcorrection/blocklayout.h"

namespace ffc::camera {

namespace {

constexpr uint32_t ELEMENT_SIZE = 8; // of a flat-field table: four words

uint32_t RoundUpToEven(uint32_t nCount)
{
  return nCount + nCount % 2;
}

} // namespace

uint32_t SBlockLayout::GetTableSize() const
{
  if (!HasTable()) {
    return 0;
  }
  if (eMode == ECorrectionMode::FlatField) {
    return GetRows() * GetColumns() * ELEMENT_SIZE;
  }
  const uint32_t nWords = bColor ? 3 : 1;
  return RoundUpToEven(GetRows()) * RoundUpToEven(GetColumns()) * nWords * 2;
}

} // namespace ffc::camera
