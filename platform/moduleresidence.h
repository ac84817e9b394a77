/// \file
/// Keeping a module in memory after its host closes it.
#pragma once

namespace ffc::platform {

/// Makes the module that this function is linked into stay loaded until the process ends, however
/// often it is closed and loaded again. Toolkits keep pointers into a module beyond its last object
/// (registered types, resources, queued events), so its code must never go away under them.
void KeepModuleResident();

} // namespace ffc::platform
