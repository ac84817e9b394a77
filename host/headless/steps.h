/// \file
/// A story as a list of named steps.
#pragma once

#include <functional>
#include <vector>

#include <QString>

#include "host/headless/progressline.h"

namespace ffc::host {

struct SStep {
  const char *pName;
  std::function<QString()> fnRun; ///< \return empty, or why it failed
};

/// Runs the steps one after the other, up to the first that fails.
/// \return empty, or one line: the step and why it failed
QString RunSteps(const std::vector<SStep> &listSteps, CProgressLine &progress);

/// Runs checks or actions one after the other, up to the first that fails.
/// \return empty, or its reason
QString RunUntilFailure(const std::vector<std::function<QString()>> &listActions);

} // namespace ffc::host
