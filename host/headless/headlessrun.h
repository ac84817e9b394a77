/// \file
/// The whole workflow through the plug-in's own dialog, without a person.
#pragma once

#include <memory>

#include <QString>

#include "host/headless/bench.h"
#include "host/headless/progressline.h"
#include "host/headless/story.h"
#include "host/options/hostoptions.h"

namespace ffc::host {

/// The story that fits the camera, told once: to its end, or to the first step that fails. User-interface
/// thread.
class CHeadlessRun {
public:
  /// \param fnOpenCamera makes a camera whose scene can be set by software
  CHeadlessRun(const SHeadlessOptions &stOptions, CameraFactory fnOpenCamera, CProgressLine &progress);

  /// \return on failure one line: the step and why it failed
  Result<> Run();
  /// Figures and notes; complete after a run that succeeded.
  const quality::SReport &GetReport() const { return m_bench.GetReport(); }
  /// What to tell a person after a run that succeeded; ends with a line feed.
  QString GetSummary() const { return m_pStory->GetSummary(); }

private:
  CBench m_bench;
  std::unique_ptr<IStory> m_pStory;
};

} // namespace ffc::host
