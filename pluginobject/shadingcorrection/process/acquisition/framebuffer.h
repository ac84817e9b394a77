/// \file
/// An owned run of bytes whose allocation may fail.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "platform/zeroedmemory.h"

namespace ffc::process {

/// Bytes of a frame or of a coefficient table. Allocation failure is an answer, not an exception.
class CFrameBuffer {
public:
  /// Takes nSize bytes, all zero, in place of what was held. Memory that is never written costs the machine
  /// nothing, however large a camera says that its frames are.
  /// \return false, holding nothing, when there is no such memory
  bool Allocate(uint64_t nSize);
  void Release();
  /// From one byte to before another, or as many as there are.
  void ZeroBetween(uint64_t nFirst, uint64_t nEnd);
  /// Copies as many bytes of another buffer as both hold.
  void CopyFrom(const CFrameBuffer &other);

  bool IsAllocated() const { return m_pData != nullptr; }
  uint64_t GetSize() const { return m_nSize; }
  uint8_t *GetData() { return m_pData.get(); }
  const uint8_t *GetData() const { return m_pData.get(); }

private:
  struct SGiveBack {
    void operator()(uint8_t *pData) const { platform::GiveZeroedMemory(pData); }
  };

  std::unique_ptr<uint8_t[], SGiveBack> m_pData;
  uint64_t m_nSize = 0;
};

} // namespace ffc::process
