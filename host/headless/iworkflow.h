/// \file
/// What a headless run does, from opening the camera to the report.
#pragma once

#include <QString>

#include "platform/result.h"

namespace ffc::host {

class IWorkflow {
public:
  virtual ~IWorkflow() = default;

  /// \return on failure one line: the step and why it failed
  virtual Result<> Run() = 0;
  /// What to print after a run that succeeded; ends with a line feed.
  virtual QString GetSummary() const = 0;
};

} // namespace ffc::host
