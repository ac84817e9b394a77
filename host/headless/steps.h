/// \file
/// A workflow as a list of named steps.
#pragma once

#include <functional>
#include <vector>

#include "host/headless/progressline.h"
#include "platform/result.h"

namespace ffc::host {

struct SStep {
  const char *pName;
  std::function<Result<>()> fnRun;
};

/// Runs the steps one after the other, up to the first that fails.
/// \return on failure one line: the step and why it failed
Result<> RunSteps(const std::vector<SStep> &listSteps, CProgressLine &progress);

} // namespace ffc::host
