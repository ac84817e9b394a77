/// \file
/// The version record of a module on systems without version resources.
#pragma once

#include <cstdint>

namespace ffc::platform {

/// Lies in the module's section FFC_VERSION_SECTION, in the machine's byte order.
struct SModuleVersionRecord {
  char acSignature[8];   ///< FFC_VERSION_SIGNATURE
  uint16_t anVersion[4]; ///< major, minor, build, revision
};
static_assert(sizeof(SModuleVersionRecord) == 16);

#define FFC_VERSION_SECTION ".ffc_version"
#define FFC_VERSION_SIGNATURE "FFCVERS"

} // namespace ffc::platform
