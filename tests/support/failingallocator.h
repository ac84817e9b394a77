/// \file
/// The C library's allocator, which fails when it is told to. What links it has these functions in place of the C
/// library's, for all that is loaded; Linux alone, and without a sanitizer, which has an allocator of its own.
#pragma once

namespace ffc::test {

/// Whether the allocation that is being asked for shall fail. Whoever links the allocator says so; takes no memory.
bool IsAllocationToFail();

} // namespace ffc::test
