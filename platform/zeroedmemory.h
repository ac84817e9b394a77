/// \file
/// Memory in large pieces.
#pragma once

#include <cstddef>

namespace ffc::platform {

/// \return nSize bytes, all zero (one byte at least); null when there is no such memory. The system may keep them
///   for the first write.
void *TakeZeroedMemory(std::size_t nSize) noexcept;

/// \param pMemory from TakeZeroedMemory, or null
void GiveZeroedMemory(void *pMemory) noexcept;

} // namespace ffc::platform
