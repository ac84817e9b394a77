/// \file
/// Reads one section of an ELF file.
#pragma once

#include <string>
#include <vector>

namespace ffc::platform {

/// The bytes of a section of a 64-bit ELF file of this machine's byte order. Every offset of the file
/// is checked, so a damaged file does no harm.
/// \param nMaxSize a longer section counts as missing
/// \return empty when the file cannot be read, is no such file, or has no such section
std::vector<char> ReadElfSection(const std::string &strPath, const std::string &strSection, std::size_t nMaxSize);

} // namespace ffc::platform
