/// \file
/// What this process has loaded.
#pragma once

#include <string>

namespace ffc::test {

/// The file of a loaded module (shared library or plug-in) whose path contains a text.
/// \return its path in the system's own encoding (UTF-8 on Windows), empty when there is none
std::string FindLoadedModule(const std::string &strPart);

} // namespace ffc::test
