#include "platform/hugepages.h"

namespace ffc::platform {

// Large pages take a right there that users do not have.
void AdviseHugePages(void *, std::size_t) noexcept {}

} // namespace ffc::platform
