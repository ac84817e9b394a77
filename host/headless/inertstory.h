/// \file
/// The story of a camera whose correction the plug-in does not know.
#pragma once

#include <QString>

#include "host/headless/bench.h"
#include "host/headless/story.h"

namespace ffc::host {

/// The dialog comes up with every control disabled, and the stream runs on.
class CInertStory final : public IStory {
public:
  /// \param bench outlives the story
  explicit CInertStory(CBench &bench) : m_bench(bench) {}

  Result<> Run() override;
  QString GetSummary() const override;

private:
  Result<> OpenDialogWhileStreaming();
  Result<> CheckControls();
  Result<> CheckStream();
  Result<> WriteResults();

  CBench &m_bench;
};

} // namespace ffc::host
