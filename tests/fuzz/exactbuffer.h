/// \file
/// Memory without a byte to spare.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>

/// A heap block of its own of exactly so many bytes, so that the address sanitizer sees every access beside it.
class CExactBuffer {
public:
  explicit CExactBuffer(std::size_t nSize, uint8_t nFill = 0) : m_nSize(nSize), m_pData(new uint8_t[nSize])
  {
    std::fill_n(m_pData.get(), nSize, nFill);
  }

  uint8_t *GetData() { return m_pData.get(); }
  const uint8_t *GetData() const { return m_pData.get(); }
  std::size_t GetSize() const { return m_nSize; }

  bool IsFilledWith(uint8_t nByte) const
  {
    return std::all_of(m_pData.get(), m_pData.get() + m_nSize, [nByte](uint8_t nOther) { return nOther == nByte; });
  }

private:
  std::size_t m_nSize;
  std::unique_ptr<uint8_t[]> m_pData;
};
