#include "host/headless/steps.h"

#include <QString>

namespace ffc::host {

Result<> RunSteps(const std::vector<SStep> &listSteps, CProgressLine &progress)
{
  for (const SStep &stStep : listSteps) {
    progress.BeginStep(stStep.pName);
    const Result<> result = stStep.fnRun();
    if (!result) {
      return Failure(QStringLiteral("%1: %2").arg(QLatin1String(stStep.pName),
                                                  QString::fromStdString(result.GetError()).simplified()));
    }
  }
  return {};
}

} // namespace ffc::host
