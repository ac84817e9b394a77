/// \file
/// The threads of this library.
#pragma once

#include "ombrix/bandpool.h"

namespace ffc::ombrix {

/// Lives as long as the library is loaded. In a process forked from one that had threads it starts with none.
CBandPool &GetLibraryPool() noexcept;

} // namespace ffc::ombrix
