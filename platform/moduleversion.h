/// \file
/// The file version of the module that contains this code.
#pragma once

#include <cstdint>
#include <string>

namespace ffc::platform {

/// Reads the file version of the module (shared library or program) that this function is linked into,
/// from the module's own file.
///
/// \param anVersion major, minor, build, revision; untouched on failure
/// \param strError on failure one of "Failed to get the full path of current process", "Failed to get
///   the content of version structure", "Failed to query version information"; else untouched
/// \return true on success
bool QueryModuleVersion(uint16_t (&anVersion)[4], std::string &strError);

/// The same for the module in a given file.
/// \param strPath the module's file, in the system's own encoding (UTF-8 on Windows)
bool QueryModuleFileVersion(const std::string &strPath, uint16_t (&anVersion)[4], std::string &strError);

} // namespace ffc::platform
