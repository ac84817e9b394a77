/// \file
/// What a headless run does, from opening the camera to the report.
#pragma once

#include <QString>

namespace ffc::host {

class IStory {
public:
  virtual ~IStory() = default;

  /// \return empty, or one line: the step and why it failed
  virtual QString Run() = 0;
  /// What to tell a person after a run that succeeded; ends with a line feed.
  virtual QString GetSummary() const = 0;
};

} // namespace ffc::host
