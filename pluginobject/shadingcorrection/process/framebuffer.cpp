#include "pluginobject/shadingcorrection/process/framebuffer.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

bool CFrameBuffer::Allocate(uint64_t nSize)
{
  Release();
  constexpr uint64_t LARGEST = static_cast<uint64_t>(std::numeric_limits<std::ptrdiff_t>::max());
  if (nSize <= LARGEST) {
    m_pData.reset(new (std::nothrow) uint8_t[nSize]);
  }
  if (m_pData == nullptr) {
    return false;
  }
  m_nSize = nSize;
  Zero();
  return true;
}

void CFrameBuffer::Release()
{
  m_pData.reset();
  m_nSize = 0;
}

void CFrameBuffer::Zero()
{
  if (m_nSize > 0) {
    std::memset(m_pData.get(), 0, m_nSize);
  }
}

void CFrameBuffer::CopyFrom(const CFrameBuffer &other)
{
  const uint64_t nCommon = std::min(m_nSize, other.m_nSize);
  if (nCommon > 0) {
    std::memcpy(m_pData.get(), other.m_pData.get(), nCommon);
  }
}
