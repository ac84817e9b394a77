#include "pluginobject/shadingcorrection/process/acquisition/framebuffer.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace ffc::process {

using platform::TakeZeroedMemory;

bool CFrameBuffer::Allocate(uint64_t nSize)
{
  Release();
  constexpr uint64_t LARGEST = static_cast<uint64_t>(std::numeric_limits<std::ptrdiff_t>::max());
  if (nSize <= LARGEST) {
    m_pData.reset(static_cast<uint8_t *>(TakeZeroedMemory(static_cast<std::size_t>(nSize))));
  }
  if (m_pData == nullptr) {
    return false;
  }
  m_nSize = nSize;
  return true;
}

void CFrameBuffer::Release()
{
  m_pData.reset();
  m_nSize = 0;
}

void CFrameBuffer::ZeroBetween(uint64_t nFirst, uint64_t nEnd)
{
  nEnd = std::min(nEnd, m_nSize);
  if (nFirst < nEnd) {
    std::memset(m_pData.get() + nFirst, 0, nEnd - nFirst);
  }
}

void CFrameBuffer::CopyFrom(const CFrameBuffer &other)
{
  const uint64_t nCommon = std::min(m_nSize, other.m_nSize);
  if (nCommon > 0) {
    std::memcpy(m_pData.get(), other.m_pData.get(), nCommon);
  }
}

} // namespace ffc::process
