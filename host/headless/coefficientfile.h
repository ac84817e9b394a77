/// \file
/// The coefficients as files that the dialog saves and loads.
#pragma once

#include <QString>

#include "host/headless/bench.h"

namespace ffc::host {

/// coefficients.ffc in the bench's folder.
QString GetCoefficientPath(CBench &bench);

/// Saves through the dialog's button; an earlier run's file goes first.
Result<> SaveCoefficients(CBench &bench);

/// Saves what was loaded once more, and expects the same bytes.
Result<> CheckSavedAgain(CBench &bench);

} // namespace ffc::host
