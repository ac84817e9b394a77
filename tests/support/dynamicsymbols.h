/// \file
/// What a shared library exports.
#pragma once

#include <string>
#include <vector>

namespace ffc::test {

/// The names that a shared library defines for others, sorted. Names that begin with two underscores, which
/// sanitizers add, are left out.
/// \return empty when the file cannot be read
std::vector<std::string> ReadExportedNames(const std::string &strPath);

} // namespace ffc::test
