/// \file
/// The story of a camera whose frames the host corrects.
#pragma once

#include <QString>

#include "host/headless/bench.h"
#include "host/headless/story.h"
#include "quality/pairedstacks.h"

namespace ffc::host {

/// Cap on, dark field; cap off, bright field; execute; figures on fresh frames; coefficients to a file and
/// back; report.
///
/// Before and after are measured on the same exposures: each fresh frame as it came, and as ProcessImage
/// corrected it.
class CHostStory final : public IStory {
public:
  /// \param bench outlives the story
  explicit CHostStory(CBench &bench) : m_bench(bench) {}

  Result<> Run() override;
  QString GetSummary() const override;

private:
  /// One exposure, as it came and as it was corrected.
  struct SFramePair {
    std::vector<uint8_t> listRaw;
    std::vector<uint8_t> listCorrected;
  };

  Result<> AcquireDark();
  Result<> AcquireBright();
  Result<> Execute();
  Result<> Measure();
  Result<> MeasureScene(bool bLensCap, quality::CPairedStacks &stStacks);
  Result<> CollectPair(SFramePair &stPair);
  Result<> SaveFrames();
  Result<> CheckFile();
  Result<> CheckReloaded(const SFramePair &stReference);
  Result<> WriteResults();

  CBench &m_bench;
  quality::CPairedStacks m_stBright;
  quality::CPairedStacks m_stDark;
};

} // namespace ffc::host
