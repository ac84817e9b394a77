/// \file
/// The part of the GenICam GenApi C++ interface that this project uses.
///
/// Written from the published standard (GenICam GenApi 3): the same names, signatures and default
/// arguments as the standard's reference interface, so that code compiles unchanged against either.
/// As there, the plain names GenApi and GenICam are aliases of versioned namespaces.
#pragma once

#include "GenApi/impl/Exceptions.h"
#include "GenApi/impl/GCString.h"
#include "GenApi/impl/Interfaces.h"
#include "GenApi/impl/Types.h"
