/// \file
/// A frame kept beyond the callback that showed it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <vector>

namespace ffc::host {

/// \return false when memory is short
inline bool CopyFrame(const void *pFrame, std::size_t nSize, std::vector<uint8_t> &listCopy)
{
  const uint8_t *pBytes = static_cast<const uint8_t *>(pFrame);
  try {
    listCopy.assign(pBytes, pBytes + nSize);
  } catch (const std::bad_alloc &) {
    return false;
  }
  return true;
}

} // namespace ffc::host
