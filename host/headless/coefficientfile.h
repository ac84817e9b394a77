/// \file
/// The coefficients as files that the dialog saves and loads.
#pragma once

#include <QString>

#include "host/headless/workflowsession.h"

namespace ffc::host {

/// coefficients.ffc in the session's folder.
QString GetCoefficientPath(CWorkflowSession &session);

/// Saves through the dialog's button; an earlier run's file goes first.
Result<> SaveCoefficients(CWorkflowSession &session);

/// Saves what was loaded once more, and expects the same bytes.
Result<> CheckSavedAgain(CWorkflowSession &session);

} // namespace ffc::host
