/// \file
/// Large buffers in large pages.
#pragma once

#include <cstddef>

namespace ffc::platform {

/// Asks the system to back memory that is still to be written with pages of some megabytes, which are zeroed and found
/// much faster. Does nothing where it is small, or where a program needs a right for it. The memory stays what it is.
void AdviseHugePages(void *pMemory, std::size_t nSize) noexcept;

} // namespace ffc::platform
